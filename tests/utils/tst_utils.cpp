// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/utils.h"
#include "utils/core/systemreboot.h"

#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;
using Utils::BlkIdInfo;

namespace {

void makeLink(const QString& target, const QString& path)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile::remove(path);
    QVERIFY(QFile::link(target, path));
}

QStringList devicePaths(const QList<BlkIdInfo>& list)
{
    QStringList paths;
    for (const BlkIdInfo& info : list) {
        paths.append(info.devicePath);
    }
    return paths;
}

} // namespace

class UtilsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void blockIds();
    void blockIdsWithMapperVolumes();
    void blockIdsOfAFailedTool();

    void commandLine();
    void liveRoot_data();
    void liveRoot();
    void bootEnvironment();
    void locale();

    void recoveryJson();
    void recoveryJsonThatIsNotThere();
    void swapSize();
    void recoveryUuid();
    void writability();
    void imageCheck();
    void initialImages();
    void smallCommands();
    void processName();
};

void UtilsTest::init()
{
    Sandbox::reset();
    QDir(u"/dev/mapper"_s).removeRecursively();
    QDir(u"/dev/disk"_s).removeRecursively();
}

void UtilsTest::blockIds()
{
    FakePrograms programs;
    programs.reply({u"sudo"_s, u"blkid"_s},
        {.out = " /dev/sda1: UUID=\"A\" TYPE=\"vfat\"\n\n/dev/sda2: UUID=\"B\"\n", .err = "a warning\n"});
    const LogCapture log;
    QList<BlkIdInfo> list{BlkIdInfo{}};
    QString error = u"kept "_s;
    QVERIFY(Utils::getBlkIdInfoList(list, error));
    QCOMPARE(devicePaths(list), (QStringList{QString(), u"/dev/sda1"_s, u"/dev/sda2"_s}));
    QCOMPARE(list[1].uuid, u"A"_s);
    QCOMPARE(error, u"kept a warning\n"_s);

    const LogLine line = log.find(uR"(getBlkIdInfoList line:  "/dev/sda2: UUID=\"B\"")"_s);
    QCOMPARE(line.function, u"bool Utils::getBlkIdInfoList(QList<BlkIdInfo>&, QString&)"_s);
    QCOMPARE(line.file, u"./src/utils/utils.cpp"_s);
    QCOMPARE(line.level, QtDebugMsg);
    QCOMPARE(log.lines().size(), 2);
}

void UtilsTest::blockIdsWithMapperVolumes()
{
    makeLink(u"../dm-0"_s, u"/dev/mapper/luks-1"_s);
    makeLink(u"../dm-1"_s, u"/dev/mapper/vg-root"_s);
    makeLink(u"../dm-2"_s, u"/dev/mapper/vg-raw"_s);
    Sandbox::writeFile(u"/dev/mapper/control"_s, {});
    FakePrograms programs;
    programs.reply({u"sudo"_s, u"blkid"_s},
        "/dev/mapper/luks-1: UUID=\"P\" TYPE=\"LVM2_member\"\n/dev/mapper/vg-root: UUID=\"R\" TYPE=\"ext4\"\n");
    const LogCapture log;
    QList<BlkIdInfo> list;
    QString error;
    QVERIFY(Utils::getBlkIdInfoList(list, error));
    QCOMPARE(
        devicePaths(list), (QStringList{u"/dev/mapper/luks-1"_s, u"/dev/mapper/vg-root"_s, u"/dev/mapper/vg-raw"_s}));
    QCOMPARE(log.messages().last(), uR"(lvmOutput:  "luks-1\nvg-raw\nvg-root\n")"_s);
}

void UtilsTest::blockIdsOfAFailedTool()
{
    FakePrograms programs;
    programs.reply({u"sudo"_s, u"blkid"_s}, {.out = "/dev/sda1: UUID=\"A\"\n", .err = "no access\n", .exitCode = 2});
    const LogCapture log;
    QList<BlkIdInfo> list;
    QString error;
    QVERIFY(!Utils::getBlkIdInfoList(list, error));
    QVERIFY(list.isEmpty());
    QCOMPARE(error, u"no access\n"_s);
    QCOMPARE(log.messages(), (QStringList{uR"(getBlkid failed, error:  "no access\n")"_s}));
}

void UtilsTest::commandLine()
{
    makeLink(u"../dm-1"_s, u"/dev/mapper/vg-root"_s);
    makeLink(u"../dm-9"_s, u"/dev/mapper/vg-raw"_s);
    makeLink(u"../../dm-0"_s, u"/dev/disk/by-uuid/1111"_s);
    makeLink(u"../../dm-1"_s, u"/dev/disk/by-uuid/2222"_s);
    LogCapture log;
    CmdLineInfo info;
    Sandbox::setKernelCommandLine("root=UUID=1111 root=/dev/mapper/vg-root boot=live\n");
    QVERIFY(Utils::getCmdLineInfo(info));
    QCOMPARE(info.rootUuid, u"2222"_s);
    QCOMPARE(info.boot, u"live"_s);
    QCOMPARE(log.messages(),
        (QStringList{uR"(getCmdLineInfo mapperTarget= "/dev/dm-1")"_s, uR"(getCmdLineInfo uuidTarget= "2222")"_s}));

    // A device that is no link, and a link to one without a UUID, tell nothing.
    log.clear();
    Sandbox::setKernelCommandLine("root=UUID=3 root=/dev/dm-1 root=/dev/mapper/vg-raw\n");
    QVERIFY(Utils::getCmdLineInfo(info));
    QCOMPARE(info.rootUuid, u"3"_s);
    QCOMPARE(log.messages(), QStringList{uR"(getCmdLineInfo mapperTarget= "/dev/dm-9")"_s});
}

void UtilsTest::liveRoot_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("uuid");
    QTest::addColumn<QString>("bootType");
    QTest::newRow("stops when both are set")
        << QByteArray("root=UUID=1 boot-from=a root=UUID=2 boot-from=b\n") << u"1"_s << u"a"_s;
    QTest::newRow("goes on until both are set")
        << QByteArray("root=UUID=1 root=UUID=2 boot=live boot-from=b=c\n") << u"2"_s << u"c"_s;
    QTest::newRow("link") << QByteArray("boot-from=a root=/dev/mapper/vg-root\n") << u"2222"_s << u"a"_s;
    QTest::newRow("neither") << QByteArray("quiet\n") << QString() << QString();
}

void UtilsTest::liveRoot()
{
    QFETCH(QByteArray, content);
    Sandbox::setKernelCommandLine(content);
    makeLink(u"../dm-1"_s, u"/dev/mapper/vg-root"_s);
    makeLink(u"../../dm-1"_s, u"/dev/disk/by-uuid/2222"_s);
    const LogCapture log;
    QString uuid = u"old"_s;
    QString bootType = u"old"_s;
    QVERIFY(Utils::getLiveRootUUIDAndBootTypeByCmdLine(uuid, bootType));
    QTEST(uuid, "uuid");
    QTEST(bootType, "bootType");
    const QStringList linkMessages{uR"(getLiveRootUUIDByCmdLine mapperTarget= "/dev/dm-1")"_s,
        uR"(getLiveRootUUIDByCmdLine uuidTarget= "2222")"_s};
    QCOMPARE(log.messages(), content.contains("vg-root") ? linkMessages : QStringList{});
}

void UtilsTest::bootEnvironment()
{
    const QString fstab = Sandbox::freshFolder() + u"/fstab"_s;
    Sandbox::writeFile(fstab, "UUID=abc / ext4 rw 0 1\n");
    Sandbox::setKernelCommandLine("root=UUID=abc quiet\n");
    QCOMPARE(Utils::getBootEnvironment(fstab), 0);
    Sandbox::setKernelCommandLine("root=UUID=def quiet\n");
    QCOMPARE(Utils::getBootEnvironment(fstab), 1);

    // An fstab that is not needed is not read: no warning that it is missing.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    Sandbox::setKernelCommandLine("boot=live union=overlay BOOT_IMAGE=/live/vmlinuz-6.1 root=UUID=abc\n");
    QCOMPARE(Utils::getBootEnvironment(u"/none"_s), 2);
    Sandbox::setKernelCommandLine("quiet\n");
    QCOMPARE(Utils::getBootEnvironment(u"/none"_s), -1);
}

void UtilsTest::locale()
{
    const QString root = Sandbox::freshFolder();
    QString locale = u"kept"_s;
    QVERIFY(!Utils::getSystemLocale(root, locale));
    QCOMPARE(locale, u"kept"_s);
    Sandbox::writeFile(root + u"/etc/default/locale"_s, "LANGUAGE=\"zh_CN\"\n");
    QVERIFY(Utils::getSystemLocale(root, locale));
    QCOMPARE(locale, u"\"zh_CN\""_s);
    locale.clear();
    QVERIFY(Utils::getSystemLocale(root + u'/', locale));
    QCOMPARE(locale, u"\"zh_CN\""_s);
}

void UtilsTest::recoveryJson()
{
    const QString path = Sandbox::freshFolder() + u"/recovery.json"_s;
    Sandbox::writeFile(path, R"({"type":"SystemBackup"})");
    FakePrograms programs;
    programs.passThrough({u"sudo"_s, u"rm"_s});
    const LogCapture log;
    QJsonObject object{{u"old"_s, 1}};
    QVERIFY(Utils::getRecoveryJsonInfo(object, path));
    QCOMPARE(object, (QJsonObject{{u"type"_s, u"SystemBackup"_s}}));
    QVERIFY(!QFile::exists(path));
    QCOMPARE(programs.calls(), (QList<QStringList>{{u"sudo"_s, u"rm"_s, u"-f"_s, path}}));
    QCOMPARE(log.messages(QtDebugMsg),
        (QStringList{
            u"getRecoveryJsonInfo, recoveryJsonPath =  \"%1\""_s.arg(path), u"delete file:  \"%1\""_s.arg(path)}));

    // What cannot be understood goes, too.
    Sandbox::writeFile(path, R"({"type":)");
    QVERIFY(Utils::getRecoveryJsonInfo(object, path));
    QCOMPARE(object, QJsonObject());
    QVERIFY(!QFile::exists(path));
}

void UtilsTest::recoveryJsonThatIsNotThere()
{
    FakePrograms programs;
    QJsonObject object{{u"old"_s, 1}};
    const QString folder = Sandbox::freshFolder();
    for (const QString& path : {folder + u"/none"_s, folder, QString()}) {
        QVERIFY(!Utils::getRecoveryJsonInfo(object, path));
    }
    QCOMPARE(object.size(), 1);
    QCOMPARE(programs.callLines(), QStringList{});
}

void UtilsTest::swapSize()
{
    FakePrograms programs;
    programs.reply({u"lsblk"_s}, "PATH SIZE\n/dev/sda1 1024\n/dev/sda4 8589934592\n");
    programs.reply({u"lsblk"_s}, {.out = "half", .err = "broken", .exitCode = 1});
    qint64 size = -7;
    QVERIFY(Utils::getSwapPartitionSize(u"/dev/sda4"_s, size));
    QCOMPARE(size, 8589934592);
    QCOMPARE(programs.callLines(), (QStringList{u"lsblk --bytes --output PATH,SIZE"_s}));

    const LogCapture log;
    QVERIFY(!Utils::getSwapPartitionSize(u"/dev/sda4"_s, size));
    QCOMPARE(size, 8589934592);
    QCOMPARE(
        log.messages(), (QStringList{uR"(getSwapPartitionSize call lsblk failed, err =  "broken" , out:  "half")"_s}));
}

void UtilsTest::recoveryUuid()
{
    const QString root = Sandbox::freshFolder();
    QCOMPARE(Utils::getRecoveryUUID(root), QString());
    Sandbox::writeFile(root + u"/etc/kestro/system-recovery.conf"_s, "UUID=1234-ABCD\nOther=x\n");
    QCOMPARE(Utils::getRecoveryUUID(root), u"1234-ABCD"_s);
}

void UtilsTest::writability()
{
    const QString folder = Sandbox::freshFolder();
    QVERIFY(Utils::isWritable(folder));
    QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{});
    QVERIFY(!Utils::isWritable(folder + u"/none"_s));
    QVERIFY(!Utils::isWritable({}));
}

void UtilsTest::imageCheck()
{
    const QString image = u"/a b.kim"_s;
    FakePrograms programs;
    programs.reply({u"kestro-clone"_s}, {.out = "size 12", .err = "a hint"});
    programs.reply({u"kestro-clone"_s}, {.out = "x: invalid file\n"});
    programs.reply({u"kestro-clone"_s}, {.err = "invalid file"});
    programs.reply({u"kestro-clone"_s}, {.exitCode = 1});
    QVERIFY(Utils::checkImageFile(image));
    QVERIFY2(!Utils::checkImageFile(image), "bad on standard output");
    QVERIFY2(!Utils::checkImageFile(image), "bad on standard error");
    QVERIFY2(!Utils::checkImageFile(image), "a tool that failed in silence");
    QCOMPARE(programs.calls(), QList<QStringList>(4, {u"kestro-clone"_s, u"--kim-info"_s, image}));
}

void UtilsTest::initialImages()
{
    const QString folder = Sandbox::freshFolder();
    Sandbox::writeFile(u"/etc/fstab"_s,
        "UUID=with " + folder.toUtf8() + "/with ext4 rw 0 0\nUUID=without " + folder.toUtf8()
            + "/without ext4 rw 0 0\nUUID=swap none swap sw 0 0\n# comment\n");
    Sandbox::writeFile(folder + u"/with/backup/a.kim"_s, {});
    Sandbox::writeFile(folder + u"/without/backup/a.info"_s, {});
    QDir::setCurrent(folder);
    Sandbox::writeFile(folder + u"/none/backup/a.kim"_s, {});
    Sandbox::writeFile(folder + u"/a.kim"_s, {});
    QVERIFY(Utils::hasBackupImages(u"with"_s));
    QVERIFY(!Utils::hasBackupImages(u"without"_s));
    QVERIFY(!Utils::hasBackupImages(u"unknown"_s));
    QVERIFY(!Utils::hasBackupImages(u"swap"_s));
    QVERIFY(!Utils::hasBackupImages({}));
    QVERIFY(!Utils::hasImages({}));

    // Deliberate: the fstab is read once per process.
    Sandbox::writeFile(u"/etc/fstab"_s, {});
    QVERIFY(Utils::hasBackupImages(u"with"_s));
}

void UtilsTest::smallCommands()
{
    FakePrograms programs;
    programs.reply({u"systemctl"_s});
    programs.reply({u"sudo"_s, u"reboot"_s}, {.exitCode = 1});
    programs.reply({u"sudo"_s, u"rm"_s});
    programs.reply({u"date"_s}, "2026-01-31T23:59:59Z\n");
    programs.reply({u"dpkg"_s}, "amd64\n");
    programs.reply({u"dpkg"_s}, {.out = "half", .exitCode = 1});
    QVERIFY(Utils::rebootSystem());
    QVERIFY(Utils::rebootSystem(Utils::RebootMode::IgnoreInhibitors));
    QVERIFY(Utils::rebootSystem(Utils::RebootMode::Force));
    QVERIFY(!Utils::forceReboot());
    QVERIFY(Utils::removePath(u"/media/a b"_s));
    QVERIFY(!Utils::removePath({}));
    QCOMPARE(Utils::getUtcTime(), u"2026-01-31T23:59:59Z"_s);
    QCOMPARE(Utils::getArchitecture(), u"amd64"_s);
    QCOMPARE(Utils::getArchitecture(), QString());
    QCOMPARE(programs.callLines(),
        (QStringList{u"systemctl reboot"_s, u"systemctl reboot -i"_s, u"systemctl reboot -f"_s, u"sudo reboot -f"_s,
            u"sudo rm -rf /media/a b"_s, u"date -u +%Y-%m-%dT%H:%M:%SZ"_s, u"dpkg --print-architecture"_s,
            u"dpkg --print-architecture"_s}));
}

void UtilsTest::processName()
{
    QCOMPARE(Utils::getProcessName(QString::number(QCoreApplication::applicationPid())), u"tst_utils"_s);
    for (const QString& pid : {u"999999999"_s, u"1/stat; echo '(x)' #"_s, u"\u0661"_s, QString()}) {
        QVERIFY2(Utils::getProcessName(pid).isEmpty(), qPrintable(pid));
    }
}

int main(int argc, char** argv)
{
    return Sandbox::run<UtilsTest>(argc, argv);
}
#include "tst_utils.moc"
