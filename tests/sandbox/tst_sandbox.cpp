// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"

#include <QDir>
#include <QProcess>
#include <QStorageInfo>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

class SandboxTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void noDisks();
    void hostIsOutOfReach();
    void changesStayInMemory();
    void privateFolders_data();
    void privateFolders();
    void kernelFiles();
    void resetGivesTheFirstState();
    void sourcesAreVisible();
};

namespace {

QByteArray outputOf(const QString& command)
{
    QProcess process;
    process.start(u"/bin/sh"_s, {u"-c"_s, command});
    process.waitForFinished(-1);
    return process.readAllStandardOutput();
}

} // namespace

void SandboxTest::initTestCase()
{
    QVERIFY(Sandbox::isInside());
}

void SandboxTest::noDisks()
{
    QCOMPARE(outputOf(u"find /dev -type b"_s), QByteArray());
    QCOMPARE(QDir(u"/dev/mapper"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot), QStringList());
    QVERIFY(outputOf(u"head -c 3 /dev/zero | wc -c"_s).trimmed() == "3");
    const QList<QStorageInfo> volumes = QStorageInfo::mountedVolumes();
    for (const QStorageInfo& volume : volumes) {
        const bool harmless = volume.isReadOnly() || volume.rootPath().startsWith("/dev/"_L1);
        QVERIFY2(
            !volume.device().startsWith("/dev/") || harmless, volume.device() + " at " + volume.rootPath().toUtf8());
    }
}

// The host's root can be reached neither through the place it was moved to nor through this process's own parent.
void SandboxTest::hostIsOutOfReach()
{
    QCOMPARE(QDir(u"/.kestro-sandbox/host"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    struct stat root = {};
    struct stat above = {};
    QCOMPARE(stat("/", &root), 0);
    QCOMPARE(stat("/..", &above), 0);
    QCOMPARE(above.st_dev, root.st_dev);
    QCOMPARE(above.st_ino, root.st_ino);
}

// The process that started the test is outside; another user's one shows its root to nobody, then only the inner half
// can be checked.
void SandboxTest::changesStayInMemory()
{
    const QString hostRoot = u"/proc/%1/root"_s.arg(getppid());
    Sandbox::writeFile(u"/opt/kestro-sandbox-probe"_s, "x");
    QVERIFY(!QFile::exists(hostRoot + u"/opt/kestro-sandbox-probe"_s));
    outputOf(u"rm -rf /opt/ /var/lib/dpkg"_s);
    QVERIFY(!QFile::exists(u"/opt"_s));
    QVERIFY(!QFile::exists(u"/var/lib/dpkg"_s));
    if (QFile::exists(hostRoot + u"/usr"_s)) {
        QVERIFY(QFile::exists(hostRoot + u"/var/lib/dpkg"_s));
    }
    QVERIFY(QDir().mkpath(u"/opt"_s));
    QVERIFY(QDir(u"/opt"_s).isEmpty());
}

void SandboxTest::privateFolders_data()
{
    QTest::addColumn<QString>("path");
    for (const char* path : {"/run", "/media", "/home/kestro", "/lib/kestro-recovery-gui", "/sys/firmware"}) {
        QTest::newRow(path) << QString::fromLatin1(path);
    }
}

void SandboxTest::privateFolders()
{
    QFETCH(QString, path);
    QVERIFY(QDir(path).isEmpty());
    QCOMPARE(QStorageInfo(path).fileSystemType(), QByteArray("tmpfs"));
    QVERIFY(QDir().mkpath(path + u"/a/b"_s));
    Sandbox::writeFile(path + u"/.hidden"_s, "x");
    Sandbox::reset();
    QVERIFY(QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

void SandboxTest::kernelFiles()
{
    Sandbox::setKernelCommandLine("root=UUID=1 quiet\n");
    QCOMPARE(outputOf(u"cat /proc/cmdline"_s), QByteArray("root=UUID=1 quiet\n"));
    Sandbox::setKernelCommandLine("x");
    QCOMPARE(Sandbox::readFile(u"/proc/cmdline"_s), QByteArray("x"));
    Sandbox::setSwaps("swaps\n");
    QCOMPARE(outputOf(u"cat /proc/swaps"_s), QByteArray("swaps\n"));
    Sandbox::setUefi(true);
    QVERIFY(QFile::exists(u"/sys/firmware/efi"_s));
    Sandbox::setUefi(false);
    QVERIFY(!QFile::exists(u"/sys/firmware/efi"_s));
    QVERIFY(!QFile(u"/sys/power/state"_s).open(QIODevice::WriteOnly));
}

void SandboxTest::resetGivesTheFirstState()
{
    Sandbox::setUefi(true);
    Sandbox::setKernelCommandLine("x");
    Sandbox::setSwaps("/dev/sda2 partition 1 0 -2\n");
    Sandbox::writeFile(u"/dev/disk/by-uuid/1234"_s, {});
    Sandbox::reset();
    QCOMPARE(Sandbox::readFile(u"/proc/cmdline"_s), QByteArray("quiet\n"));
    QCOMPARE(Sandbox::readFile(u"/proc/swaps"_s).count('\n'), 1);
    QVERIFY(!QFile::exists(u"/sys/firmware/efi"_s));
    QVERIFY(!QFile::exists(u"/dev/disk/by-uuid/1234"_s));
    QVERIFY(Sandbox::freshFolder() != Sandbox::freshFolder());
}

void SandboxTest::sourcesAreVisible()
{
    QVERIFY(QFile::exists(QStringLiteral(KESTRO_SOURCE_DIR "/CMakeLists.txt")));
}

int main(int argc, char** argv)
{
    return Sandbox::run<SandboxTest>(argc, argv);
}

#include "tst_sandbox.moc"
