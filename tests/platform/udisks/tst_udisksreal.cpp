// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/VBlockPartition.h"
#include "platform/udisks/VDiskManager.h"
#include "sandbox/Sandbox.h"
#include "support/RealStorage.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString pathOf(const VDiskManager& manager, const QString& node)
{
    for (const QString& path : manager.blockDevices()) {
        if (manager.createBlockDevice(path)->device() == node) {
            return path;
        }
    }
    return {};
}

} // namespace

/// The binding with the real daemon, on disks that the test made itself.
class UDisksRealTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void otherDevicesCannotBeOpened();
    void listsWhatIsThere();
    void mountsALabelWithABlank();
    void refusesWhatCannotBeMounted();

private:
    std::unique_ptr<RealStorage> m_storage;
    LoopDisk* m_disk = nullptr;
};

void UDisksRealTest::initTestCase()
{
    m_storage = std::make_unique<RealStorage>();
    m_disk = &m_storage->addDisk({{.fileSystem = u"ext4"_s, .label = u"My Disk"_s}, {.fileSystem = {}},
        {.fileSystem = u"swap"_s, .label = u"swap"_s}});
}

void UDisksRealTest::cleanupTestCase()
{
    QVERIFY(m_storage->close());
    m_storage.reset();
}

void UDisksRealTest::otherDevicesCannotBeOpened()
{
    const VDiskManager manager;
    int own = 0;
    for (const QString& path : manager.blockDevices()) {
        const QString node = manager.createBlockDevice(path)->device();
        QCOMPARE(QFile::exists(node), m_storage->owns(node));
        own += m_storage->owns(node) ? 1 : 0;
    }
    QCOMPARE(own, 4);
}

void UDisksRealTest::listsWhatIsThere()
{
    const VDiskManager manager;
    const QString diskPath = pathOf(manager, m_disk->device());
    const auto disk = manager.createBlockDevice(diskPath);
    QVERIFY(disk);
    QCOMPARE(disk->idUUID() + disk->idType(), QString());
    QCOMPARE(disk->drive(), u"/"_s);
    QVERIFY(!manager.createBlockPartition(diskPath));

    const auto data = manager.createBlockPartition(pathOf(manager, m_disk->partition(1)));
    QVERIFY(data);
    QCOMPARE(data->table(), diskPath);
    QCOMPARE(data->idType(), u"ext4"_s);
    QVERIFY(!m_disk->uuid(1).isEmpty());
    QCOMPARE(data->idUUID(), m_disk->uuid(1));
    QVERIFY(data->mountPoints().isEmpty());
    QCOMPARE(manager.createBlockDevice(pathOf(manager, m_disk->partition(2)))->idUUID(), QString());
    QCOMPARE(manager.createBlockDevice(pathOf(manager, m_disk->partition(3)))->idType(), u"swap"_s);
}

void UDisksRealTest::mountsALabelWithABlank()
{
    const VDiskManager manager;
    const auto device = manager.createBlockDevice(pathOf(manager, m_disk->partition(1)));
    QVERIFY(m_storage->owns(device->device()));
    device->setWatchChanges(true);
    QCOMPARE(device->mount({{u"options"_s, u"noatime"_s}}), u"/media/root/My Disk"_s);
    QCOMPARE(device->mountPoints(), QByteArrayList{"/media/root/My Disk"});
    QVERIFY(QFile::exists(u"/media/root/My Disk/lost+found"_s));
    QVERIFY(Sandbox::readFile(u"/proc/self/mounts"_s).contains("/media/root/My\\040Disk ext4 rw,nosuid,nodev,noatime"));

    const QString again = device->mount({});
    QVERIFY2(again.contains("is already mounted at `/media/root/My Disk'"_L1), qPrintable(again));
    QCOMPARE(VDiskManager().createBlockDevice(pathOf(manager, m_disk->partition(1)))->mountPoints(),
        QByteArrayList{"/media/root/My Disk"});

    QVERIFY(device->unmount({}));
    QVERIFY(device->mountPoints().isEmpty());
    QVERIFY(!QFile::exists(u"/media/root/My Disk"_s));
    QVERIFY(!device->unmount({}));
}

void UDisksRealTest::refusesWhatCannotBeMounted()
{
    const VDiskManager manager;
    for (const QString& node : {m_disk->device(), m_disk->partition(2), m_disk->partition(3)}) {
        QVERIFY(m_storage->owns(node));
        const auto device = manager.createBlockDevice(pathOf(manager, node));
        const QString answer = device->mount({});
        QVERIFY2(answer.contains(u' '), qPrintable(answer));
        QVERIFY(!device->unmount({}));
    }
    QVERIFY(!Sandbox::readFile(u"/proc/self/mounts"_s).contains(m_disk->device().toUtf8()));
}

int main(int argc, char** argv)
{
    Sandbox::enter(argv);
    RealStorage::skipUnlessPossible();
    return Sandbox::run<UDisksRealTest>(argc, argv);
}

#include "tst_udisksreal.moc"
