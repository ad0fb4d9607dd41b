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

int main(int argc, char** argv)
{
    return Sandbox::run<SandboxTest>(argc, argv);
}

#include "tst_sandbox.moc"
