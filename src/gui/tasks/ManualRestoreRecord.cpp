// SPDX-License-Identifier: GPL-3.0-or-later
// ManualRestoreTask: what an image and an archive say about themselves.
#include "gui/tasks/ManualRestoreTask.h"

#include "gui/tasks/imagerecord.h"
#include "gui/tasks/toolfile.h"
#include "utils/core/command.h"

#include <QDebug>

#include <optional>

using namespace Qt::StringLiterals;

bool ManualRestoreTask::fetchImageRecord(const QString& filePath)
{
    QString description;
    QString error;
    const bool succeeded = SpawnCmd(u"sudo"_s, {u"kestro-clone"_s, u"--kim-info"_s, filePath}, description, error);
    constexpr auto invalid = "invalid file"_L1;
    if (!succeeded || description.contains(invalid) || error.contains(invalid)) {
        return false;
    }
    const std::optional<ImageRecord::Line> line = ImageRecord::parseLine(description);
    if (!line) {
        return fetchDiskInfo(filePath);
    }
    if (line->isDiskDrive) {
        m_diskDrive = line->value;
        qDebug() << "disk driver : " << m_diskDrive;
    } else {
        m_uuid = line->value;
        qDebug() << "uuid : " << m_uuid;
    }
    return !line->value.isEmpty();
}

bool ManualRestoreTask::fetchDiskInfo(const QString& filePath)
{
    if (!ToolFile::removeFormer(m_diskInfoName)) {
        return false;
    }
    const bool succeeded = SpawnCmd(u"sudo"_s, ImageRecord::readCommand(filePath));
    const std::optional<QByteArray> text = ToolFile::take(m_diskInfoName);
    const std::optional<ImageRecord::Values> record = text && succeeded ? ImageRecord::parseFile(*text) : std::nullopt;
    if (!record) {
        return false;
    }
    m_diskDrive = record->diskDrive;
    m_uuid = record->uuid;
    m_version = record->version;
    qDebug() << "DiskDrive:" << m_diskDrive << "UUID:" << m_uuid;
    return true;
}

QString ManualRestoreTask::fetchDataInfo(const QString& archive) const
{
    const QString member = u"datainfo"_s;
    std::optional<QByteArray> text;
    if (ToolFile::removeFormer(member)) {
        SpawnCmd(u"sudo"_s, tarArguments(u"-xpf"_s, archive) + QStringList(member));
        text = ToolFile::take(member);
    }
    if (!text) {
        qDebug() << "datainfo not exists!";
        return {};
    }
    QString info = QString::fromUtf8(*text);
    qDebug() << "dataInfo:" << info;
    return info;
}
