// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/BackupToRestore.h"
#include "gui/tasks/ManualRestoreTask.h"
#include "gui/tasks/TaskRun.h"
#include "sandbox/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString brokenFile = u"There is something wrong with your backup file"_s;
const QString otherDisk = u"Your disk info and the backup info do not match, so you cannot restore now"_s;
const QString otherVersion =
    u"Your system version does not match the backup file, please update the system and restore again"_s;
const QString backup = BackupToRestore::directory();

/// A reply of the image tool that leaves a record, always of the same time.
FakePrograms::Reply record(const QByteArray& text)
{
    return {.snippet = "printf '%b' '" + text + "' >\"$3\"; touch -d @1000 \"$3\""};
}

} // namespace

class ManualRestoreTaskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void targets_data();
    void targets();
    void recordLines_data();
    void recordLines();
    void recordsOfOneSizeAndTime();
    void noRecordForTheSecondImage_data();
    void noRecordForTheSecondImage();
    void diskImageUnmountsItsDrive();
    void swapOfTheDisk_data();
    void swapOfTheDisk();
    void laterRefusalChangesNothing();
    void damagedImageChangesNothing();
    void refusedImageJobClearsNothing();
    void membersOfTheRecordStay();
    void nothingToRestore_data();
    void nothingToRestore();
    void liveStart();
    void directoryGoneAtTheEnd();
};

void ManualRestoreTaskTest::targets_data()
{
    QTest::addColumn<QString>("image");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<QStringList>("devices");
    const QString system = u"system.kim"_s;
    const QString data = u"data.kim"_s;
    const auto accepted = [](const char* name, const QString& image, const QByteArray& text,
                              const QStringList& devices) {
        QTest::newRow(name) << image << text << u"finished"_s << devices;
    };
    const auto refused = [](const char* name, const QString& image, const QByteArray& text, const QString& outcome) {
        QTest::newRow(name) << image << text << outcome << QStringList();
    };
    accepted("root onto itself", system, "UUID=ROOT\\nVersion=1.1", {u"/dev/sda3"_s});
    accepted("system, other partition of the disk", system, "UUID=DATA\\nVersion=1.1", {u"/dev/sda5"_s});
    refused("system, other disk", system, "UUID=TARGET\\nVersion=1.1", otherDisk);
    accepted("data, other disk", data, "UUID=TARGET\\nVersion=1.1", {u"/dev/sdb1"_s});
    refused("partition not here", data, "UUID=GONE\\nVersion=1.1", otherDisk);
    accepted("disk of the root", system, "DiskDrive=DISK_A\\nVersion=1.1", {u"/dev/sda"_s});
    refused("system, disk without the root", system, "DiskDrive=DISK_B\\nVersion=1.1", otherDisk);
    accepted("data, other disk as a whole", data, "DiskDrive=DISK_B\\nVersion=1.1", {u"/dev/sdb"_s});
    refused("disk not here", data, "DiskDrive=DISK_X\\nVersion=1.1", otherDisk);
    accepted("disk and partition", system, "DiskDrive=DISK_A\\nUUID=ROOT", {u"/dev/sda"_s, u"/dev/sda3"_s});
    refused("disk fits, partition does not", system, "DiskDrive=DISK_A\\nUUID=GONE", otherDisk);
    accepted("no version", data, "UUID=DATA", {u"/dev/sda5"_s});
    refused("version 2.0", data, "UUID=DATA\\nVersion=2.0", otherVersion);
    refused("names nothing", data, "Version=1.1", brokenFile);
    refused("a list", data, "UUID=DATA,ROOT\\nVersion=1.1", brokenFile);
}

void ManualRestoreTaskTest::targets()
{
    QFETCH(const QString, image);
    QFETCH(const QByteArray, text);
    QFETCH(const QStringList, devices);
    BackupToRestore restore({image});
    restore.readsRecord(record(text));
    QTEST(restore.outcome(), "outcome");
    QStringList expected;
    for (const QString& device : devices) {
        expected.append(u"%1/%2 %3"_s.arg(backup, image, device));
    }
    QCOMPARE(restore.machine.jobs(), expected);
    QVERIFY(!QFile::exists(u"DiskInfo"_s));
}

void ManualRestoreTaskTest::recordLines_data()
{
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("outcome");
    const QString good = u"finished"_s;
    QTest::newRow("partition") << "ok\nUUID=DATA\n"_ba
                               << ""_ba << 0 << good;
    QTest::newRow("empty value") << "UUID=\n"_ba
                                 << ""_ba << 0 << brokenFile;
    QTest::newRow("invalid on standard output") << "invalid file\nUUID=DATA\n"_ba
                                                << ""_ba << 0 << brokenFile;
    QTest::newRow("invalid on standard error") << "UUID=DATA\n"_ba
                                               << "invalid file\n"_ba << 0 << brokenFile;
    QTest::newRow("tool fails without a word") << "UUID=DATA\n"_ba
                                               << ""_ba << 1 << brokenFile;
}

void ManualRestoreTaskTest::recordLines()
{
    QFETCH(const QByteArray, out);
    QFETCH(const QByteArray, err);
    QFETCH(const int, exitCode);
    BackupToRestore restore({u"a.kim"_s});
    restore.machine.programs.reply(
        {u"kestro-clone"_s, u"--kim-info"_s, backup + u"/a.kim"_s}, {.out = out, .err = err, .exitCode = exitCode});
    QTEST(restore.outcome(), "outcome");
    QCOMPARE(restore.machine.callsOf({u"kestro-clone"_s}).filter(u"--read-custom-file"_s), QStringList());
}

void ManualRestoreTaskTest::recordsOfOneSizeAndTime()
{
    BackupToRestore restore({u"a.kim"_s, u"b.kim"_s});
    restore.readsRecord(record("UUID=DATA\\nVersion=1.1"));
    restore.readsRecord(record("UUID=BOOT\\nVersion=1.1"));
    QCOMPARE(restore.outcome(), u"finished"_s);
    QCOMPARE(restore.machine.jobs(), (QStringList{backup + u"/a.kim /dev/sda5"_s, backup + u"/b.kim /dev/sda2"_s}));
}

void ManualRestoreTaskTest::noRecordForTheSecondImage_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::newRow("tool fails") << 1;
    QTest::newRow("tool says nothing") << 0;
}

void ManualRestoreTaskTest::noRecordForTheSecondImage()
{
    QFETCH(const int, exitCode);
    BackupToRestore restore({u"a.kim"_s, u"b.kim"_s});
    restore.readsRecord(record("UUID=DATA\\nVersion=1.1"));
    restore.readsRecord({.exitCode = exitCode});
    QCOMPARE(restore.outcome(), brokenFile);
    QCOMPARE(restore.machine.jobs(), QStringList());
}

void ManualRestoreTaskTest::diskImageUnmountsItsDrive()
{
    BackupToRestore restore({u"disk.kim"_s});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    restore.readsRecord(record("DiskDrive=DISK_A\\nVersion=1.1"));
    QCOMPARE(restore.outcome(), u"finished"_s);
    QCOMPARE(restore.machine.callsOf({u"tar"_s}), QStringList());
    const QStringList calls = restore.machine.udisks.callLines();
    QVERIFY(calls.contains(u"Unmount sda5"_s));
    QVERIFY(!calls.contains(u"Unmount sdb1"_s));
    QVERIFY(restore.machine.log.find(u"don't restore the opt and var directory!"_s).line > 0);
}

void ManualRestoreTaskTest::swapOfTheDisk_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("fstab");
    QTest::addColumn<QStringList>("calls");
    const QByteArray disk = "DiskDrive=DISK_A\\nVersion=1.1";
    const QByteArray entry = "UUID=NEW-SWAP none swap sw 0 0\n";
    QTest::newRow("entry") << disk << entry << QStringList{u"mkswap /dev/sda6 -U NEW-SWAP"_s};
    QTest::newRow("no swap entry") << disk << "UUID=ROOT / ext4\n"_ba << QStringList();
    QTest::newRow("partition image") << "UUID=DATA\\nVersion=1.1"_ba << entry << QStringList();
}

void ManualRestoreTaskTest::swapOfTheDisk()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QByteArray, fstab);
    BackupToRestore restore({u"disk.kim"_s});
    FakeUDisks::Device other = FakeMachine::device(u"sda6"_s);
    other.name = u"sdd1"_s;
    other.idUUID = u"OTHER"_s;
    other.drive = u"X_DISK_A"_s; // its identifier ends alike, and it is not meant
    restore.machine.udisks.addDevice(other);
    Sandbox::writeFile(u"/media/ROOT/etc/fstab"_s, fstab);
    // Listed after the root partition: the first answer stays.
    Sandbox::writeFile(u"/media/DATA/etc/fstab"_s, "UUID=OTHER none swap sw 0 0\n");
    if (!fstab.contains("swap")) {
        QFile::remove(u"/media/DATA/etc/fstab"_s);
    }
    restore.readsRecord(record(text));
    QCOMPARE(restore.outcome(), u"finished"_s);
    QTEST(restore.machine.callsOf({u"mkswap"_s}), "calls");
}

void ManualRestoreTaskTest::laterRefusalChangesNothing()
{
    BackupToRestore restore({});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    Sandbox::writeFile(u"/media/TARGET/bad/x.kim"_s, "image");
    restore.readsRecord(record("UUID=GONE\\nVersion=1.1"));
    QCOMPARE(restore.outcome({u"/b"_s, u"/bad"_s, u"/b"_s}), otherDisk);
    QCOMPARE(restore.changes(), QStringList());
    QCOMPARE(restore.machine.callsOf({u"tar"_s}).filter(u" datainfo"_s).size(), 1);
}

void ManualRestoreTaskTest::damagedImageChangesNothing()
{
    BackupToRestore restore({u"a.kim"_s, u"b.kim"_s});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    restore.readsRecord(record("UUID=DATA\nVersion=1.1"));
    restore.machine.programs.reply(
        {u"kestro-clone"_s, u"--verify"_s, backup + u"/b.kim"_s}, {.err = "kestro-clone: damaged\n", .exitCode = 4});
    QCOMPARE(restore.outcome(), brokenFile);
    QCOMPARE(restore.machine.jobs(), QStringList());
    QCOMPARE(restore.changes(), QStringList());
}

void ManualRestoreTaskTest::refusedImageJobClearsNothing()
{
    // The image tool refuses some targets only when it is about to write: one that is too small, in use, …
    BackupToRestore restore({u"a.kim"_s});
    restore.readsRecord(record("UUID=ROOT\nVersion=1.1"));
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    restore.machine.programs.reply({u"kestro-clone"_s, u"--tui"_s, backup + u"/a.kim"_s}, {.exitCode = 5});
    QCOMPARE(restore.outcome(), u"/recovery/kestro-recovery-gui.log"_s);
    QCOMPARE(restore.changes(), QStringList());
    // Those of another backup come back before this image is tried, and clear what is theirs.
    QDir().mkpath(u"/media/TARGET/other"_s);
    QVERIFY(QFile::rename(backup + u"/opt.tar"_s, u"/media/TARGET/other/opt.tar"_s));
    restore.addArchive(u"var.tar"_s, "UUID=BOOT\nDirectory=var\n");
    QCOMPARE(restore.outcome({u"/other"_s, u"/b"_s}), u"/recovery/kestro-recovery-gui.log"_s);
    QVERIFY(!restore.changes().isEmpty());
    QCOMPARE(restore.changes().filter(u"/media/BOOT"_s), QStringList());
}

void ManualRestoreTaskTest::membersOfTheRecordStay()
{
    // Deliberate: what the image before has said about disk and version counts for this one, too.
    BackupToRestore restore({u"a.kim"_s, u"b.kim"_s});
    restore.machine.programs.reply(
        {u"kestro-clone"_s, u"--kim-info"_s, backup + u"/a.kim"_s}, "disk: DiskDrive=DISK_A\n");
    restore.machine.programs.reply({u"kestro-clone"_s, u"--kim-info"_s, backup + u"/b.kim"_s}, "UUID=DATA\n");
    QCOMPARE(restore.outcome(), u"finished"_s);
    QCOMPARE(restore.machine.jobs(),
        (QStringList{backup + u"/a.kim /dev/sda"_s, backup + u"/b.kim /dev/sda"_s, backup + u"/b.kim /dev/sda5"_s}));
}

void ManualRestoreTaskTest::nothingToRestore_data()
{
    QTest::addColumn<QString>("uuid");
    QTest::addColumn<QString>("directory");
    QTest::newRow("empty directory") << u"TARGET"_s << u"/empty"_s;
    QTest::newRow("no such directory") << u"TARGET"_s << u"/none"_s;
    QTest::newRow("unknown partition") << u"GONE"_s << u"/media/TARGET/b"_s;
    QTest::newRow("leads upwards") << u"TARGET"_s << u"/../TARGET/b"_s;
}

void ManualRestoreTaskTest::nothingToRestore()
{
    QFETCH(const QString, uuid);
    QFETCH(const QString, directory);
    BackupToRestore restore({u"a.kim"_s});
    restore.readsRecord(record("UUID=DATA\\nVersion=1.1"));
    QDir().mkpath(u"/media/TARGET/empty"_s);
    const QJsonArray tasks{taskElement(u"restore-partitions"_s, {uuid, directory}), taskElement(u"other"_s)};
    TaskRun<ManualRestoreTask> run(tasks);
    QCOMPARE(run.outcome(), u"Failed to initialize the task"_s);
    QCOMPARE(restore.machine.programs.callLines(), QStringList());
}

void ManualRestoreTaskTest::liveStart()
{
    BackupToRestore restore({u"a.kim"_s});
    restore.readsRecord(record("UUID=DATA\\nVersion=1.1"));
    TaskRun<ManualRestoreTask> run(backup);
    QVERIFY(!run.task.isStarted());
    QCOMPARE(run.outcome(), u"finished"_s);
    QCOMPARE(restore.machine.jobs(), QStringList{backup + u"/a.kim /dev/sda5"_s});
    QCOMPARE(restore.machine.callsOf({u"resetEFI"_s}).size(), 1);
    // Deliberate: chosen on the page, an empty directory is no failure.
    QDir().mkpath(u"/media/TARGET/empty"_s);
    QCOMPARE(TaskRun<ManualRestoreTask>(u"/media/TARGET/empty"_s).outcome(), u"finished"_s);
}

void ManualRestoreTaskTest::directoryGoneAtTheEnd()
{
    BackupToRestore restore({u"a.kim"_s});
    restore.readsRecord(record("UUID=DATA\\nVersion=1.1"));
    restore.machine.programs.reply(
        {u"kestro-clone"_s, u"--tui"_s, backup + u"/a.kim"_s}, {.snippet = "rm -r /media/TARGET/b"});
    QCOMPARE(restore.outcome(), u"Cannot find the target location"_s);
    QCOMPARE(restore.machine.callsOf({u"resetEFI"_s}), QStringList());
}

int main(int argc, char** argv)
{
    return Sandbox::run<ManualRestoreTaskTest>(argc, argv);
}

#include "tst_manualrestoretask.moc"
