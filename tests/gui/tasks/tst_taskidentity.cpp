// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/FakeMachine.h"
#include "gui/tasks/Task.h"
#include "sandbox/Sandbox.h"
#include "utils/core/applicationproperties.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

class OpenTask : public Task
{
public:
    using Task::deleteOptAndVar;
    using Task::devicePathFromUUID;
    using Task::diskDeviceFromDrive;
    using Task::diskFromUUID;
    using Task::getDevicePathsFromDrive;
    using Task::mountDeviceFromUUID;
    using Task::resetEFI;
    using Task::resetGrub;
    using Task::unmountDeviceFromUUID;

    [[nodiscard]] QString identity() const
    {
        return QStringList{
            m_rootUUID, m_recoveryUUID, m_dataUUID, m_edition, m_locale, m_isUEFI ? u"UEFI"_s : u"BIOS"_s}
            .join(u' ');
    }
};

} // namespace

class TaskIdentityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knownMachine();
    void unknownMachine();
    void rootByLink_data();
    void rootByLink();
    void compressionFromTheSecondMountOn();
    void emptyKeysNameNothing();
    void disksAndDrives();
    void pendingTask_data();
    void pendingTask();
    void pendingTaskThatStays();
    void unmountableRootPartition();
    void rootWithoutItsFiles();
    void unmountableRecoveryPartition();
    void recordedBackups();
    void savedLog();
    void logSavedAgain();
    void versions_data();
    void versions();
    void bootEntries_data();
    void bootEntries();
    void grub();
    void optAndVarOfNothing();
};

void TaskIdentityTest::knownMachine()
{
    const FakeMachine machine;
    Sandbox::setUefi(true);
    const OpenTask task;
    QCOMPARE(task.identity(), u"ROOT RECOVERY DATA Professional en_US UEFI"_s);
    QCOMPARE(task.fstabEntries().size(), 6);
    QCOMPARE(machine.udisks.mountCalls(),
        (QStringList{u"Mount sda3"_s, u"Unmount sda3"_s, u"Mount sda4"_s, u"Unmount sda4"_s}));
    QVERIFY(machine.log.find(u"efiPath =  \"/sys/firmware/efi\" , m_isUEFI =  true"_s).level == QtInfoMsg);
    QCOMPARE(machine.log.find(u"Root UUID: \"ROOT\""_s).function, u"void Task::getSystemUUID()"_s);
}

void TaskIdentityTest::unknownMachine()
{
    const FakeMachine machine;
    Sandbox::setKernelCommandLine("BOOT_IMAGE=/live/vmlinuz boot=live\n");
    const OpenTask task;
    QVERIFY(task.identity().startsWith(u"   Professional"_s));
    QCOMPARE(machine.udisks.mountCalls(), QStringList());
    const QString expected = u"recoveryPath not exist!, recoveryPath:  \"/etc/kestro/system-recovery.conf\""_s;
    QCOMPARE(machine.log.messages(QtCriticalMsg), QStringList{expected});
}

void TaskIdentityTest::rootByLink_data()
{
    QTest::addColumn<QByteArray>("root");
    QTest::addColumn<QString>("expected");
    QTest::newRow("mapper link") << "/dev/mapper/vg-root"_ba << u"ROOT"_s;
    QTest::newRow("plain device") << "/dev/sda5"_ba << u"DATA"_s;
    QTest::newRow("unknown device") << "/dev/sdz9"_ba << QString();
    QTest::newRow("no value") << ""_ba << QString();
}

void TaskIdentityTest::rootByLink()
{
    QFETCH(const QByteArray, root);
    const FakeMachine machine;
    Sandbox::setKernelCommandLine("root=" + root + "\n");
    QDir().mkpath(u"/dev/mapper"_s);
    QDir().mkpath(u"/dev/disk/by-uuid"_s);
    QFile::link(u"../dm-1"_s, u"/dev/mapper/vg-root"_s);
    QFile::link(u"../../dm-1"_s, u"/dev/disk/by-uuid/ROOT"_s);
    QFile::link(u"../../sda5"_s, u"/dev/disk/by-uuid/DATA"_s);
    const OpenTask task;
    QTEST(task.identity().split(u' ').constFirst(), "expected");
    // Every entry is logged, not only the one that matches.
    QCOMPARE(machine.log.messages().filter(u"uuidTarget="_s).size(), root.isEmpty() ? 0 : 2);
}

void TaskIdentityTest::compressionFromTheSecondMountOn()
{
    FakeMachine machine;
    Sandbox::writeFile(u"/media/ROOT/etc/fstab"_s, "UUID=ROOT / btrfs rw,compress=zstd 0 0\n");
    const OpenTask task;
    QCOMPARE(machine.udisks.mountCalls().constFirst(), u"Mount sda3"_s);
    machine.udisks.forgetCalls();
    QCOMPARE(task.mountDeviceFromUUID(u"ROOT"_s), u"/media/ROOT"_s);
    QCOMPARE(machine.udisks.mountCalls(), QStringList{u"Mount sda3 options=compress=zstd"_s});
    const LogLine line = machine.log.find(u"btrfs, mount uuid:  \"ROOT\" , with compress=zstd"_s);
    QCOMPARE(line.function, u"QString Task::mountDeviceFromUUID(const QString&) const"_s);
    QCOMPARE(line.level, QtInfoMsg);
}

void TaskIdentityTest::emptyKeysNameNothing()
{
    FakeMachine machine;
    OpenTask task;
    machine.udisks.forgetCalls();
    QCOMPARE(task.mountDeviceFromUUID({}), QString());
    task.unmountDeviceFromUUID({});
    QCOMPARE(task.devicePathFromUUID({}), QString());
    QCOMPARE(task.diskFromUUID({}), QPair(QString(), QString()));
    QCOMPARE(task.diskDeviceFromDrive({}), QString());
    QCOMPARE(task.getDevicePathsFromDrive({}), QStringList());
    QCOMPARE(machine.udisks.mountCalls(), QStringList());
}

void TaskIdentityTest::disksAndDrives()
{
    FakeMachine machine;
    machine.refuseMount(u"sdb1"_s);
    FakeUDisks::Device blank = FakeMachine::device(u"sda5"_s);
    blank.mountDirectory = u"/media/root/My Disk"_s;
    machine.udisks.addDevice(blank);
    const OpenTask task;
    QCOMPARE(task.diskFromUUID(u"DATA"_s), QPair(u"DISK_A"_s, u"/dev/sda"_s));
    QCOMPARE(task.devicePathFromUUID(u"TARGET"_s), u"/dev/sdb1"_s);
    QCOMPARE(task.diskDeviceFromDrive(u"DISK_B"_s), u"/dev/sdb"_s);
    QCOMPARE(task.diskDeviceFromDrive(u"B"_s), QString());
    QCOMPARE(task.getDevicePathsFromDrive(u"DISK_A"_s), QStringList(6, u"/dev/sda"_s));
    QCOMPARE(task.mountDeviceFromUUID(u"TARGET"_s), QString());
    QCOMPARE(task.mountDeviceFromUUID(u"DATA"_s), u"/media/root/My Disk"_s);
    QCOMPARE(task.mountDeviceFromUUID(u"SWAP"_s), QString());
}

void TaskIdentityTest::pendingTask_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("type");
    QTest::newRow("valid") << R"({"type":"ManualBackup","tasks":[]})"_ba << u"ManualBackup"_s;
    QTest::newRow("broken") << R"({"type":"ManualBackup",)"_ba << QString();
    QTest::newRow("empty") << ""_ba << QString();
    QTest::newRow("an array") << R"([{"type":"ManualBackup"}])"_ba << QString();
}

void TaskIdentityTest::pendingTask()
{
    QFETCH(const QByteArray, content);
    FakeMachine machine;
    machine.allowFileCommands();
    const QString path = u"/media/RECOVERY/backup/recovery.json"_s;
    Sandbox::writeFile(path, content);
    Sandbox::writeFile(u"/media/RECOVERY/backup/system.kim"_s, "image");
    OpenTask task;
    task.getRecoveryJson();
    QTEST(ApplicationProperties::recoveryJson().value(u"type"_s).toString(), "type");
    QVERIFY(ApplicationProperties::isHaveInitBackup());
    QVERIFY(!QFile::exists(path));
    QCOMPARE(machine.programs.callLines(), QStringList{u"sudo rm -f "_s + path});
    QCOMPARE(machine.log.lines().constLast().message, u"isHaveInitBackup: true"_s);
    task.getRecoveryJson();
    QCOMPARE(ApplicationProperties::recoveryJson(), QJsonObject());
}

void TaskIdentityTest::pendingTaskThatStays()
{
    // On a partition that came up read-only it would run again at every start.
    FakeMachine machine;
    machine.programs.reply({u"rm"_s}, {.exitCode = 1});
    Sandbox::writeFile(u"/media/RECOVERY/backup/recovery.json"_s, R"({"type":"SystemRestore"})");
    OpenTask task;
    task.getRecoveryJson();
    QCOMPARE(ApplicationProperties::recoveryJson(), QJsonObject());
    QVERIFY(machine.log.messages(QtCriticalMsg).join(u' ').contains("cannot be deleted"_L1));
}

void TaskIdentityTest::unmountableRootPartition()
{
    FakeMachine machine;
    machine.refuseMount(u"sda3"_s);
    Sandbox::writeFile(u"/usr/lib/kestro/desktop-version"_s, "[Release]\nType=Device\n");
    Sandbox::writeFile(u"/etc/default/locale"_s, "LANGUAGE=\"de\"\n");
    const OpenTask task;
    QVERIFY(task.identity().startsWith(u"ROOT   Professional  "_s));
    QVERIFY(task.fstabEntries().isEmpty());
}

void TaskIdentityTest::rootWithoutItsFiles()
{
    const FakeMachine machine;
    QVERIFY(QDir(u"/media/ROOT/etc"_s).removeRecursively());
    Sandbox::writeFile(u"/etc/kestro/system-recovery.conf"_s, "UUID=RECOVERY\n");
    const OpenTask task;
    QVERIFY(task.identity().startsWith(u"ROOT RECOVERY DATA "_s));
}

void TaskIdentityTest::unmountableRecoveryPartition()
{
    FakeMachine machine;
    machine.refuseMount(u"sda4"_s);
    // With an empty mount point these would be taken for the recovery partition's own.
    Sandbox::writeFile(u"/backup/recovery.json"_s, R"({"type":"SystemRestore"})");
    Sandbox::writeFile(u"/backup/x.kim"_s, "image");
    Sandbox::writeFile(u"/backup/_nox_data.info"_s, "ROOT");
    ApplicationProperties::setHaveInitBackup(true);
    ApplicationProperties::setLogFile(u"/home/kestro/kestro-recovery-gui.log"_s);
    OpenTask task;
    task.getRecoveryJson();
    task.saveLogToRecovery();
    QVERIFY(task.identity().startsWith(u"ROOT RECOVERY  Professional"_s));
    QCOMPARE(ApplicationProperties::recoveryJson(), QJsonObject());
    QVERIFY(!ApplicationProperties::isHaveInitBackup());
    QVERIFY(QFile::exists(u"/backup/recovery.json"_s));
    QCOMPARE(machine.programs.callLines(), QStringList());
    QVERIFY(machine.log.find(u"isHaveInitBackup: false"_s).line > 0);
}

void TaskIdentityTest::recordedBackups()
{
    FakeMachine machine;
    machine.refuseMount(u"sda5"_s);
    Sandbox::writeFile(u"/media/RECOVERY/backup/savePath.json"_s,
        R"({"TARGET":{"1600000000":"/old","1700000000":"new","abc":"/odd","5":"/../../etc"},)"
        R"("DATA":{"1650000000":"/x"},"UNKNOWN":{"1650000000":"/y"},"":{"1660000000":"/z"}})");
    OpenTask task;
    task.getRecoveryJson();
    const QList<SavedBackup> expected{{u"1700000000"_s, u"/media/TARGET/new"_s},
        {u"1600000000"_s, u"/media/TARGET/old"_s}, {u"abc"_s, u"/media/TARGET/odd"_s}};
    QCOMPARE(ApplicationProperties::savePathJson(), expected);
}

void TaskIdentityTest::savedLog()
{
    FakeMachine machine;
    machine.allowFileCommands();
    const QString log = u"/home/kestro/kestro-recovery-gui.log"_s;
    ApplicationProperties::setLogFile(log);
    Sandbox::writeFile(log, "a /home/alice/x and /home/bob/y/z end\nno name\n");
    Sandbox::writeFile(u"/media/RECOVERY/kestro-recovery-gui.log"_s, "former\n");
    OpenTask task;
    task.saveLogToRecovery();
    QCOMPARE(Sandbox::readFile(u"/media/RECOVERY/kestro-recovery-gui.log"_s), "a /home/xxx/z end\nno name\n"_ba);
    QCOMPARE(Sandbox::readFile(u"/media/RECOVERY/kestro-recovery-gui-old.log"_s), "former\n"_ba);
    const QString saved = u"/media/RECOVERY/kestro-recovery-gui"_s;
    QCOMPARE(machine.callsOf({u"cp"_s, u"sed"_s}),
        (QStringList{u"cp -a %1.log %1-old.log"_s.arg(saved), uR"(sed -i s?\/home\/.*\/?\/home\/xxx\/?g )"_s + log,
            u"cp -a %1 /media/RECOVERY/"_s.arg(log)}));
    QCOMPARE(machine.udisks.mountCalls().constLast(), u"Unmount sda4"_s);
    QCOMPARE(machine.log.messages().constLast(), u"saved log to recovery gui"_s);
}

// A task that fails again has more to tell, and the log of the run before stays where it is.
void TaskIdentityTest::logSavedAgain()
{
    FakeMachine machine;
    machine.allowFileCommands();
    const QString log = u"/home/kestro/kestro-recovery-gui.log"_s;
    ApplicationProperties::setLogFile(log);
    Sandbox::writeFile(u"/media/RECOVERY/kestro-recovery-gui.log"_s, "former\n");
    OpenTask task;
    for (const QByteArray& lines : {"first\n"_ba, "first\nsecond\n"_ba}) {
        Sandbox::writeFile(log, lines);
        task.saveLogToRecovery();
        QCOMPARE(Sandbox::readFile(u"/media/RECOVERY/kestro-recovery-gui.log"_s), lines);
        QCOMPARE(Sandbox::readFile(u"/media/RECOVERY/kestro-recovery-gui-old.log"_s), "former\n"_ba);
    }
}

void TaskIdentityTest::versions_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<bool>("expected");
    QTest::newRow("minor parts do not count") << u"1.9"_s << u"1.1"_s << true;
    QTest::newRow("text, not number") << u"2"_s << u"10"_s << false;
    QTest::newRow("text, not number, other way") << u"20.1"_s << u"3.0"_s << true;
    QTest::newRow("newer") << u"2.0"_s << u"1.1"_s << false;
    QTest::newRow("blanks around") << u" 1 "_s << u"1.1"_s << true;
    QTest::newRow("first empty") << QString() << u"1.1"_s << false;
    QTest::newRow("second empty") << u"1"_s << QString() << false;
}

void TaskIdentityTest::versions()
{
    QFETCH(const QString, first);
    QFETCH(const QString, second);
    const FakeMachine machine;
    QTEST(Task().compareVersion(first, second), "expected");
}

void TaskIdentityTest::bootEntries_data()
{
    QTest::addColumn<bool>("uefi");
    QTest::addColumn<QByteArray>("minor");
    QTest::addColumn<QByteArray>("edition");
    QTest::addColumn<QByteArray>("fstab");
    QTest::addColumn<QStringList>("calls");
    const QByteArray fstab = "UUID=BOOT /boot\nUUID=EFI /boot/efi vfat umask=0077 0 1\n";
    const QStringList efi{u"resetEFI /dev/sda1"_s};
    QTest::newRow("old professional") << true << "1039"_ba
                                      << "Professional"_ba << fstab << efi;
    QTest::newRow("no number") << true << "20.5"_ba
                               << "Professional"_ba << fstab << efi;
    QTest::newRow("bound") << true << "1040"_ba
                           << "Professional"_ba << fstab << QStringList();
    QTest::newRow("other edition") << true << "1000"_ba
                                   << "professional"_ba << fstab << QStringList();
    QTest::newRow("no efi line") << true << "1000"_ba
                                 << "Professional"_ba
                                 << "UUID=BOOT /boot\n"_ba << QStringList();
    QTest::newRow("efi by device") << true << "1000"_ba
                                   << "Professional"_ba
                                   << "/dev/sda1 /boot/efi\n"_ba << QStringList();
    QTest::newRow("unknown efi") << true << "1000"_ba
                                 << "Professional"_ba
                                 << "UUID=GONE /boot/efi\n"_ba << QStringList();
    QTest::newRow("legacy") << false << "2000"_ba
                            << "Home"_ba << fstab << QStringList{u"resetEFI /dev/sda2 legacy /dev/sda"_s};
    QTest::newRow("legacy without boot") << false << "1000"_ba
                                         << "Home"_ba
                                         << "UUID=ROOT /\n"_ba << QStringList();
}

void TaskIdentityTest::bootEntries()
{
    QFETCH(const bool, uefi);
    QFETCH(const QByteArray, minor);
    QFETCH(const QByteArray, edition);
    QFETCH(const QByteArray, fstab);
    const FakeMachine machine;
    Sandbox::setUefi(uefi);
    Sandbox::writeFile(u"/media/ROOT/etc/os-version"_s, "[Version]\nMinorVersion=" + minor + "\n");
    Sandbox::writeFile(u"/media/ROOT/usr/lib/kestro/desktop-version"_s, "[Release]\nType=" + edition + "\n");
    Sandbox::writeFile(u"/media/ROOT/etc/fstab"_s, fstab);
    OpenTask task;
    task.resetEFI();
    QTEST(machine.callsOf({u"resetEFI"_s}), "calls");
}

void TaskIdentityTest::grub()
{
    FakeMachine machine;
    OpenTask task;
    task.resetGrub();
    machine.refuseMount(u"sda3"_s);
    task.resetGrub();
    QCOMPARE(machine.callsOf({u"reset-grub"_s}), (QStringList{u"reset-grub /dev/sda1 /dev/sda2"_s, u"reset-grub  "_s}));
    QVERIFY(machine.log.find(u"open file fail!"_s).line > 0);
}

void TaskIdentityTest::optAndVarOfNothing()
{
    FakeMachine machine;
    machine.programs.reply({u"chattr"_s});
    machine.programs.reply({u"rm"_s});
    OpenTask task;
    task.deleteOptAndVar({});
    QCOMPARE(machine.programs.callLines(), QStringList());
    // A link is not followed: what it leads to is no part of these.
    QVERIFY(QFile::link(u"home/opt"_s, u"/media/DATA/opt"_s));
    task.deleteOptAndVar(u"/media/DATA"_s);
    QCOMPARE(machine.callsOf({u"chattr"_s, u"rm"_s}),
        (QStringList{u"chattr -R -i /media/DATA/var/"_s, u"rm -rf /media/DATA/var/"_s}));
}

int main(int argc, char** argv)
{
    return Sandbox::run<TaskIdentityTest>(argc, argv);
}

#include "tst_taskidentity.moc"
