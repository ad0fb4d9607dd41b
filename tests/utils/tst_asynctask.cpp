// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"
#include "support/FakeUDisks.h"
#include "support/LogCapture.h"
#include "support/files.h"
#include "utils/WorkerReports.h"
#include "utils/backuplistjson.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

constexpr const char* startedFlag = "/home/kestro/kestro-recovery-gui.startedFlag";

QJsonObject objectBehind(const QString& word, const QStringList& reports)
{
    const QString report = reports.value(0);
    if (reports.size() != 1 || !report.startsWith(word + u' ')) {
        return {};
    }
    return QJsonDocument::fromJson(report.mid(word.size()).toUtf8()).object();
}

/// The items of mode 2, in the text form of the log.
QStringList itemsOf(AsyncTask& task)
{
    const QJsonObject object = objectBehind(u"items"_s, reportsOf(task));
    if (!object.value("PartitionCheckItemList"_L1).isArray()) {
        return {u"no list"_s};
    }
    QStringList items;
    for (const QJsonValue& value : object.value("PartitionCheckItemList"_L1).toArray()) {
        items.append(PartitionCheckItem::fromJson(value.toObject()).toText());
    }
    return items;
}

/// A disk with every kind of partition, and fsck that finds errors on its root only.
void prepareDisk(FakePrograms& programs)
{
    programs.reply({u"sudo"_s, u"blkid"_s},
        "/dev/sda9: PARTUUID=\"9-9\"\n"
        "/dev/sda1: UUID=\"EFI\" TYPE=\"vfat\" PARTUUID=\"9-1\"\n"
        "/dev/sda2: UUID=\"LUKS\" TYPE=\"crypto_LUKS\" PARTUUID=\"9-2\"\n"
        "/dev/mapper/luks-1: LABEL=\"Root\" UUID=\"ROOT\" TYPE=\"ext4\"\n"
        "/dev/sda3: UUID=\"SWAP\" TYPE=\"swap\" PARTUUID=\"9-3\"\n"
        "/dev/sdb5: LABEL=\"recovery\" UUID=\"REC\" TYPE=\"vfat\" PARTUUID=\"8-5\"\n"
        "/dev/sdb6: PARTUUID=\"8-6\"\n"
        "/dev/sda: PTUUID=\"9\" PTTYPE=\"gpt\"\n");
    programs.reply({u"sudo"_s, u"fsck"_s});
    programs.reply({u"sudo"_s, u"fsck"_s, u"-v"_s, u"-n"_s, u"/dev/mapper/luks-1"_s}, {.err = "errors", .exitCode = 4});
}

QString item(const QString& path, const QString& label, const QString& uuid, const QString& mountPoint,
    const QString& fsType, int status, int deviceType)
{
    return PartitionCheckItem{path, label, uuid, mountPoint, fsType, status, deviceType}.toText();
}

QStringList fileSystems(int deviceType, const QString& efi = {}, const QString& root = {}, const QString& swap = {})
{
    return {item(u"/dev/sda1"_s, {}, u"EFI"_s, efi, u"vfat"_s, 0, deviceType),
        item(u"/dev/mapper/luks-1"_s, u"Root"_s, u"ROOT"_s, root, u"ext4"_s, -1, deviceType),
        item(u"/dev/sda3"_s, {}, u"SWAP"_s, swap, u"swap"_s, 0, deviceType)};
}

QString blankPartition()
{
    return item(u"/dev/sda9"_s, {}, {}, {}, {}, -1, -1);
}

} // namespace

class AsyncTaskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void otherModesDoNothing();
    void repair();
    void partitionsOfTheInstalledSystem();
    void partitionsWithTheRootMounted();
    void partitionsOfLiveSystems();
    void partitionsWithoutARoot();
    void partitionsWithoutBlkid();
    void startedFlagIsWaitedFor();
    void waitingCanBeStopped();
    void restorePage();
    void restorePageOfTheRunningSystem();
    void repairTool();
};

void AsyncTaskTest::init()
{
    Sandbox::reset();
    qputenv("TZ", "UTC");
}

void AsyncTaskTest::otherModesDoNothing()
{
    for (const int mode : {0, 6, -1}) {
        AsyncTask task(mode);
        QCOMPARE(reportsOf(task), QStringList{});
    }
}

void AsyncTaskTest::repair()
{
    FakePrograms programs;
    programs.reply({u"sudo"_s, u"fsck"_s}, {.out = "checking", .err = "it is bad", .exitCode = 1});
    programs.reply({u"sudo"_s, u"fsck"_s}, {.out = "checking", .err = "it is bad", .exitCode = 4});
    const LogCapture log;
    for (const QString& report : {u"fixed"_s, u"not fixed it is bad"_s}) {
        AsyncTask task(1);
        task.setDevicePath(u"/dev/sda3"_s);
        QCOMPARE(reportsOf(task), QStringList{report});
    }
    QCOMPARE(programs.callLines(), (QStringList{u"sudo fsck -y /dev/sda3"_s, u"sudo fsck -y /dev/sda3"_s}));
}

void AsyncTaskTest::partitionsOfTheInstalledSystem()
{
    const QString root = Sandbox::freshFolder();
    Sandbox::writeFile(root + u"/etc/fstab"_s,
        "UUID=ROOT / ext4 rw 0 1\nUUID=SWAP none swap sw 0 0\nUUID=EFI /boot/efi vfat rw 0 1\n");
    FakeUDisks udisks;
    udisks.addDevice(FakeUDisks::partition(u"sda9"_s));
    udisks.addDevice(FakeUDisks::partition(u"dm_2d0"_s, u"ROOT"_s, root));
    FakePrograms programs;
    prepareDisk(programs);
    const LogCapture log;
    AsyncTask task(2);
    task.setSystemUUID(u"ROOT"_s);
    const QStringList items = itemsOf(task);
    QStringList expected = fileSystems(1, u"/boot/efi"_s, u"/"_s, u"SWAP"_s);
    QCOMPARE(items, expected << blankPartition());
    QCOMPARE(udisks.mountCalls(), (QStringList{u"Mount dm_2d0"_s, u"Unmount dm_2d0"_s}));
    QCOMPARE(
        log.messages(QtWarningMsg), (QStringList{u"partition error, devicePath: /dev/mapper/luks-1, uuid: ROOT"_s}));
    QCOMPARE(programs.callLines().filter(u"fsck"_s),
        (QStringList{
            u"sudo fsck -v -n /dev/sda1"_s, u"sudo fsck -v -n /dev/mapper/luks-1"_s, u"sudo fsck -v -n /dev/sda3"_s}));

    // Deliberate: a later worker keeps the first list of UUIDs, also where its own fstab has changed.
    Sandbox::writeFile(root + u"/etc/fstab"_s, "UUID=ROOT /elsewhere ext4 rw 0 1\n");
    AsyncTask later(2);
    later.setSystemUUID(u"ROOT"_s);
    expected = fileSystems(1, {}, u"/elsewhere"_s);
    QCOMPARE(itemsOf(later), expected << blankPartition());
}

void AsyncTaskTest::partitionsWithTheRootMounted()
{
    const QString root = Sandbox::freshFolder();
    Sandbox::writeFile(root + u"/etc/fstab"_s, "UUID=ROOT / ext4 rw 0 1\n");
    FakeUDisks udisks;
    udisks.addDevice(FakeUDisks::partition(u"dm_2d0"_s, u"ROOT"_s, u"/media/unused"_s));
    FakePrograms programs;
    prepareDisk(programs);
    const LogCapture log;
    AsyncTask task(2);
    task.setSystemUUID(u"ROOT"_s);
    task.setRootMountPoint(root + u'/');
    QStringList expected = fileSystems(0);
    expected[1] = item(u"/dev/mapper/luks-1"_s, u"Root"_s, u"ROOT"_s, u"/"_s, u"ext4"_s, -1, 1);
    QCOMPARE(itemsOf(task), expected << blankPartition());
    QCOMPARE(udisks.mountCalls(), QStringList{});
}

void AsyncTaskTest::partitionsOfLiveSystems()
{
    FakeUDisks udisks;
    udisks.addDevice(FakeUDisks::partition(u"dm_2d0"_s, u"ROOT"_s));
    FakePrograms programs;
    prepareDisk(programs);
    const LogCapture log;
    for (const char* live :
        {"union=overlay BOOT_IMAGE=/live/vmlinuz-6.1", "live-media-path=recovery_live BOOT_IMAGE=/kestro/vmlinuz"}) {
        Sandbox::setKernelCommandLine("boot=live " + QByteArray(live) + '\n');
        AsyncTask task(2);
        task.setSystemUUID(u"ROOT"_s);
        task.setBootEnvKind(0);
        QStringList expected = fileSystems(-1);
        QCOMPARE(itemsOf(task), expected << blankPartition());
    }
    QCOMPARE(udisks.mountCalls(), QStringList{});
}

void AsyncTaskTest::partitionsWithoutARoot()
{
    // Deliberate: a kind that nobody set stays unknown, even in a live system, so the root is looked for.
    Sandbox::setKernelCommandLine("boot=live union=overlay BOOT_IMAGE=/live/vmlinuz-6.1\n");
    const FakeUDisks udisks;
    FakePrograms programs;
    prepareDisk(programs);
    const LogCapture log;
    AsyncTask task(2);
    QCOMPARE(itemsOf(task), fileSystems(-1));
    QCOMPARE(log.messages(QtWarningMsg).last(), u"GetPartitionCheckItemList rootMountPoint isEmpty"_s);
    QCOMPARE(log.lines().last().function,
        u"bool AsyncTask::GetPartitionCheckItemList(QList<PartitionCheckItem>&, int, const QList<Utils::BlkIdInfo>&)"_s);
}

void AsyncTaskTest::partitionsWithoutBlkid()
{
    FakePrograms programs;
    programs.reply({u"sudo"_s, u"blkid"_s}, {.out = "/dev/sda1: UUID=\"A\"\n", .exitCode = 2});
    const LogCapture log;
    AsyncTask task(2);
    QCOMPARE(itemsOf(task), QStringList{});
}

void AsyncTaskTest::startedFlagIsWaitedFor()
{
    AsyncTask task(3);
    QElapsedTimer timer;
    timer.start();
    const QStringList reports = reportsOf(task, [] {
        QThread::msleep(1500);
        Sandbox::writeFile(QString::fromLatin1(startedFlag), "ok");
    });
    QCOMPARE(reports, QStringList{u"started"_s});
    QVERIFY(!QFile::exists(QString::fromLatin1(startedFlag)));
    QVERIFY2(timer.elapsed() >= 4500, "three seconds pass between the file and the report");
}

void AsyncTaskTest::waitingCanBeStopped()
{
    AsyncTask task(3);
    const QStringList reports = reportsOf(task, [&task] {
        QThread::msleep(200);
        task.stop();
    });
    QCOMPARE(reports, QStringList{});

    AsyncTask destroyedWhileWaiting(3);
    destroyedWhileWaiting.start();
}

void AsyncTaskTest::restorePage()
{
    const QString root = Sandbox::freshFolder();
    const QString recovery = Sandbox::freshFolder();
    Sandbox::writeFile(root + u"/etc/fstab"_s, "UUID=00000005-0000-4000-8000-000000000005 / ext4 rw 0 1\n");
    Sandbox::writeFile(root + u"/usr/lib/kestro/desktop-version"_s, "[Release]\nType=Device\n");
    Sandbox::writeFile(root + u"/usr/lib/os-version"_s, "[Version]\nMinorVersion=1041\n");
    QVERIFY(QFile::link(u"/usr/lib/os-version"_s, root + u"/etc/os-version"_s));
    Sandbox::writeFile(root + u"/etc/kestro/system-recovery.conf"_s, "UUID=REC\n");
    Sandbox::writeFile(recovery + u"/backup/a.kim"_s, {});
    Sandbox::writeFile(recovery + u"/backup/recovery.json"_s, R"({"type":"SystemBackup"})");
    Sandbox::writeFile(recovery + u"/backup/savePath.json"_s, R"({"REC":{"1700000000":"/saved"}})");
    for (const QString& name : {u"/b.kim"_s, u"/opt.tar"_s, u"/var.tar"_s}) {
        Sandbox::writeFile(recovery + u"/saved"_s + name, {});
    }
    FakeUDisks udisks;
    udisks.addDevice(FakeUDisks::partition(u"sda1"_s));
    udisks.addDevice(FakeUDisks::partition(u"sda2"_s, u"ROOT"_s, root));
    udisks.addDevice(FakeUDisks::partition(u"sda5"_s, u"REC"_s, recovery));
    FakePrograms programs;
    programs.passThrough({u"sudo"_s, u"rm"_s});
    programs.reply({u"lsblk"_s}, recording(u"lsblk/composed-luks-lvm.txt"_s).toUtf8());
    programs.reply({u"dmsetup"_s}, recording(u"dmsetup/composed-luks-lvm.txt"_s).toUtf8());
    programs.reply({u"df"_s}, {.exitCode = 1});

    const LogCapture log;
    AsyncTask task(4);
    task.setSystemUUID(u"ROOT"_s);
    const RestoreBaseInfo info = RestoreBaseInfo::fromJson(objectBehind(u"page"_s, reportsOf(task)));
    QCOMPARE(info.osType, u"Device"_s);
    QVERIFY(info.isDeviceOS);
    QCOMPARE(info.osVersion, 1041);
    QCOMPARE(info.recoveryUUID, u"REC"_s);
    QVERIFY(info.isExitsInitBackup);
    QVERIFY(info.isLvm && info.isEncrypted && !info.isFileManagerEncrypted);
    QCOMPARE(info.recoveryInfo, u"{\n    \"type\": \"SystemBackup\"\n}\n"_s);
    QVERIFY(!QFile::exists(recovery + u"/backup/recovery.json"_s));
    const auto backups = backupListFromJson(QJsonDocument::fromJson(info.backupInfo.toUtf8()).object());
    QCOMPARE(backups.size(), 1);
    QCOMPARE(backups.first().backupPath, u"/saved"_s);
    QCOMPARE(udisks.mountCalls(),
        (QStringList{u"Mount sda2"_s, u"Mount sda5"_s, u"Mount sda5"_s, u"Unmount sda5"_s, u"Unmount sda2"_s}));
    QVERIFY(log.messages().filter(u"RestoreBaseInfo data:  \"{"_s).size() == 1);
}

void AsyncTaskTest::restorePageOfTheRunningSystem()
{
    Sandbox::writeFile(u"/etc/fstab"_s, {});
    Sandbox::writeFile(u"/usr/lib/kestro/desktop-version"_s, "[Release]\nType=Home\n");
    Sandbox::writeFile(u"/etc/kestro/system-recovery.conf"_s, "UUID=GONE\n");
    Sandbox::writeFile(u"/backup/recovery.json"_s, R"({"type":"SystemBackup"})");
    FakeUDisks udisks;
    udisks.addDevice(
        {.name = u"sda2"_s, .idUUID = u"ROOT"_s, .idType = u"ext4"_s, .mountError = u"it cannot be mounted"_s});
    FakePrograms programs;
    programs.listNoDevices();

    const LogCapture log;
    AsyncTask task(4);
    task.setSystemUUID(u"ROOT"_s);
    const RestoreBaseInfo info = RestoreBaseInfo::fromJson(objectBehind(u"page"_s, reportsOf(task)));
    QCOMPARE(info.osType, u"Home"_s);
    QVERIFY(!info.isDeviceOS);
    QCOMPARE(info.recoveryUUID, u"GONE"_s);
    QVERIFY(!info.isExitsInitBackup);
    QCOMPARE(info.recoveryInfo, QString());
    QCOMPARE(info.backupInfo, u"{\n    \"BackupFileInfoList\": [\n    ]\n}\n"_s);
    // The recovery partition is not there, so the root's own folder of that name is left alone.
    QVERIFY(QFile::exists(u"/backup/recovery.json"_s));
    // Deliberate: the root is unmounted although it fell back to "/".
    QCOMPARE(udisks.mountCalls(), (QStringList{u"Mount sda2"_s, u"Unmount sda2"_s}));
}

void AsyncTaskTest::repairTool()
{
    const QString tool = u"/usr/bin/kestro-repair-pkexec"_s;
    FakePrograms programs;
    programs.installAt(tool);
    programs.reply({tool}, {.out = "text", .err = "bad"});
    programs.reply({tool}, {.out = "text", .err = "bad", .exitCode = 126});
    const LogCapture log;
    for (const QString& report : {u"repaired"_s, u"not repaired bad"_s}) {
        AsyncTask task(5);
        QCOMPARE(reportsOf(task), QStringList{report});
    }
    QCOMPARE(log.messages(),
        (QStringList{u"kestro-repair, cmd = /usr/bin/kestro-repair-pkexec, ret = true, err = bad"_s,
            u"kestro-repair, cmd = /usr/bin/kestro-repair-pkexec, ret = false, err = bad"_s,
            u"kestro-repair, cmd = /usr/bin/kestro-repair-pkexec, output = text"_s}));
    QCOMPARE(programs.callLines(), (QStringList{tool, tool}));
}

int main(int argc, char** argv)
{
    return Sandbox::run<AsyncTaskTest>(argc, argv);
}
#include "tst_asynctask.moc"
