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
const QString backup = BackupToRestore::directory();

} // namespace

/// What a manual restore does with the archives of a backup, whole and damaged.
class ManualRestoreArchivesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void secondArchiveWithoutDescription_data();
    void secondArchiveWithoutDescription();
    void refusedArchives_data();
    void refusedArchives();
    void membersStayInTheDirectory();
    void damagedArchiveChangesNothing_data();
    void damagedArchiveChangesNothing();
    void mountPointThatHoldsTheName();
    void directoryThatNoArchiveBringsBack_data();
    void directoryThatNoArchiveBringsBack();
    void archivesOfSeveralPartitions();
    void backupThatMakesRoomForItself_data();
    void backupThatMakesRoomForItself();
};

void ManualRestoreArchivesTest::secondArchiveWithoutDescription_data()
{
    // An archive that is whole is left out; for one that is damaged nothing may make room.
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<QString>("left");
    QTest::newRow("empty archive") << QByteArray(10240, '\0') << u"finished"_s << u"file"_s;
    QTest::newRow("no archive") << "no archive"_ba << brokenFile << u"former"_s;
}

void ManualRestoreArchivesTest::secondArchiveWithoutDescription()
{
    QFETCH(const QByteArray, archive);
    BackupToRestore restore({});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    Sandbox::writeFile(backup + u"/var.tar"_s, archive);
    Sandbox::writeFile(u"/media/DATA/opt/former"_s, "");
    QTEST(restore.outcome(), "outcome");
    QCOMPARE(restore.machine.callsOf({u"tar"_s}).mid(0, 4),
        (QStringList{u"tar -xpf %1/opt.tar datainfo"_s.arg(backup), u"tar -xpf %1/var.tar datainfo"_s.arg(backup),
            u"tar --no-seek -tf %1/opt.tar opt"_s.arg(backup), u"tar --no-seek -tf %1/var.tar"_s.arg(backup)}));
    QVERIFY(restore.machine.log.find(u"datainfo not exists!"_s).line > 0);
    QTEST(QDir(u"/media/DATA/opt"_s).entryList(QDir::Files).join(u' '), "left");
}

void ManualRestoreArchivesTest::refusedArchives_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::addColumn<QString>("outcome");
    QTest::newRow("unknown partition") << "UUID=GONE\nDirectory=opt\n"_ba << otherDisk;
    QTest::newRow("cannot be mounted") << "UUID=SWAP\nDirectory=opt\n"_ba << otherDisk;
    QTest::newRow("out of the partition") << "UUID=DATA\nDirectory=../ROOT/etc\n"_ba << brokenFile;
    QTest::newRow("option of tar") << "UUID=DATA\nDirectory=--absolute-names\n"_ba << brokenFile;
    QTest::newRow("names no directory") << "UUID=DATA\n"_ba << u"Failed to initialize the task"_s;
}

void ManualRestoreArchivesTest::refusedArchives()
{
    QFETCH(const QByteArray, description);
    BackupToRestore restore({});
    restore.addArchive(u"opt.tar"_s, description);
    QTEST(restore.outcome(), "outcome");
    QCOMPARE(restore.changes(), QStringList());
    QCOMPARE(restore.machine.callsOf({u"tar"_s}).filter(u" -C "_s), QStringList());
    QVERIFY(!QFile::exists(u"datainfo"_s));
}

void ManualRestoreArchivesTest::membersStayInTheDirectory()
{
    // The safety of GNU tar's default is relied on: no "-P" on our side.
    BackupToRestore restore({});
    restore.addArchive(
        u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n", {u"-P"_s, u"--transform=s,^opt/file$,opt/../../escaped,"_s});
    QCOMPARE(restore.outcome(), u"/recovery/kestro-recovery-gui.log"_s);
    QVERIFY(!QFile::exists(u"/media/escaped"_s));
    restore.addArchive(
        u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n", {u"-P"_s, u"--transform=s,^opt/file$,/opt/absolute,"_s});
    QCOMPARE(restore.outcome(), u"finished"_s);
    QVERIFY(!QFile::exists(u"/opt/absolute"_s));
}

void ManualRestoreArchivesTest::damagedArchiveChangesNothing_data()
{
    // The description, 1024 bytes, is whole, what follows it is not.
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("size");
    QTest::newRow("cut off in a member") << QStringList() << 1024 + 512 + 512;
    QTest::newRow("cut off between members") << QStringList() << 1024 + 512 + 512 + 512;
    QTest::newRow("one block of the end mark") << QStringList() << 1024 + 2 * (512 + 512 + 512) + 512;
    // What a backup leaves that was cut short before it came to this archive: its usual size, and no directory.
    QTest::newRow("description alone") << QStringList{u"--exclude=var"_s} << 10240;
}

void ManualRestoreArchivesTest::damagedArchiveChangesNothing()
{
    QFETCH(const QStringList, options);
    QFETCH(const int, size);
    BackupToRestore restore({});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    restore.addArchive(u"var.tar"_s, "UUID=DATA\nDirectory=var\n", options);
    QVERIFY(QFile::resize(backup + u"/var.tar"_s, size));
    QCOMPARE(restore.outcome(), brokenFile);
    QCOMPARE(restore.machine.jobs(), QStringList());
    QCOMPARE(restore.changes(), QStringList());
}

void ManualRestoreArchivesTest::mountPointThatHoldsTheName()
{
    BackupToRestore restore({});
    FakeUDisks::Device device = FakeMachine::device(u"sda5"_s);
    device.mountDirectory = u"/media/opt"_s;
    restore.machine.udisks.addDevice(device);
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    QCOMPARE(restore.outcome(), otherDisk);
    QCOMPARE(restore.changes(), QStringList());
}

void ManualRestoreArchivesTest::directoryThatNoArchiveBringsBack_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("outcome");
    QTest::newRow("something in it") << u"/media/DATA/var/.state"_s << brokenFile;
    QTest::newRow("something beside it") << u"/media/DATA/variant"_s << u"finished"_s;
}

void ManualRestoreArchivesTest::directoryThatNoArchiveBringsBack()
{
    // Both directories make room, whatever the archives are.
    QFETCH(const QString, file);
    QFETCH(const QString, outcome);
    BackupToRestore restore({});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    Sandbox::writeFile(file, "x");
    QCOMPARE(restore.outcome(), outcome);
    QVERIFY(QFile::exists(file));
    QCOMPARE(restore.changes().isEmpty(), outcome == brokenFile);
}

void ManualRestoreArchivesTest::archivesOfSeveralPartitions()
{
    // Deliberate: all go to the partition that the first one names.
    BackupToRestore restore({});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    restore.addArchive(u"var.tar"_s, "UUID=BOOT\nDirectory=var\n");
    QCOMPARE(restore.outcome(), u"finished"_s);
    QVERIFY(QFile::exists(u"/media/DATA/var/file"_s));
    QVERIFY(!QFile::exists(u"/media/BOOT/var"_s));
}

void ManualRestoreArchivesTest::backupThatMakesRoomForItself_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("by its own name") << u"/media/DATA/var/lib/b"_s;
    QTest::newRow("by a link") << u"/media/TARGET/link/lib/b"_s;
}

void ManualRestoreArchivesTest::backupThatMakesRoomForItself()
{
    QFETCH(const QString, path);
    BackupToRestore restore({});
    restore.addArchive(u"opt.tar"_s, "UUID=DATA\nDirectory=opt\n");
    restore.addArchive(u"var.tar"_s, "UUID=DATA\nDirectory=var\n");
    QVERIFY(QDir().mkpath(u"/media/DATA/var/lib"_s));
    QVERIFY(QDir().rename(backup, u"/media/DATA/var/lib/b"_s));
    QVERIFY(QFile::link(u"/media/DATA/var"_s, u"/media/TARGET/link"_s));
    QCOMPARE(TaskRun<ManualRestoreTask>(path).outcome(), brokenFile);
    QCOMPARE(restore.changes(), QStringList());
    QVERIFY(QFile::exists(u"/media/DATA/var/lib/b/opt.tar"_s));
}

int main(int argc, char** argv)
{
    return Sandbox::run<ManualRestoreArchivesTest>(argc, argv);
}

#include "tst_manualrestorearchives.moc"
