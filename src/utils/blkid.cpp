// SPDX-License-Identifier: GPL-3.0-or-later
#include "blkid.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Utils {

namespace {

struct BlkIdKey
{
    QLatin1StringView key;
    QString BlkIdInfo::*field;
};

/// The leading blanks keep " UUID=" from matching inside "PARTUUID=", " TYPE=" inside "PTTYPE=", and so on. That
/// "PARTLABEL=" has none is deliberate.
constexpr BlkIdKey blkIdKeys[] = {
    {" PARTUUID="_L1, &BlkIdInfo::partUuid},
    {"PARTLABEL="_L1, &BlkIdInfo::partLabel},
    {" LABEL="_L1, &BlkIdInfo::label},
    {" UUID="_L1, &BlkIdInfo::uuid},
    {" TYPE="_L1, &BlkIdInfo::type},
    {" LABEL_FATBOOT="_L1, &BlkIdInfo::labelFatboot},
    {" PTUUID="_L1, &BlkIdInfo::ptUuid},
    {" PTTYPE="_L1, &BlkIdInfo::ptType},
};

constexpr auto mapperDirectory = "/dev/mapper/"_L1;
constexpr auto luksPrefix = "luks"_L1;

QString textBefore(const QString& text, QChar end)
{
    return text.left(text.indexOf(end));
}

QString quotedValue(const QString& line, QLatin1StringView key)
{
    const qsizetype at = line.indexOf(key);
    const qsizetype opening = at < 0 ? -1 : line.indexOf(u'"', at + key.size());
    return opening < 0 ? QString() : textBefore(line.mid(opening + 1), u'"');
}

QSet<QString> listedMapperPaths(const QList<BlkIdInfo>& list)
{
    QSet<QString> paths;
    for (const BlkIdInfo& info : list) {
        if (info.devicePath.startsWith(mapperDirectory)
            && !QStringView(info.devicePath).mid(mapperDirectory.size()).startsWith(luksPrefix)) {
            paths.insert(info.devicePath);
        }
    }
    return paths;
}

} // namespace

BlkIdInfo parseBlkIdLine(const QString& line)
{
    BlkIdInfo info;
    info.devicePath = textBefore(line, u':');
    for (const BlkIdKey& row : blkIdKeys) {
        info.*row.field = quotedValue(line, row.key);
    }
    return info;
}

bool hasLvmMember(const QList<BlkIdInfo>& list)
{
    return std::ranges::any_of(
        list, [](const BlkIdInfo& info) { return info.type.contains("LVM2_member"_L1, Qt::CaseInsensitive); });
}

QStringList unlistedMapperPaths(const QList<BlkIdInfo>& list, const QString& linkNames)
{
    const QSet<QString> listed = listedMapperPaths(list);
    QStringList paths;
    for (const QString& line : linkNames.split(u'\n', Qt::SkipEmptyParts)) {
        const QString name = line.trimmed();
        const QString path = mapperDirectory + name;
        if (!name.isEmpty() && !name.startsWith(luksPrefix) && !listed.contains(path)) {
            paths.append(path);
        }
    }
    return paths;
}

} // namespace Utils
