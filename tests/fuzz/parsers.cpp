// SPDX-License-Identifier: GPL-3.0-or-later
#include "parsers.h"

#include "gui/tasks/backupplan.h"
#include "gui/tasks/progress.h"
#include "gui/tasks/taskarguments.h"
#include "utils/FsTab.h"
#include "utils/backuphistory.h"
#include "utils/blkid.h"
#include "utils/core/blockcounttools.h"
#include "utils/core/sizetext.h"
#include "utils/core/swaptable.h"
#include "utils/core/usagereports.h"
#include "utils/devicesnapshot.h"
#include "utils/devicetree.h"
#include "utils/dfusage.h"
#include "utils/dmdependencies.h"
#include "utils/fstabuuids.h"
#include "utils/kernelcommandline.h"
#include "utils/lsblkpairs.h"
#include "utils/lvmdecision.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

/// Ends the process, which the fuzzer reports, unless what always holds does so.
void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

void lsblk(const QByteArray& bytes)
{
    const DeviceSnapshot snapshot(parseLsblkPairs(QString::fromUtf8(bytes)));
    const DeviceClasses classes = classifyDevices(snapshot.devices());
    linkDeviceTree(classes);
    QStringList uuids;
    for (const BlockDevicePtr& device : snapshot.devices()) {
        require(device->path.startsWith("/dev/"_L1));
        require(device->parent != device);
        uuids.append(device->uuid);
    }
    const LvmDecision decision = decideLvm(classes, uuids);
    require(decision.isOnLvm == !classes.logicalVolumes.isEmpty());
    require(decision.isEncrypted || !decision.isEncryptedFileSystem);
}

void dmsetup(const QByteArray& bytes)
{
    const auto mapped = BlockDevicePtr::create();
    mapped->mapperName = u"a"_s;
    const auto member = BlockDevicePtr::create();
    member->kname = u"sda3"_s;
    const BlockDeviceList devices{mapped, member};
    const QList<DmDependency> dependencies = parseDmDependencies(QString::fromUtf8(bytes));
    for (const DmDependency& line : dependencies) {
        require(!line.mapping.contains(u':'));
    }
    applyDmDependencies(devices, dependencies);
    require(mapped->pkname.isEmpty() || mapped->pkname == member->kname);
}

void df(const QByteArray& bytes)
{
    const QList<DfUsage> usages = parseDf(QString::fromUtf8(bytes));
    for (const DfUsage& usage : usages) {
        require(!usage.device.isEmpty() && !usage.device.contains(u' '));
    }
}

void blkid(const QByteArray& bytes)
{
    const QStringList lines = QString::fromUtf8(bytes).split(u'\n');
    for (const QString& line : lines) {
        static_cast<void>(Utils::parseBlkIdLine(line));
    }
}

void cmdline(const QByteArray& bytes)
{
    const QList<KernelParameter> parameters = parseKernelParameters(bytes);
    for (const KernelParameter& parameter : parameters) {
        require(parameter.field != nullptr);
    }
}

void fstab(const QByteArray& bytes)
{
    const FSTabInfoList list = FSTab::parseFSTab(bytes);
    const QStringList uuids = collectFstabUUIDs(list);
    require(uuids.size() <= list.size() && !uuids.contains(QString()));
}

void swaps(const QByteArray& bytes)
{
    const QList<SwapEntry> entries = parseSwapTable(QString::fromUtf8(bytes));
    for (const SwapEntry& entry : entries) {
        require(entry.size % 1000 == 0 && !entry.fileName.isEmpty());
    }
}

void usage(const QByteArray& bytes)
{
    const QString report = QString::fromUtf8(bytes);
    const QString path = u"/dev/sdz1"_s;
    for (const BlockCountTool& tool : blockCountTools()) {
        const std::optional<FsUsage> counts = parseBlockCounts(report, tool.patterns);
        require(!counts || (counts->total >= 0 && counts->free >= 0));
    }
    const std::optional<FsUsage> btrfs = parseBtrfsReport(report, path);
    require(!btrfs || (btrfs->free >= 0 && btrfs->free <= btrfs->total));
    static_cast<void>(parseBlockCounts(report, jfsPatterns()));
    static_cast<void>(parseNilfsReport(report));
    static_cast<void>(parseFatReport(report, path));
}

void sizetext(const QByteArray& bytes)
{
    require(bytesOfSizeText(QString::fromUtf8(bytes)) >= -1);
}

void recovery(const QByteArray& bytes)
{
    const QJsonArray tasks = QJsonDocument::fromJson(bytes).object()[u"tasks"_s].toArray();
    for (const QJsonValue& task : tasks) {
        const std::optional<BackupElement> element = parseBackupElement(task.toObject()[u"args"_s].toArray());
        if (element) {
            static_cast<void>(uuidOfArgument(element->sourceUuid));
            static_cast<void>(targetDirectory(u"/media/x"_s, element->directory));
            static_cast<void>(leadsUpwards(element->directory));
        }
    }
}

void savepath(const QByteArray& bytes)
{
    static_cast<void>(parseBackupRecord(bytes));
}

void progress(const QByteArray& bytes)
{
    const float percent = Progress::clonePercent(bytes);
    const int shown = Progress::rounded(Progress::highest(percent * Progress::fraction(true, 1, 2)));
    require(std::isnan(percent) || shown >= 0);
}

constexpr struct
{
    std::string_view name;
    void (*run)(const QByteArray& bytes);
} targets[] = {
    {"lsblk", lsblk},
    {"dmsetup", dmsetup},
    {"df", df},
    {"blkid", blkid},
    {"cmdline", cmdline},
    {"fstab", fstab},
    {"swaps", swaps},
    {"usage", usage},
    {"sizetext", sizetext},
    {"recovery", recovery},
    {"savepath", savepath},
    {"progress", progress},
};

} // namespace

bool feedParser(std::string_view name, const char* data, std::size_t size)
{
    for (const auto& target : targets) {
        if (target.name == name) {
            target.run(QByteArray(data, static_cast<qsizetype>(size)));
            return true;
        }
    }
    return false;
}
