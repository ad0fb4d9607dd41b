// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/utils.h"

#include "sandbox/Sandbox.h"
#include "support/FakeUDisks.h"
#include "support/LogCapture.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A machine with an unformatted disk and partition, and two partitions with file systems.
std::unique_ptr<FakeUDisks> machine(const QString& firstDirectory, const QString& secondDirectory)
{
    auto udisks = std::make_unique<FakeUDisks>();
    udisks->addDevice(FakeUDisks::partition(u"sda"_s));
    udisks->addDevice(FakeUDisks::partition(u"sda1"_s));
    udisks->addDevice(FakeUDisks::partition(u"sda2"_s, u"AAAA"_s, firstDirectory));
    udisks->addDevice(FakeUDisks::partition(u"sda3"_s, u"BBBB"_s, secondDirectory));
    return udisks;
}

void makeBackup(const QString& directory)
{
    for (const QString& name : {u"/system.kim"_s, u"/opt.tar"_s, u"/var.tar"_s}) {
        Sandbox::writeFile(directory + name, {});
    }
}

QStringList textsOf(const QList<BackupFileInfo>& list)
{
    QStringList texts;
    for (const BackupFileInfo& info : list) {
        texts.append(QStringList{info.backupUUID, info.backupPath, info.backupTime, info.createTime}.join(u' '));
    }
    return texts;
}

} // namespace

class UuidMountTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void mountByUuid_data();
    void mountByUuid();
    void unknownUuids();
    void unmountByUuid();
    void history();
    void historyLeavesWhatWasMounted();
    void historyOfBadRecords();
    void historyIgnoresWhatCannotBeMounted();
};

void UuidMountTest::initTestCase()
{
    qputenv("TZ", "UTC");
}

void UuidMountTest::init()
{
    Sandbox::reset();
}

void UuidMountTest::mountByUuid_data()
{
    QTest::addColumn<FakeUDisks::Device>("device");
    QTest::addColumn<QString>("mountPoint");
    const auto row = [](const char* name, const FakeUDisks::Device& device, const QString& mountPoint) {
        QTest::newRow(name) << device << mountPoint;
    };
    row("plain", {.mountDirectory = u"/media/disk"_s}, u"/media/disk"_s);
    row("label with blanks", {.mountDirectory = u"/media/My  Disk"_s}, u"/media/My  Disk"_s);
    row("label that ends in a wide blank", {.mountDirectory = u"/media/盘\u3000"_s}, u"/media/盘\u3000"_s);
    row("mounted already",
        {.mountPoints = {"/mnt/a", "/mnt/b"}, .mountError = u"Device /dev/sda2 is already mounted at `/mnt/a'."_s},
        u"/mnt/a"_s);
    row("cannot be mounted", {.mountError = u"wrong fs type"_s}, {});
}

void UuidMountTest::mountByUuid()
{
    QFETCH(FakeUDisks::Device, device);
    device.name = u"sda2"_s;
    device.idUUID = u"AAAA"_s;
    device.idType = u"ext4"_s;
    const auto udisks = machine({}, {});
    udisks->addDevice(device);
    const LogCapture log;
    QTEST(Utils::mountDeviceByUUID(u"AAAA"_s), "mountPoint");
    QCOMPARE(udisks->mountCalls(), QStringList{u"Mount sda2"_s});
    QCOMPARE(log.messages(), QStringList{});
}

// An empty one is not that of the unformatted devices.
void UuidMountTest::unknownUuids()
{
    const auto udisks = machine({}, {});
    const LogCapture log;
    QCOMPARE(Utils::mountDeviceByUUID(u"CCCC"_s), QString());
    QCOMPARE(Utils::mountDeviceByUUID({}), QString());
    QCOMPARE(udisks->mountCalls(), QStringList{});
    QCOMPARE(log.messages(),
        (QStringList{uR"(mountDeviceByUUID device is null, uuid =  "CCCC" , path =  "")"_s,
            uR"(mountDeviceByUUID device is null, uuid =  "" , path =  "")"_s}));
}

void UuidMountTest::unmountByUuid()
{
    const auto udisks = machine({}, {});
    QCOMPARE(Utils::mountDeviceByUUID(u"BBBB"_s), u"/media/root/BBBB"_s);
    Utils::umountDeviceByUUID({});
    Utils::umountDeviceByUUID(u"CCCC"_s);
    QCOMPARE(udisks->mountPoints(u"sda3"_s), QStringList{u"/media/root/BBBB"_s});
    Utils::umountDeviceByUUID(u"BBBB"_s);
    QCOMPARE(udisks->mountCalls(), (QStringList{u"Mount sda3"_s, u"Unmount sda3"_s}));
    QCOMPARE(udisks->mountPoints(u"sda3"_s), QStringList{});
}

void UuidMountTest::history()
{
    const QString folder = Sandbox::freshFolder();
    const auto udisks = machine(folder + u"/a"_s, folder + u"/b"_s);
    makeBackup(folder + u"/a/backup/old"_s);
    // Deliberate: a recorded directory without a slash follows the mount point as it is, as it did when it was written.
    makeBackup(folder + u"/bbackup/new"_s);
    makeBackup(folder + u"/b/no time"_s);
    makeBackup(folder + u"/b/incomplete"_s);
    Sandbox::writeFile(folder + u"/b/incomplete/third.tar"_s, {});
    const QString record = folder + u"/savePath.json"_s;
    Sandbox::writeFile(
        record, R"({"":{"1":"/backup/old"}, "AAAA":{"1600000000":"/backup/old","5":"/gone"}, "CCCC":{"7":"/x"},
        "BBBB":{"1700000000":"backup/new","abc":"/no time","1800000000":"/incomplete"}})");

    const LogCapture log;
    QList<BackupFileInfo> list;
    Utils::getHistoryBackup(list, record, true);
    QCOMPARE(textsOf(list),
        (QStringList{u"BBBB backup/new 2023/11/14 1700000000"_s, u"AAAA /backup/old 2020/09/13 1600000000"_s,
            u"BBBB /no time 1970/01/01 abc"_s}));
    QCOMPARE(
        udisks->mountCalls(), (QStringList{u"Mount sda2"_s, u"Mount sda3"_s, u"Unmount sda2"_s, u"Unmount sda3"_s}));

    const QString found = u"backupFilePath =  \"%1/a/backup/old\" , kimList =  QList(\"system.kim\") , tarFileList =  "
                          "QList(\"opt.tar\", \"var.tar\")"_s.arg(folder);
    QCOMPARE(log.find(found).level, QtInfoMsg);
    QCOMPARE(log.find(found).function, u"void Utils::getHistoryBackup(QList<BackupFileInfo>&, const QString&, bool)"_s);
    QCOMPARE(log.messages(QtInfoMsg).size(), 5);
    QCOMPARE(log.messages(QtDebugMsg),
        (QStringList{u"getHistoryBackup, umount uuid:  \"AAAA\" , mountPoint:  \"%1/a\""_s.arg(folder),
            u"getHistoryBackup, umount uuid:  \"BBBB\" , mountPoint:  \"%1/b\""_s.arg(folder)}));
}

void UuidMountTest::historyLeavesWhatWasMounted()
{
    const QString folder = Sandbox::freshFolder();
    const auto udisks = machine(folder + u"/a"_s, folder + u"/b"_s);
    Utils::mountDeviceByUUID(u"AAAA"_s);
    makeBackup(folder + u"/a"_s);
    makeBackup(folder + u"/b"_s);
    const QString record = folder + u"/savePath.json"_s;
    Sandbox::writeFile(record, R"({"AAAA":{"1":"/"},"BBBB":{"2":"/"}})");

    QList<BackupFileInfo> list;
    Utils::getHistoryBackup(list, record, true);
    QCOMPARE(list.size(), 2);
    QCOMPARE(udisks->mountPoints(u"sda2"_s), QStringList{folder + u"/a"_s});
    QCOMPARE(udisks->mountPoints(u"sda3"_s), QStringList{});

    Utils::getHistoryBackup(list, record, false);
    QCOMPARE(list.size(), 4);
    QCOMPARE(udisks->mountPoints(u"sda3"_s), QStringList{folder + u"/b"_s});
}

void UuidMountTest::historyOfBadRecords()
{
    const QString folder = Sandbox::freshFolder();
    const auto udisks = machine(folder, folder);
    makeBackup(folder);
    Sandbox::writeFile(folder + u"/savePath.json"_s, R"({"AAAA":{"1":"/"})");
    QList<BackupFileInfo> list;
    Utils::getHistoryBackup(list, folder + u"/savePath.json"_s, true);
    Utils::getHistoryBackup(list, folder + u"/none"_s, true);
    QVERIFY(list.isEmpty());
    QCOMPARE(udisks->callLines(), QStringList{});
}

void UuidMountTest::historyIgnoresWhatCannotBeMounted()
{
    const QString folder = Sandbox::freshFolder();
    const auto udisks = machine(folder, folder);
    FakeUDisks::Device broken = FakeUDisks::partition(u"sda2"_s, u"AAAA"_s);
    broken.mountError = u"it is broken"_s;
    udisks->addDevice(broken);
    makeBackup(u"/backup"_s);
    Sandbox::writeFile(folder + u"/savePath.json"_s, R"({"AAAA":{"1":"/backup"}})");
    QList<BackupFileInfo> list;
    Utils::getHistoryBackup(list, folder + u"/savePath.json"_s, true);
    QVERIFY(list.isEmpty());
}

int main(int argc, char** argv)
{
    return Sandbox::run<UuidMountTest>(argc, argv);
}
#include "tst_uuidmount.moc"
