// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/datainfo.h"
#include "gui/tasks/fstablines.h"
#include "gui/tasks/imagerecord.h"
#include "gui/tasks/mountoptions.h"
#include "gui/tasks/rootparameter.h"
#include "gui/tasks/taskarguments.h"
#include "utils/core/inifile.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TaskParsersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rootParameter_data();
    void rootParameter();
    void uuidArguments();
    void upwardPaths_data();
    void upwardPaths();
    void mountOptions_data();
    void mountOptions();
    void noneAndEmptyAreNotInTheTable();
    void mountPointUuids();
    void swapUuid_data();
    void swapUuid();
    void recordLine_data();
    void recordLine();
    void recordFile_data();
    void recordFile();
    void iniFilesOfOneSizeStayApart();
    void dataInfo_data();
    void dataInfo();
    void safeDirectories_data();
    void safeDirectories();
};

void TaskParsersTest::rootParameter_data()
{
    QTest::addColumn<QByteArray>("commandLine");
    QTest::addColumn<QString>("uuid");
    QTest::addColumn<QString>("device");
    QTest::newRow("uuid") << "BOOT_IMAGE=/v root=UUID=abc quiet"_ba << u"abc"_s << QString();
    QTest::newRow("last token") << "quiet root=UUID=abc\n"_ba << u"abc"_s << QString();
    QTest::newRow("partuuid") << "root=PARTUUID=x-1"_ba << u"x-1"_s << QString();
    QTest::newRow("mapper") << "root=/dev/mapper/vg-root ro"_ba << QString() << u"/dev/mapper/vg-root"_s;
    QTest::newRow("device, last token") << "ro root=/dev/sda2\n"_ba << QString() << u"/dev/sda2"_s;
    QTest::newRow("other keys") << "fakeroot=UUID=1 xroot=2"_ba << QString() << QString();
    QTest::newRow("first of two") << "root=UUID=a root=UUID=b"_ba << u"a"_s << QString();
    QTest::newRow("no value") << "root= ro"_ba << QString() << QString();
    QTest::newRow("empty") << ""_ba << QString() << QString();
}

void TaskParsersTest::rootParameter()
{
    QFETCH(const QByteArray, commandLine);
    const RootParameter root = parseRootParameter(commandLine);
    QTEST(root.uuid, "uuid");
    QTEST(root.device, "device");
}

void TaskParsersTest::uuidArguments()
{
    QCOMPARE(uuidOfArgument(u"UUID:AAAA-BBBB"_s), u"AAAA-BBBB"_s);
    QCOMPARE(uuidOfArgument(u"AAAA-BBBB"_s), u"AAAA-BBBB"_s);
    QCOMPARE(uuidOfArgument(u" UUID: AAAA-BBBB \n"_s), u"AAAA-BBBB"_s);
    QCOMPARE(uuidOfArgument(u"UUID:"_s), QString());
    QCOMPARE(uuidOfArgument({}), QString());
}

void TaskParsersTest::upwardPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("expected");
    QTest::newRow("plain") << u"/backup/1"_s << false;
    QTest::newRow("dots in a name") << u"/back..up/.../..x"_s << false;
    QTest::newRow("begins") << u"../x"_s << true;
    QTest::newRow("within") << u"/a/../../x"_s << true;
    QTest::newRow("ends") << u"/a/.."_s << true;
}

void TaskParsersTest::upwardPaths()
{
    QFETCH(const QString, path);
    QTEST(leadsUpwards(path), "expected");
}

void TaskParsersTest::mountOptions_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QVariantMap>("expected");
    const QVariantMap compressed{{u"options"_s, u"compress=zstd"_s}};
    QTest::newRow("btrfs with zstd") << u"btrfs"_s << u"rw,compress=zstd:3,subvol=@"_s << compressed;
    QTest::newRow("btrfs without") << u"btrfs"_s << u"rw,compress=lzo"_s << QVariantMap();
    QTest::newRow("other type") << u"btrfs2"_s << u"compress=zstd"_s << QVariantMap();
    QTest::newRow("other case") << u"Btrfs"_s << u"compress=zstd"_s << QVariantMap();
}

void TaskParsersTest::mountOptions()
{
    QFETCH(const QString, type);
    QFETCH(const QString, options);
    const auto entry = FSTabInfoPtr::create();
    entry->device = u"UUID=abc"_s;
    entry->type = type;
    entry->options = options;
    FSTabInfoList entries;
    entries.append(entry);
    const FSTabByUuid table = fstabByUuid(entries);
    QTEST(mountOptionsOf(table, u"abc"_s), "expected");
    QCOMPARE(mountOptionsOf(table, u"other"_s), QVariantMap());
}

void TaskParsersTest::noneAndEmptyAreNotInTheTable()
{
    FSTabInfoList entries;
    for (const auto& [device, type] : {std::pair{u"UUID=a"_s, u"none"_s}, {u"UUID="_s, u"ext4"_s},
             {u"/dev/sda1"_s, u"ext4"_s}, {u"UUID=b"_s, u"ext4"_s}, {QString(), QString()}}) {
        entries.append(FSTabInfoPtr::create());
        entries.last()->device = device;
        entries.last()->type = type;
    }
    QCOMPARE(fstabByUuid(entries).keys(), QStringList{u"b"_s});
}

void TaskParsersTest::mountPointUuids()
{
    const auto uuids = parseMountPointUuids(u"# UUID=comment /c\n"
                                            "UUID=root\t/  ext4 defaults\n"
                                            "  UUID=boot /boot\n"
                                            "UUID=lonely\n"
                                            "/dev/sda1 /boot/efi vfat umask=0077 0 1\n"
                                            "UUID=swap none swap sw 0 0"_s);
    const QMap<QString, QString> expected{{u"/"_s, u"root"_s}, {u"/boot"_s, u"boot"_s}, {u"none"_s, u"swap"_s}};
    QCOMPARE(uuids, expected);
}

void TaskParsersTest::swapUuid_data()
{
    QTest::addColumn<QString>("fstab");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << u"UUID=r / ext4\nUUID=s-1 none swap sw 0 0\n"_s << u"s-1"_s;
    // Deliberate: the first word of a comment that mentions swap.
    QTest::newRow("comment first") << u"# swap was on /dev/sda5\nUUID=s-1 none swap sw 0 0\n"_s << u"#"_s;
    QTest::newRow("commented entry") << u"#UUID=old none swap sw\nUUID=s-1 none swap sw\n"_s << u"old"_s;
    QTest::newRow("first of two") << u"\tUUID=a\tnone\tswap\nUUID=b none swap\n"_s << u"a"_s;
    QTest::newRow("none") << u"UUID=r / ext4\n"_s << QString();
}

void TaskParsersTest::swapUuid()
{
    QFETCH(const QString, fstab);
    QTEST(parseSwapUuid(fstab), "expected");
}

void TaskParsersTest::recordLine_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("expected");
    QTest::newRow("drive first") << u"image ok\nDiskDrive=DISK_1\nUUID=u\n"_s << u"drive DISK_1"_s;
    QTest::newRow("uuid first") << u"UUID=u-1\nDiskDrive=DISK_1\n"_s << u"uuid u-1"_s;
    QTest::newRow("after the last sign") << u"x DiskDrive= a = b \n"_s << u"drive b"_s;
    QTest::newRow("empty value") << u"UUID=\n"_s << u"uuid "_s;
    QTest::newRow("no record") << u"image ok\n"_s << u"none"_s;
    QTest::newRow("no output") << QString() << u"none"_s;
}

void TaskParsersTest::recordLine()
{
    QFETCH(const QString, description);
    const auto line = ImageRecord::parseLine(description);
    const QString result = line ? (line->isDiskDrive ? u"drive "_s : u"uuid "_s) + line->value : u"none"_s;
    QTEST(result, "expected");
}

void TaskParsersTest::recordFile_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("partition") << "UUID=1234-ABCD\nVersion=1.1"_ba << u"|1234-ABCD|1.1"_s;
    QTest::newRow("disk") << "DiskDrive=QEMU_DISK_1\nVersion=1.1\n"_ba << u"QEMU_DISK_1||1.1"_s;
    QTest::newRow("empty file") << ""_ba << u"||"_s;
    QTest::newRow("keys by case") << "uuid=a\nVersion=2"_ba << u"||2"_s;
    QTest::newRow("comma") << "UUID=A,B\n"_ba << u"refused"_s;
    QTest::newRow("semicolon") << "UUID=A;B\n"_ba << u"refused"_s;
    QTest::newRow("line break left out") << "UUID=1234-ABCD\\nVersion=1.1"_ba << u"refused"_s;
    QTest::newRow("binary") << QByteArray("\x00\xff\x01=\x7f", 5) << u"||"_s;
}

void TaskParsersTest::recordFile()
{
    QFETCH(const QByteArray, text);
    const auto record = ImageRecord::parseFile(text);
    const QString result =
        record ? QStringList({record->diskDrive, record->uuid, record->version}).join(u'|') : u"refused"_s;
    QTEST(result, "expected");
}

void TaskParsersTest::iniFilesOfOneSizeStayApart()
{
    // Files that follow each other within one tick and have one size: read at one path they would be mixed up.
    for (int i = 10; i < 60; ++i) {
        const QString uuid = u"UUID-%1"_s.arg(i);
        QCOMPARE(parseIni("UUID=" + uuid.toUtf8()).value(u"UUID"_s), uuid);
    }
}

void TaskParsersTest::dataInfo_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("both") << u"UUID=u-1\nDirectory=opt\n"_s << u"u-1|opt"_s;
    QTest::newRow("other order, other lines") << u"Size=3\n Directory= var \nPARTUUID=p\n"_s << u"p|var"_s;
    QTest::newRow("uuid only") << u"UUID=u-1\n"_s << u"u-1|"_s;
    QTest::newRow("empty values") << u"UUID=\nDirectory=\n"_s << u"|"_s;
}

void TaskParsersTest::dataInfo()
{
    QFETCH(const QString, text);
    const DataInfo info = parseDataInfo(text);
    QTEST(info.uuid + u'|' + info.directory, "expected");
}

void TaskParsersTest::safeDirectories_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<bool>("expected");
    QTest::newRow("opt") << u"opt"_s << true;
    QTest::newRow("deeper") << u"/usr/local/opt"_s << true;
    QTest::newRow("out of the partition") << u"../../etc"_s << false;
    QTest::newRow("an option of tar") << u"--absolute-names"_s << false;
    QTest::newRow("an option behind a slash") << u"x/--absolute-names"_s << false;
}

void TaskParsersTest::safeDirectories()
{
    QFETCH(const QString, directory);
    QTEST(isSafeDirectory(directory), "expected");
}

QTEST_APPLESS_MAIN(TaskParsersTest)

#include "tst_taskparsers.moc"
