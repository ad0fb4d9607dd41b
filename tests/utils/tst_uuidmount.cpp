// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/utils.h"

#include "sandbox/Sandbox.h"
#include "support/FakeUDisks.h"
#include "support/LogCapture.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A partition; one without a UUID is unformatted.
FakeUDisks::Device partition(const QString& name, const QString& uuid = {}, const QString& mountDirectory = {})
{
    FakeUDisks::Device device;
    device.name = name;
    device.idUUID = uuid;
    device.idType = uuid.isEmpty() ? QString() : u"ext4"_s;
    device.mountDirectory = mountDirectory;
    return device;
}

/// A machine with an unformatted disk and partition, and two partitions with file systems.
std::unique_ptr<FakeUDisks> machine(const QString& firstDirectory, const QString& secondDirectory)
{
    auto udisks = std::make_unique<FakeUDisks>();
    udisks->addDevice(partition(u"sda"_s));
    udisks->addDevice(partition(u"sda1"_s));
    udisks->addDevice(partition(u"sda2"_s, u"AAAA"_s, firstDirectory));
    udisks->addDevice(partition(u"sda3"_s, u"BBBB"_s, secondDirectory));
    return udisks;
}

void makeBackup(const QString& directory)
{
    for (const QString& name : {u"/system.kim"_s, u"/opt.tar"_s, u"/var.tar"_s}) {
        Sandbox::writeFile(directory + name, {});
    }
}

/// The calls that change something.
QStringList mountCalls(const FakeUDisks& udisks)
{
    return udisks.callLines().filter(u"ount "_s);
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
    void unmountByUuid();
    void history();
    void historyLeavesWhatWasMounted();
    void historyOfBadRecords_data();
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
    QTest::addColumn<QString>("uuid");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QByteArrayList>("mountedAt");
    QTest::addColumn<QString>("mountError");
    QTest::addColumn<QString>("mountPoint");
    QTest::addColumn<QStringList>("calls");

    const QStringList mounted{u"Mount sda2"_s};
    QTest::newRow("plain") << u"AAAA"_s << u"/media/disk"_s << QByteArrayList{} << QString() << u"/media/disk"_s
                           << mounted;
    QTest::newRow("label with blanks") << u"AAAA"_s << u"/media/My  Disk"_s << QByteArrayList{} << QString()
                                       << u"/media/My  Disk"_s << mounted;
    QTest::newRow("mounted already") << u"AAAA"_s << QString() << QByteArrayList{"/mnt/a", "/mnt/b"}
                                     << u"Device /dev/sda2 is already mounted at `/mnt/a'."_s << u"/mnt/a"_s << mounted;
    QTest::newRow("cannot be mounted") << u"AAAA"_s << QString() << QByteArrayList{} << u"wrong fs type"_s << QString()
                                       << mounted;
    QTest::newRow("unknown") << u"CCCC"_s << QString() << QByteArrayList{} << QString() << QString() << QStringList{};
    QTest::newRow("empty") << QString() << QString() << QByteArrayList{} << QString() << QString() << QStringList{};
}

void UuidMountTest::mountByUuid()
{
    QFETCH(QString, uuid);
    QFETCH(QString, directory);
    QFETCH(QByteArrayList, mountedAt);
    QFETCH(QString, mountError);
    QFETCH(QStringList, calls);
    const auto udisks = machine({}, {});
    FakeUDisks::Device device = partition(u"sda2"_s, u"AAAA"_s, directory);
    device.mountPoints = mountedAt;
    device.mountError = mountError;
    udisks->addDevice(device);
    const LogCapture log;
    QTEST(Utils::mountDeviceByUUID(uuid), "mountPoint");
    QCOMPARE(mountCalls(*udisks), calls);
    const QString noDevice = uR"(mountDeviceByUUID device is null, uuid =  "%1" , path =  "")"_s.arg(uuid);
    QCOMPARE(log.messages(), calls.isEmpty() ? QStringList{noDevice} : QStringList{});
}

void UuidMountTest::unmountByUuid()
{
    const auto udisks = machine({}, {});
    QCOMPARE(Utils::mountDeviceByUUID(u"BBBB"_s), u"/media/root/BBBB"_s);
    Utils::umountDeviceByUUID({});
    Utils::umountDeviceByUUID(u"CCCC"_s);
    QCOMPARE(udisks->mountPoints(u"sda3"_s), QStringList{u"/media/root/BBBB"_s});
    Utils::umountDeviceByUUID(u"BBBB"_s);
    QCOMPARE(mountCalls(*udisks), (QStringList{u"Mount sda3"_s, u"Unmount sda3"_s}));
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
        mountCalls(*udisks), (QStringList{u"Mount sda2"_s, u"Mount sda3"_s, u"Unmount sda2"_s, u"Unmount sda3"_s}));

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

void UuidMountTest::historyOfBadRecords_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("broken") << QByteArray(R"({"AAAA":{"1":"/"})");
    QTest::newRow("array") << QByteArray(R"([{"AAAA":{"1":"/"}}])");
    QTest::newRow("empty") << QByteArray();
}

void UuidMountTest::historyOfBadRecords()
{
    QFETCH(QByteArray, content);
    const QString folder = Sandbox::freshFolder();
    const auto udisks = machine(folder, folder);
    makeBackup(folder);
    Sandbox::writeFile(folder + u"/savePath.json"_s, content);
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
    FakeUDisks::Device broken = partition(u"sda2"_s, u"AAAA"_s);
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
