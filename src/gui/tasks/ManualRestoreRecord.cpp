// SPDX-License-Identifier: GPL-3.0-or-later
// ManualRestoreTask: what an image and an archive say about themselves.
#include "gui/tasks/ManualRestoreTask.h"

#include "gui/tasks/imagerecord.h"
#include "utils/core/command.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Makes room for a file that a tool will leave in the working directory. One of an earlier run must never be taken for
/// it: @return false when it cannot be removed.
bool removeFormer(const QString& fileName)
{
    QFile::remove(fileName);
    return !QFileInfo::exists(fileName);
}

/// Takes the file away that a tool has left in the working directory. An archive can hold anything by that name: only
/// an ordinary file is opened.
std::optional<QByteArray> takeFile(const QString& fileName)
{
    const QFileInfo info(fileName);
    QFile file(fileName);
    const bool isOrdinary = info.isFile() && !info.isSymLink();
    if (!isOrdinary || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray content = file.readAll();
    file.remove();
    return content;
}

} // namespace

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
    if (!removeFormer(m_diskInfoName)) {
        return false;
    }
    const QString customFile = u"kim://%1/%2"_s.arg(filePath, m_diskInfoName);
    const bool succeeded =
        SpawnCmd(u"sudo"_s, {u"kestro-clone"_s, u"--read-custom-file"_s, customFile, m_diskInfoName});
    const std::optional<QByteArray> text = takeFile(m_diskInfoName);
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
    if (removeFormer(member)) {
        SpawnCmd(u"sudo"_s, tarArguments(u"-xpf"_s, archive) + QStringList(member));
        text = takeFile(member);
    }
    if (!text) {
        qDebug() << "datainfo not exists!";
        return {};
    }
    QString info = QString::fromUtf8(*text);
    qDebug() << "dataInfo:" << info;
    return info;
}
