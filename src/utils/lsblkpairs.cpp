// SPDX-License-Identifier: GPL-3.0-or-later
#include "lsblkpairs.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// Captures of the line's pattern, in the order of its columns.
enum Column {
    Name = 1,
    Kname,
    Label,
    Uuid,
    Type,
    FsType,
    Size,
    FsUsed,
    FsAvail,
    LogSec,
    PhySec,
    MountPoint,
    Model,
    ReadOnly,
    Hotplug,
    MajMin,
    PartLabel,
    PartUuid,
    Pkname,
    Path,
    Vendor,
    Serial,
    Rev,
    Rota
};

template <typename T>
struct Field
{
    Column column;
    T BlockDeviceInfo::*member;
};

constexpr Field<QString> texts[] = {
    {Name, &BlockDeviceInfo::name},
    {Kname, &BlockDeviceInfo::kname},
    {Label, &BlockDeviceInfo::label},
    {Uuid, &BlockDeviceInfo::uuid},
    {Type, &BlockDeviceInfo::type},
    {MountPoint, &BlockDeviceInfo::mountPoint},
    {Model, &BlockDeviceInfo::model},
    {MajMin, &BlockDeviceInfo::majMin},
    {PartLabel, &BlockDeviceInfo::partLabel},
    {PartUuid, &BlockDeviceInfo::partUuid},
    {Pkname, &BlockDeviceInfo::pkname},
    {Path, &BlockDeviceInfo::lsblkPath},
    {Vendor, &BlockDeviceInfo::vendor},
    {Serial, &BlockDeviceInfo::serial},
    {Rev, &BlockDeviceInfo::rev},
};

constexpr Field<qint64> numbers[] = {
    {Size, &BlockDeviceInfo::size},
    {FsUsed, &BlockDeviceInfo::fsUsed},
    {FsAvail, &BlockDeviceInfo::fsAvail},
    {LogSec, &BlockDeviceInfo::logSec},
    {PhySec, &BlockDeviceInfo::phySec},
};

constexpr Field<bool> flags[] = {
    {ReadOnly, &BlockDeviceInfo::readOnly},
    {Hotplug, &BlockDeviceInfo::hotplug},
};

struct DerivedPath
{
    QLatin1StringView directory;
    QString BlockDeviceInfo::*value;
    QString BlockDeviceInfo::*path;
};

constexpr DerivedPath derivedPaths[] = {
    {"/dev/disk/by-uuid/"_L1, &BlockDeviceInfo::uuid, &BlockDeviceInfo::byUuidPath},
    {"/dev/disk/by-label/"_L1, &BlockDeviceInfo::label, &BlockDeviceInfo::byLabelPath},
    {"/dev/disk/by-partuuid/"_L1, &BlockDeviceInfo::partUuid, &BlockDeviceInfo::byPartUuidPath},
    {"/dev/disk/by-partlabel/"_L1, &BlockDeviceInfo::partLabel, &BlockDeviceInfo::byPartLabelPath},
};

/// Every text is greedy, so that quotes within a value do no harm; versions of lsblk spell MAJ:MIN in two ways.
const QRegularExpression& linePattern()
{
    static const QRegularExpression pattern(
        uR"re(NAME="(.*)" KNAME="(.*)" LABEL="(.*)" UUID="(.*)" TYPE="(.*)" FSTYPE="(.*)" SIZE="(.*)" )re"
        uR"re(FSUSED="(.*)" FSAVAIL="(.*)" LOG-SEC="(.*)" PHY-SEC="(.*)" MOUNTPOINT="(.*)" MODEL="(.*)" )re"
        uR"re(RO="([0-9]+)" HOTPLUG="([0-9]+)" MAJ[_:]MIN="([0-9:]+)" PARTLABEL="(.*)" PARTUUID="(.*)" )re"
        uR"re(PKNAME="(.*)" PATH="(.*)" VENDOR="(.*)" SERIAL="(.*)" REV="(.*)" ROTA="(.*)")re"_s);
    return pattern;
}

QString normalFsType(const QString& printed)
{
    const QString lower = printed.toLower();
    if (lower == "crypto_luks"_L1) {
        return u"luks"_s;
    }
    return lower == "lvm2_member"_L1 ? u"lvm2"_s : lower;
}

qint32 numberOrMinusOne(QStringView text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber ? number : -1;
}

void setDeviceNumbers(BlockDeviceInfo& device)
{
    const qsizetype colon = device.majMin.indexOf(u':');
    const QStringView majMin = device.majMin;
    device.major = numberOrMinusOne(colon < 0 ? majMin : majMin.first(colon));
    device.minor = colon < 0 ? -1 : numberOrMinusOne(majMin.sliced(colon + 1));
}

void setPaths(BlockDeviceInfo& device)
{
    device.path = "/dev/"_L1 + device.kname;
    for (const DerivedPath& derived : derivedPaths) {
        const QString& value = device.*derived.value;
        if (!value.isEmpty()) {
            device.*derived.path = derived.directory + value;
        }
    }
}

BlockDevicePtr deviceOf(const QRegularExpressionMatch& line)
{
    const auto device = BlockDevicePtr::create();
    for (const auto& text : texts) {
        (*device).*text.member = line.captured(text.column).trimmed();
    }
    for (const auto& number : numbers) {
        (*device).*number.member = line.capturedView(number.column).trimmed().toLongLong();
    }
    for (const auto& flag : flags) {
        (*device).*flag.member = line.capturedView(flag.column).trimmed() == "1"_L1;
    }
    device->fsType = normalFsType(line.captured(FsType).trimmed());
    device->rota = numberOrMinusOne(line.capturedView(Rota).trimmed());
    setDeviceNumbers(*device);
    setPaths(*device);
    return device;
}

} // namespace

QStringList lsblkPairsArguments()
{
    return {u"--bytes"_s, u"--pairs"_s, u"--output"_s,
        u"NAME,KNAME,LABEL,UUID,TYPE,FSTYPE,SIZE,FSUSED,FSAVAIL,LOG-SEC,PHY-SEC,MOUNTPOINT,MODEL,RO,HOTPLUG,"
        "MAJ:MIN,PARTLABEL,PARTUUID,PKNAME,PATH,VENDOR,SERIAL,REV,ROTA"_s};
}

BlockDeviceList parseLsblkPairs(const QString& output)
{
    BlockDeviceList devices;
    const QStringList lines = output.split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QRegularExpressionMatch match = linePattern().match(line);
        if (match.hasMatch()) {
            devices.append(deviceOf(match));
        }
    }
    return devices;
}
