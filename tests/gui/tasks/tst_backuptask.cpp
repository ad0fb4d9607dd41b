// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/BackupTask.h"
#include "gui/tasks/FakeMachine.h"
#include "gui/tasks/ManualRestoreTask.h"
#include "gui/tasks/TaskRun.h"
#include "gui/tasks/tasktype.h"
#include "sandbox/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QJsonObject imageOf(const QString& source, const QString& name = u"system.kim"_s)
{
    return taskElement(u"create-backup-image"_s, {u"UUID:"_s + source, u"UUID:TARGET"_s, u"/b"_s, name});
}

QJsonObject directoriesOf(const QString& source)
{
    return taskElement(u"create-backup-directory"_s, {source, u" TARGET "_s, u"/b"_s});
}

} // namespace

class BackupTaskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void systemBackupCalls();
    void manualBackupCalls();
    void badElements_data();
    void badElements();
    void onlyTheFirstDirectoryIsChecked();
    void useless_data();
    void useless();
    void otherImageInThePlace_data();
    void otherImageInThePlace();
    void mountPointThatHoldsAName();
    void directoryInWhatIsBackedUp();
    void directoryGoneAtTheEnd();
    void backupAndRestore();
};

void BackupTaskTest::systemBackupCalls()
{
    FakeMachine machine;
    machine.allowFileCommands();
    machine.allowImages();
    machine.programs.reply({u"sudo"_s, u"tar"_s});
    for (const QString& name : {u"opt"_s, u"var"_s}) {
        const QString archive = u"/media/TARGET/b//%1.tar"_s.arg(name);
        machine.programs.reply({u"sudo"_s, u"tar"_s, u"--occurrence=1"_s, u"-xOf"_s, archive},
            "UUID=DATA\nDirectory="_ba + name.toUtf8() + '\n');
    }
    TaskRun<BackupTask> run(QJsonArray{imageOf(u"ROOT"_s), directoriesOf(u"DATA"_s)}, SystemBackup);
    QCOMPARE(run.outcome(), u"finished"_s);
    const QString dir = u"/media/TARGET/b/"_s;
    QCOMPARE(machine.callsOf({u"mkdir"_s, u"setfacl"_s, u"write-file"_s, u"kestro-clone"_s, u"create-data-info"_s,
                 u"tar"_s, u"rm"_s}),
        (QStringList{u"mkdir -p "_s + dir, u"setfacl -m o:rwx "_s + dir,
            u"write-file DiskInfo UUID=ROOT\\nVersion=1.1"_s,
            u"kestro-clone --write-custom-file kim://%1system.kim/DiskInfo DiskInfo"_s.arg(dir),
            u"create-data-info DATA opt /media/DATA/datainfo"_s,
            u"tar -cpf %1/opt.tar -C /media/DATA datainfo"_s.arg(dir), u"rm /media/DATA/datainfo"_s,
            u"create-data-info DATA var /media/DATA/datainfo"_s,
            u"tar -cpf %1/var.tar -C /media/DATA datainfo"_s.arg(dir), u"rm /media/DATA/datainfo"_s,
            u"kestro-clone --tui /dev/sda3 %1system.kim"_s.arg(dir),
            u"tar -rpf %1/opt.tar -C /media/DATA/ opt"_s.arg(dir),
            u"tar -rpf %1/var.tar -C /media/DATA/ var"_s.arg(dir), u"kestro-clone --kim-info %1/system.kim"_s.arg(dir),
            u"kestro-clone --read-custom-file kim://%1system.kim/DiskInfo DiskInfo"_s.arg(dir),
            u"tar --occurrence=1 -xOf %1/opt.tar datainfo"_s.arg(dir),
            u"tar --occurrence=1 -xOf %1/var.tar datainfo"_s.arg(dir)}));
    QVERIFY(!machine.udisks.callLines().contains(u"Unmount sda5"_s));
}

void BackupTaskTest::manualBackupCalls()
{
    FakeMachine machine;
    machine.allowFileCommands();
    machine.allowImages();
    TaskRun<BackupTask> run(QJsonArray{imageOf(u"ROOT"_s)}, ManualBackup);
    QCOMPARE(run.outcome(), u"finished"_s);
    QCOMPARE(machine.callsOf({u"write-file"_s}), QStringList{u"write-file DiskInfo DiskDrive=DISK_A\\nVersion=1.1"_s});
    QCOMPARE(machine.jobs(), QStringList{u"/dev/sda /media/TARGET/b/system.kim"_s});
    QVERIFY(machine.udisks.callLines().contains(u"Unmount sda5"_s));
}

void BackupTaskTest::badElements_data()
{
    QTest::addColumn<QJsonObject>("element");
    QTest::addColumn<QString>("message");
    const QString image = u"create-backup-image"_s;
    const QString directory = u"create-backup-directory"_s;
    QTest::newRow("other command") << taskElement(u"Create-Backup-Image"_s, {u"ROOT"_s, u"TARGET"_s, u"/b"_s})
                                   << QString();
    QTest::newRow("two arguments") << taskElement(image, {u"ROOT"_s, u"TARGET"_s}) << u"args size is empty or less 3"_s;
    QTest::newRow("no arguments") << taskElement(directory) << u"args size is empty or less 3"_s;
    QTest::newRow("unknown source") << imageOf(u"GONE"_s) << u"from path is empty"_s;
    QTest::newRow("empty source") << imageOf({}) << u"from path is empty"_s;
    QTest::newRow("unknown target") << taskElement(image, {u"ROOT"_s, u"GONE"_s, u"/b"_s, u"x.kim"_s})
                                    << u"to path is empty"_s;
    QTest::newRow("target cannot be mounted")
        << taskElement(directory, {u"DATA"_s, u"SWAP"_s, u"/b"_s}) << u"to path is empty"_s;
    QTest::newRow("directory leads upwards")
        << taskElement(image, {u"ROOT"_s, u"TARGET"_s, u"/../x"_s, u"x.kim"_s}) << u"to path is empty"_s;
    QTest::newRow("name leads upwards") << imageOf(u"ROOT"_s, u"../../x.kim"_s) << u"to path is empty"_s;
    QTest::newRow("directories of nothing") << directoriesOf(u"GONE"_s) << u"from path is empty"_s;
}

void BackupTaskTest::badElements()
{
    QFETCH(const QJsonObject, element);
    QFETCH(const QString, message);
    const FakeMachine machine;
    TaskRun<BackupTask> run(QJsonArray{element}, SystemBackup);
    // Failed while it was made, before anyone could connect: the message must be there all the same.
    QVERIFY(run.task.isFailed());
    QCOMPARE(run.task.errorMessage(), u"Failed to initialize the task"_s);
    QCOMPARE(machine.programs.callLines(), QStringList());
    QVERIFY(message.isEmpty() || machine.log.find(message).line > 0);
}

void BackupTaskTest::onlyTheFirstDirectoryIsChecked()
{
    FakeMachine machine;
    machine.allowFileCommands();
    machine.allowImages();
    const QJsonObject other =
        taskElement(u"create-backup-image"_s, {u"DATA"_s, u"TARGET"_s, u"/other"_s, u"data.kim"_s});
    Sandbox::writeFile(u"/media/TARGET/b/older.KIM"_s, "image");
    Sandbox::writeFile(u"/media/TARGET/b/.hidden.kim"_s, "image");
    TaskRun<BackupTask> run(QJsonArray{imageOf(u"ROOT"_s), other}, SystemBackup);
    QCOMPARE(run.outcome(), u"finished"_s);
    QCOMPARE(machine.jobs().size(), 2);
    QCOMPARE(machine.callsOf({u"kestro-clone"_s}).filter(u"--kim-info"_s),
        (QStringList{u"kestro-clone --kim-info /media/TARGET/b//older.KIM"_s,
            u"kestro-clone --kim-info /media/TARGET/b//system.kim"_s}));
}

void BackupTaskTest::useless_data()
{
    // No preparation is looked at when it runs, and tar makes an archive without its description, too.
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");
    QTest::addColumn<int>("exitCode");
    const QByteArray none = "";
    const QStringList image{u"kestro-clone"_s, u"--kim-info"_s, u"/media/TARGET/b//system.kim"_s};
    const QStringList imageDescription{u"sudo"_s, u"kestro-clone"_s, u"--read-custom-file"_s};
    const QStringList archiveDescription{u"sudo"_s, u"/lib/kestro-recovery-gui/scripts/create-data-info"_s};
    QTest::newRow("bad image, on standard error") << image << none << "invalid file: bad checksum\n"_ba << 0;
    QTest::newRow("bad image, on standard output") << image << "this is an invalid file\n"_ba << none << 0;
    QTest::newRow("image without description") << imageDescription << none << none << 1;
    QTest::newRow("archives without description") << archiveDescription << none << none << 1;
}

void BackupTaskTest::useless()
{
    QFETCH(const QStringList, command);
    QFETCH(const QByteArray, out);
    QFETCH(const QByteArray, err);
    QFETCH(const int, exitCode);
    FakeMachine machine;
    machine.allowFileCommands();
    machine.allowImages();
    QVERIFY(QDir().mkpath(u"/media/DATA/opt"_s) && QDir().mkpath(u"/media/DATA/var"_s));
    machine.programs.reply(command, {.out = out, .err = err, .exitCode = exitCode});
    TaskRun<BackupTask> run(QJsonArray{imageOf(u"ROOT"_s), directoriesOf(u"DATA"_s)}, SystemBackup);
    QCOMPARE(run.outcome(), u"Backup error, please try again"_s);
}

void BackupTaskTest::otherImageInThePlace_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QJsonArray>("tasks");
    QTest::addColumn<QString>("outcome");
    const QString refused =
        u"This directory cannot be used to store backup files, please select a different directory."_s;
    const QJsonArray imageFirst{imageOf(u"ROOT"_s), directoriesOf(u"DATA"_s)};
    const QJsonArray imageLast{directoriesOf(u"DATA"_s), imageOf(u"ROOT"_s)};
    QTest::newRow("of the same partition") << "UUID=ROOT\nVersion=1.1\n"_ba << imageFirst << u"finished"_s;
    QTest::newRow("of another partition") << "UUID=DATA\nVersion=1.1\n"_ba << imageFirst << refused;
    QTest::newRow("of another partition, last") << "UUID=DATA\nVersion=1.1\n"_ba << imageLast << refused;
    QTest::newRow("of nobody knows what") << ""_ba << imageFirst << refused;
    QTest::newRow("of a disk") << "DiskDrive=DISK_A\nVersion=1.1\n"_ba << imageFirst << refused;
}

void BackupTaskTest::otherImageInThePlace()
{
    // Its record would be replaced at once, and it would stay under that record if the new image did not come.
    QFETCH(const QByteArray, record);
    QFETCH(const QJsonArray, tasks);
    QFETCH(const QString, outcome);
    FakeMachine machine;
    machine.allowFileCommands();
    machine.allowImages();
    Sandbox::writeFile(u"/media/TARGET/b/system.kim"_s, "image");
    Sandbox::writeFile(u"/media/TARGET/b/system.kim.info"_s, record);
    QVERIFY(QDir().mkpath(u"/media/DATA/opt"_s) && QDir().mkpath(u"/media/DATA/var"_s));
    TaskRun<BackupTask> run(tasks, SystemBackup);
    QCOMPARE(run.outcome(), outcome);
    const bool isRefused = outcome != "finished"_L1;
    QCOMPARE(machine.callsOf({u"write-file"_s, u"tar"_s}).isEmpty(), isRefused);
    QCOMPARE(machine.jobs().isEmpty(), isRefused);
}

void BackupTaskTest::mountPointThatHoldsAName()
{
    FakeMachine machine;
    FakeUDisks::Device device = FakeMachine::device(u"sda5"_s);
    device.mountDirectory = u"/media/var"_s;
    machine.udisks.addDevice(device);
    TaskRun<BackupTask> run(QJsonArray{directoriesOf(u"DATA"_s)}, SystemBackup);
    QCOMPARE(run.outcome(), u"Backup error, please try again"_s);
    QCOMPARE(machine.programs.callLines(), QStringList());
    // Deliberate: should the jobs of a task that has failed come to their end, nothing is checked any more.
    Q_EMIT
    run.task.taskFinished();
    QCOMPARE(run.finished.size(), 1);
    QCOMPARE(machine.programs.callLines(), QStringList());
}

void BackupTaskTest::directoryInWhatIsBackedUp()
{
    const FakeMachine machine;
    const QJsonObject element =
        taskElement(u"create-backup-directory"_s, {u"DATA"_s, u"DATA"_s, u"/var/backups/new"_s});
    QVERIFY(QDir().mkpath(u"/media/DATA/var"_s));
    TaskRun<BackupTask> run(QJsonArray{element}, SystemBackup);
    QCOMPARE(
        run.outcome(), u"This directory cannot be used to store backup files, please select a different directory."_s);
    QCOMPARE(machine.programs.callLines(), QStringList());
}

void BackupTaskTest::directoryGoneAtTheEnd()
{
    // Deliberate: it counts as done.
    FakeMachine machine;
    machine.allowFileCommands();
    machine.allowImages();
    machine.programs.reply({u"kestro-clone"_s, u"--tui"_s, u"/dev/sda3"_s}, {.snippet = "rm -r /media/TARGET/b"});
    TaskRun<BackupTask> run(QJsonArray{imageOf(u"ROOT"_s)}, SystemBackup);
    QCOMPARE(run.outcome(), u"finished"_s);
    QCOMPARE(machine.callsOf({u"kestro-clone"_s}).filter(u"--kim-info"_s), QStringList());
}

void BackupTaskTest::backupAndRestore()
{
    FakeMachine machine;
    machine.allowFileCommands();
    Sandbox::writeFile(u"/media/DATA/opt/app/file"_s, "opt content");
    Sandbox::writeFile(u"/media/DATA/var/lib/state"_s, "var content");
    Sandbox::writeFile(u"/media/TARGET/b/x"_s, "");
    TaskRun<BackupTask> backup(QJsonArray{directoriesOf(u"DATA"_s)}, SystemBackup);
    QCOMPARE(backup.outcome(), u"finished"_s);
    QVERIFY(!QFile::exists(u"/media/DATA/datainfo"_s));

    Sandbox::writeFile(u"/media/DATA/opt/app/file"_s, "damaged");
    Sandbox::writeFile(u"/media/DATA/var/added"_s, "later");
    QFile::remove(u"/media/DATA/var/lib/state"_s);
    const QJsonArray restoreTasks{taskElement(u"restore-partitions"_s, {u"UUID:TARGET"_s, u"/b"_s, u"UUID:ROOT"_s})};
    TaskRun<ManualRestoreTask> restore(restoreTasks);
    QCOMPARE(restore.outcome(), u"finished"_s);
    QCOMPARE(Sandbox::readFile(u"/media/DATA/opt/app/file"_s), "opt content"_ba);
    QCOMPARE(Sandbox::readFile(u"/media/DATA/var/lib/state"_s), "var content"_ba);
    QVERIFY(!QFile::exists(u"/media/DATA/var/added"_s));
    QVERIFY(!QFile::exists(u"datainfo"_s));
}

int main(int argc, char** argv)
{
    return Sandbox::run<BackupTaskTest>(argc, argv);
}

#include "tst_backuptask.moc"
