// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"
#include "support/LoopDisk.h"
#include "support/RealStorage.h"
#include "utils/Device.h"
#include "utils/core/partitionusage.h"
#include "utils/fsck.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>

using namespace Qt::StringLiterals;

/// The readers and fsck with the real tools, on file systems on disks that the test made itself.
class RealFileSystemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void usage_data();
    void usage();
    void fsckFindsAndRepairsDamage();
    void mountPointOfUuid();
};

namespace {

constexpr qint64 mebibyte = 1048576;

/// Runs a script with the device in $1. @return what it printed; null when it failed
QString runScript(const QString& script, const QString& device)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, u"/usr/sbin:/usr/bin:/sbin:/bin"_s); // never the fakes
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(u"/bin/bash"_s, {u"-euo"_s, u"pipefail"_s, u"-c"_s, script, u"script"_s, device});
    process.waitForFinished(-1);
    const bool isDone = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    const QString output = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    return isDone ? u" "_s + output : QString();
}

QList<qint64> numbersOf(const QString& output)
{
    QList<qint64> numbers;
    for (const QString& word : output.split(u' ', Qt::SkipEmptyParts)) {
        numbers.append(word.toLongLong());
    }
    return numbers;
}

bool isNear(qint64 a, qint64 b, qint64 tolerance)
{
    return qAbs(a - b) <= tolerance;
}

const QString mountAndWrite = u"mkdir -p /tmp/mnt; mount $1 /tmp/mnt; head -c 8M /dev/urandom >/tmp/mnt/data; sync; "
                              "umount /tmp/mnt"_s;
const QString askKernel =
    u"mkdir -p /tmp/mnt; mount -o ro $1 /tmp/mnt; stat -f -c \"$(blockdev --getsize64 $1) %f %S\" "
    "/tmp/mnt | { read -r total free size; echo $total $((free * size)); }; umount /tmp/mnt"_s;

/// Reads little-endian numbers of the superblock: "at OFFSET BYTES".
const QString at = u"at() { od -An -v -tu$2 -j$1 -N$2 $dev | tr -d ' '; }; dev=$1; "_s;

} // namespace

void RealFileSystemsTest::usage_data()
{
    QTest::addColumn<FsType>("type");
    QTest::addColumn<int>("sizeMiB");
    QTest::addColumn<QString>("make");
    QTest::addColumn<QString>("fill");     // writes 8 MiB; empty where neither kernel nor tools can write
    QTest::addColumn<QString>("ask");      // prints total and free bytes as kernel, other tool or superblock say
    QTest::addColumn<qint64>("tolerance"); // of the answers, and of what 8 MiB take
    const QString copyByTool = u"head -c 8M /dev/urandom >/tmp/data; "_s;
    QTest::newRow("ext4") << FsType::Ext4 << 64 << u"mkfs.ext4 -q $1"_s << mountAndWrite << askKernel << qint64(0);
    QTest::newRow("ext2") << FsType::Ext2 << 64 << u"mkfs.ext2 -q $1"_s << mountAndWrite << askKernel << qint64(0);
    QTest::newRow("ext3") << FsType::Ext3 << 64 << u"mkfs.ext3 -q $1"_s << mountAndWrite << askKernel << qint64(0);
    QTest::newRow("xfs") << FsType::Xfs << 320 << u"mkfs.xfs -q $1"_s << mountAndWrite << askKernel << mebibyte;
    // btrfs takes room from the device in large pieces: what it says is not the kernel's free space.
    QTest::newRow("btrfs") << FsType::Btrfs << 128 << u"mkfs.btrfs -q $1 2>/dev/null"_s << QString()
                           << u"btrfs inspect-internal dump-super $1 | awk '$1 == \"dev_item.total_bytes\" { t = $2 } "
                              "$1 == \"dev_item.bytes_used\" { print t, t - $2 }'"_s
                           << mebibyte / 64;
    QTest::newRow("ntfs") << FsType::Ntfs << 64 << u"mkfs.ntfs -q -F -f $1 >/dev/null 2>&1"_s
                          << copyByTool + u"ntfscp -q $1 /tmp/data data"_s
                          << u"ntfscluster -f -i $1 | awk -F: '/bytes per volume/ { t = $2 } "
                             "/bytes of free space/ { print t, $2 }'"_s
                          << mebibyte / 16;
    // The reader takes off the offset of the data area, deliberately.
    const QString askMtools = u"echo $(blockdev --getsize64 $1) "
                              "$(mdir -i $1 | awk '/bytes free/ { gsub(\" \", \"\"); print $1 + 0 }')"_s;
    const QString copyByMtools = copyByTool + u"mcopy -i $1 /tmp/data ::data"_s;
    QTest::newRow("fat16") << FsType::Fat16 << 64 << u"mkfs.vfat -F 16 $1 >/dev/null"_s << copyByMtools << askMtools
                           << mebibyte / 2;
    QTest::newRow("fat32") << FsType::Fat32 << 64 << u"mkfs.vfat -F 32 -s 1 $1 >/dev/null"_s << copyByMtools
                           << askMtools << 2 * mebibyte;
    QTest::newRow("jfs") << FsType::Jfs << 64 << u"mkfs.jfs -q $1 >/dev/null"_s << QString()
                         << u"jfs_fsck -f -n -v $1 | awk '/kilobytes total disk space/ { t = $1 } "
                            "/kilobytes are available/ { print t * 1024, $1 * 1024 }' || true"_s
                         << 2 * mebibyte;
    QTest::newRow("nilfs2") << FsType::Nilfs2 << 160 << u"mkfs.nilfs2 -q $1"_s << QString()
                            << at + u"echo $(at 1056 8) $(($(at 1104 8) * (1024 << $(at 1044 4))))"_s << qint64(0);
    QTest::newRow("reiserfs") << FsType::Reiserfs << 64 << u"mkfs.reiserfs -q -ff $1 >/dev/null 2>&1"_s << QString()
                              << at + u"b=$(at 65580 2); echo $(($(at 65536 4) * b)) $(($(at 65540 4) * b))"_s
                              << qint64(0);
    QTest::newRow("reiser4") << FsType::Reiser4 << 64 << u"mkfs.reiser4 -y -f $1 >/dev/null 2>&1"_s << QString()
                             << at + u"echo $(($(at 69632 8) * 4096)) $(($(at 69640 8) * 4096))"_s << qint64(0);
}

void RealFileSystemsTest::usage()
{
    QFETCH(FsType, type);
    QFETCH(int, sizeMiB);
    QFETCH(QString, make);
    QFETCH(QString, fill);
    QFETCH(QString, ask);
    QFETCH(qint64, tolerance);
    const QList<LoopPartition> partitions{{.sizeMiB = sizeMiB}};
    const LoopDisk disk(partitions);
    const QString device = disk.partition(1);
    QVERIFY(!runScript(make, device).isNull());
    qint64 emptyFree = 0;
    qint64 free = 0;
    qint64 total = 0;
    QVERIFY(ReadUsage(device, type, emptyFree, total));
    QVERIFY(fill.isEmpty() || !runScript(fill, device).isNull());
    QVERIFY(ReadUsage(device, type, free, total));

    const QList<qint64> answer = numbersOf(runScript(ask, device));
    QCOMPARE(answer.size(), 2);
    const QByteArray figures =
        u"read %1 of %2, told %3 of %4"_s.arg(free).arg(total).arg(answer[1]).arg(answer[0]).toUtf8();
    QVERIFY2(isNear(total, answer[0], tolerance) && isNear(free, answer[1], tolerance), figures);
    QVERIFY2(total > sizeMiB * mebibyte / 10 * 9 && total <= sizeMiB * mebibyte, figures);
    if (!fill.isEmpty()) {
        QVERIFY2(isNear(emptyFree - free, 8 * mebibyte, mebibyte / 4), qPrintable(QString::number(emptyFree - free)));
    }
}

void RealFileSystemsTest::fsckFindsAndRepairsDamage()
{
    const QList<LoopPartition> partitions{{.sizeMiB = 64, .fileSystem = u"ext4"_s}};
    const LoopDisk disk(partitions);
    const QString device = disk.partition(1);
    FakePrograms programs;
    programs.passThrough({u"fsck"_s});
    const QString digest = u"mkdir -p /tmp/mnt; mount -o ro $1 /tmp/mnt; sha256sum </tmp/mnt/data; umount /tmp/mnt"_s;
    QVERIFY(!runScript(mountAndWrite, device).isNull());
    QVERIFY(
        !runScript(u"mkdir -p /tmp/mnt; mount $1 /tmp/mnt; mkdir /tmp/mnt/lost; umount /tmp/mnt"_s, device).isNull());
    const QString before = runScript(digest, device);
    QVERIFY(!Utils::checkPartitionErrorByFsck(device));

    // A directory whose inode is gone and a free block count that is wrong.
    QVERIFY(!runScript(u"for change in 'clri /lost' 'ssv free_blocks_count 7' dirty; do "
                       "debugfs -w -R \"$change\" $1 2>/dev/null; done"_s,
        device)
                 .isNull());
    QVERIFY(Utils::checkPartitionErrorByFsck(device));
    QVERIFY(Utils::checkPartitionErrorByFsck(device)); // the check repaired nothing
    QString output;
    QString error;
    QVERIFY(Utils::fixPartitionByFsck(device, output, error));
    QVERIFY(output.contains("FILE SYSTEM WAS MODIFIED"_L1));
    QVERIFY(!Utils::checkPartitionErrorByFsck(device));
    QVERIFY(!runScript(u"e2fsck -f -n $1 >/dev/null 2>&1"_s, device).isNull());
    QCOMPARE(runScript(digest, device), before);

    // Beyond repair: there is no superblock, and none is invented.
    QVERIFY(!runScript(u"dd if=/dev/zero of=$1 bs=1M count=64 conv=notrunc status=none"_s, device).isNull());
    QVERIFY(!Utils::fixPartitionByFsck(device, output, error));
    QVERIFY(!error.isEmpty());
}

void RealFileSystemsTest::mountPointOfUuid()
{
    const QList<LoopPartition> partitions{{.sizeMiB = 16, .fileSystem = u"ext4"_s}};
    const LoopDisk disk(partitions);
    const QString device = disk.partition(1);
    FakePrograms programs;
    programs.reply({u"lsblk"_s}, "UUID PATH\nab-cd-2 " + device.toUtf8() + "\nab-cd /dev/none\n");
    QVERIFY(!runScript(u"mkdir -p /tmp/mnt; mount $1 /tmp/mnt"_s, device).isNull());
    QString mountPoint;
    // Deliberate: the first line that has the UUID anywhere.
    const bool isFound = Device::getMountPointByUUID(u"ab-cd"_s, mountPoint);
    QVERIFY(!runScript(u"umount $1"_s, device).isNull());
    QVERIFY(isFound);
    QCOMPARE(mountPoint, u"/tmp/mnt"_s);
}

int main(int argc, char** argv)
{
    Sandbox::enter(argv);
    RealStorage::skipUnlessPossible();
    return Sandbox::run<RealFileSystemsTest>(argc, argv);
}

#include "tst_realfilesystems.moc"
