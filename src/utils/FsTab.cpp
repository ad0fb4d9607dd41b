// SPDX-License-Identifier: GPL-3.0-or-later
#include "FsTab.h"

#include <QDebug>
#include <QFile>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/// The fields of a line, in the order of fstab(5).
constexpr std::array fieldOrder{
    &FSTabInfo::device,
    &FSTabInfo::mountPoint,
    &FSTabInfo::type,
    &FSTabInfo::options,
    &FSTabInfo::dump,
    &FSTabInfo::pass,
};

void assignFields(FSTabInfo& entry)
{
    QString line = entry.text;
    const QStringList fields = line.replace(u'\t', u' ').split(u' ', Qt::SkipEmptyParts);
    // Deliberate: a line that leaves out the last two fields, as fstab(5) allows, is not treated as a mount.
    if (fields.size() != static_cast<qsizetype>(fieldOrder.size())) {
        return;
    }
    for (std::size_t i = 0; i < fieldOrder.size(); ++i) {
        entry.*fieldOrder[i] = fields[static_cast<qsizetype>(i)];
    }
}

FSTabInfoPtr parseLine(const QString& line)
{
    FSTabInfoPtr entry = FSTabInfoPtr::create();
    const QString trimmed = line.trimmed();
    entry->isComment = trimmed.startsWith(u'#');
    entry->isEmpty = trimmed.isEmpty();
    if (entry->isEmpty) {
        return entry;
    }
    entry->text = line;
    if (!entry->isComment) {
        assignFields(*entry);
    }
    return entry;
}

} // namespace

FSTabInfoList FSTab::getFSTabFromFile(const QString& fileName)
{
    QFile file(fileName);
    if (!file.exists()) {
        qWarning() << "getFSTabFromFile file not exists, fileName: " << fileName;
        return {};
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    return parseFSTab(file.readAll());
}

FSTabInfoList FSTab::parseFSTab(const QByteArray& content)
{
    FSTabInfoList list;
    for (const QByteArray& line : content.split('\n')) {
        list.append(parseLine(QString::fromUtf8(line)));
    }
    return list;
}

QString FSTab::getUUID(const FSTabInfoPtr& entry)
{
    if (!entry || !entry->device.startsWith("UUID="_L1)) {
        return {};
    }
    const QStringList pieces = entry->device.split(u'=', Qt::SkipEmptyParts);
    return pieces.size() == 2 ? pieces[1] : QString();
}

FSTabInfoPtr FSTab::findByUUID(const FSTabInfoList& list, const QString& uuid)
{
    if (uuid.isEmpty()) {
        return {};
    }
    const auto found =
        std::ranges::find_if(list, [&uuid](const FSTabInfoPtr& entry) { return getUUID(entry) == uuid; });
    return found == list.end() ? FSTabInfoPtr() : *found;
}

bool FSTab::isRootUUID(const QString& uuid, const QString& rootDir)
{
    const FSTabInfoPtr entry = findByUUID(getFSTabFromFile(rootDir + u"/etc/fstab"_s), uuid);
    return entry && entry->mountPoint == "/"_L1;
}

bool FSTab::isBind(const FSTabInfoPtr& entry)
{
    return entry && !entry->isComment && !entry->isEmpty && entry->options.contains("bind"_L1);
}

bool FSTab::hasBindForUUID(const FSTabInfoList& list, const QString& uuid)
{
    return !uuid.isEmpty() && getBindUUIDs(list).contains(uuid);
}

QStringList FSTab::getBindUUIDs(const FSTabInfoList& list)
{
    QStringList uuids;
    for (const FSTabInfoPtr& entry : list) {
        const QString uuid = isBind(entry) ? getUUID(entry) : QString();
        if (!uuid.isEmpty()) {
            uuids.append(uuid);
        }
    }
    return uuids;
}
