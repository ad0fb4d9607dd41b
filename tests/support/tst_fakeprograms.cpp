// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"
#include "support/LogCapture.h"

#include <QProcess>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

struct Ended
{
    QByteArray out;
    QByteArray err;
    int code = -1; ///< minus the signal's number when killed
};

Ended runProgram(const QStringList& call, const std::optional<QStringList>& environment = {})
{
    QProcess process;
    if (environment) {
        process.setEnvironment(*environment);
    }
    process.start(call.first(), call.mid(1));
    process.waitForFinished(-1);
    const int code = process.exitStatus() == QProcess::CrashExit ? -process.exitCode() : process.exitCode();
    return {process.readAllStandardOutput(), process.readAllStandardError(), code};
}

} // namespace

class FakeProgramsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersAndRecords();
    void everyEnding_data();
    void everyEnding();
    void longestRuleWins();
    void successiveReplies();
    void sudo();
    void onlyTheJobsEnvironment();
    void shellPipelineFindsSudo();
    void absolutePaths();
    void passesThrough();
    void unpreparedCallIsAnError();
    void unpreparedCallFailsTheTest();
    void dangerousProgramsNeverPass();
    void pathIsRestored();
    void logLinesAreCaptured();
};

void FakeProgramsTest::answersAndRecords()
{
    FakePrograms fakes;
    fakes.reply({u"lsblk"_s}, QByteArray("a\0b\xFF no newline", 16));
    const QStringList call{u"lsblk"_s, u""_s, u"a b"_s, u"line\nbreak"_s, u"*$(reboot)'\""_s};
    const Ended ended = runProgram(call);
    QCOMPARE(ended.out, QByteArray("a\0b\xFF no newline", 16));
    QCOMPARE(ended.err, QByteArray());
    QCOMPARE(ended.code, 0);
    QCOMPARE(fakes.calls(), QList<QStringList>{call});
    QVERIFY(fakes.environment(0).contains(u"PATH="_s + qEnvironmentVariable("PATH")));
    fakes.forgetCalls();
    QVERIFY(fakes.calls().isEmpty());
}

void FakeProgramsTest::everyEnding_data()
{
    QTest::addColumn<QByteArray>("snippet");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("signal");
    QTest::addColumn<int>("code");
    QTest::newRow("succeeds") << QByteArray() << 0 << 0 << 0;
    QTest::newRow("fails") << QByteArray() << 3 << 0 << 3;
    QTest::newRow("killed") << QByteArray() << 0 << 9 << -9;
    QTest::newRow("terminated") << QByteArray() << 0 << 15 << -15;
    QTest::newRow("snippet fails") << QByteArray("exit 4") << 0 << 0 << 4;
    QTest::newRow("snippet succeeds") << QByteArray("[ \"$1\" = 5% ] && [ \"$0\" = df ]") << 6 << 0 << 6;
}

void FakeProgramsTest::everyEnding()
{
    QFETCH(QByteArray, snippet);
    QFETCH(int, exitCode);
    QFETCH(int, signal);
    FakePrograms fakes;
    fakes.reply({u"df"_s}, {.out = "out", .err = "err", .snippet = snippet, .exitCode = exitCode, .signal = signal});
    const Ended ended = runProgram({u"df"_s, u"5%"_s});
    QTEST(ended.code, "code");
    QCOMPARE(ended.out, QByteArray("out"));
    QCOMPARE(ended.err, QByteArray("err"));
}

void FakeProgramsTest::longestRuleWins()
{
    FakePrograms fakes;
    fakes.reply({u"kestro-clone"_s}, "any");
    fakes.reply({u"kestro-clone"_s, u"--kim-info"_s, u"bad.kim"_s}, "bad");
    fakes.reply({u"kestro-clone"_s, u"--kim-info"_s}, "info");
    QCOMPARE(runProgram({u"kestro-clone"_s}).out, "any");
    QCOMPARE(runProgram({u"kestro-clone"_s, u"--kim-info"_s, u"good.kim"_s}).out, "info");
    QCOMPARE(runProgram({u"kestro-clone"_s, u"--kim-info"_s, u"bad.kim"_s}).out, "bad");
    QCOMPARE(runProgram({u"kestro-clone"_s, u"--kim-info-more"_s}).out, "any");
}

void FakeProgramsTest::successiveReplies()
{
    FakePrograms fakes;
    fakes.reply({u"blkid"_s}, {.exitCode = 2});
    fakes.reply({u"blkid"_s}, "second");
    fakes.reply({u"mount"_s}, "other");
    QCOMPARE(runProgram({u"blkid"_s}).code, 2);
    QCOMPARE(runProgram({u"mount"_s}).out, "other");
    QCOMPARE(runProgram({u"blkid"_s}).out, "second");
    QCOMPARE(runProgram({u"blkid"_s}).out, "second");
    QCOMPARE(fakes.callLines(), QStringList({u"blkid"_s, u"mount"_s, u"blkid"_s, u"blkid"_s}));
}

void FakeProgramsTest::sudo()
{
    FakePrograms fakes;
    fakes.reply({u"tar"_s, u"-cpf"_s}, "plain");
    fakes.reply({u"sudo"_s, u"rm"_s}, "only through sudo");
    fakes.reply({u"rm"_s}, "direct");
    QCOMPARE(runProgram({u"sudo"_s, u"tar"_s, u"-cpf"_s, u"x"_s}).out, "plain");
    QCOMPARE(runProgram({u"sudo"_s, u"rm"_s, u"-f"_s, u"x"_s}).out, "only through sudo");
    QCOMPARE(runProgram({u"rm"_s, u"-f"_s, u"x"_s}).out, "direct");
    QCOMPARE(fakes.callLines(), QStringList({u"sudo tar -cpf x"_s, u"sudo rm -f x"_s, u"rm -f x"_s}));
}

void FakeProgramsTest::onlyTheJobsEnvironment()
{
    FakePrograms fakes;
    fakes.reply({u"tar"_s}, {.out = "fine", .snippet = "printf %s \"$LC_ALL\""});
    QCOMPARE(runProgram({u"sudo"_s, u"tar"_s}, QStringList{u"LC_ALL=C"_s}).out, "fineC");
    QCOMPARE(fakes.environment(0), QStringList{u"LC_ALL=C"_s});
}

void FakeProgramsTest::shellPipelineFindsSudo()
{
    FakePrograms fakes;
    fakes.reply({u"blkid"_s}, "/dev/sda1: UUID=\"1\"\n/dev/sda2: UUID=\"2\"\n");
    QCOMPARE(runProgram({u"/bin/bash"_s, u"-c"_s, u"sudo blkid | grep sda2"_s}).out, "/dev/sda2: UUID=\"2\"\n");
    QCOMPARE(fakes.callLines(), QStringList{u"sudo blkid"_s});
}

void FakeProgramsTest::absolutePaths()
{
    const QString script = u"/lib/kestro-recovery-gui/scripts/write-file"_s;
    FakePrograms fakes;
    fakes.reply({script}, "faked");
    QCOMPARE(runProgram({u"sudo"_s, script, u"a"_s}).out, "faked");
    fakes.installAt(script);
    QCOMPARE(runProgram({script, u"b"_s}).out, "faked");
    QCOMPARE(fakes.calls(), QList<QStringList>({{u"sudo"_s, script, u"a"_s}, {script, u"b"_s}}));
}

void FakeProgramsTest::passesThrough()
{
    const QString folder = Sandbox::freshFolder();
    Sandbox::writeFile(folder + u"/a"_s, "content");
    FakePrograms fakes;
    fakes.passThrough({u"cp"_s});
    fakes.passThrough({u"sudo"_s, u"rm"_s, u"-f"_s});
    QCOMPARE(runProgram({u"sudo"_s, u"cp"_s, folder + u"/a"_s, folder + u"/b"_s}, QStringList{u"LC_ALL=C"_s}).code, 0);
    QCOMPARE(runProgram({u"sudo"_s, u"rm"_s, u"-f"_s, folder + u"/a"_s}).code, 0);
    QCOMPARE(Sandbox::readFile(folder + u"/b"_s), "content");
    QVERIFY(!QFile::exists(folder + u"/a"_s));
    QCOMPARE(runProgram({u"cp"_s, folder + u"/missing"_s, folder + u"/c"_s}).code, 1);
}

void FakeProgramsTest::unpreparedCallIsAnError()
{
    FakePrograms fakes;
    fakes.reply({u"tar"_s, u"-cpf"_s});
    for (const QStringList& call : {QStringList{u"sudo"_s, u"reboot"_s, u"-f"_s}, QStringList{u"mkswap"_s},
             QStringList{u"tar"_s, u"-xpf"_s}, QStringList{u"sudo"_s}}) {
        const Ended ended = runProgram(call);
        QCOMPARE(ended.code, 127);
        QVERIFY(ended.err.contains(call.join(u' ').toUtf8()));
    }
    QCOMPARE(fakes.unexpectedCalls(), QStringList({u"sudo reboot -f"_s, u"mkswap"_s, u"tar -xpf"_s, u"sudo"_s}));
}

// Run in a process of its own, because the failure is what is wanted.
void FakeProgramsTest::unpreparedCallFailsTheTest()
{
    if (qEnvironmentVariableIsSet("KESTRO_FAKES_INNER")) {
        FakePrograms fakes;
        runProgram({u"poweroff"_s});
        return;
    }
    qputenv("KESTRO_FAKES_INNER", "1");
    const Ended ended = runProgram({QCoreApplication::applicationFilePath(), u"unpreparedCallFailsTheTest"_s});
    qunsetenv("KESTRO_FAKES_INNER");
    QCOMPARE(ended.code, 1);
    QVERIFY2(ended.out.contains("calls that nobody prepared:\npoweroff"), ended.out + ended.err);
}

void FakeProgramsTest::dangerousProgramsNeverPass()
{
    if (qEnvironmentVariableIsSet("KESTRO_FAKES_INNER")) {
        FakePrograms().passThrough({u"sudo"_s, qEnvironmentVariable("KESTRO_FAKES_INNER")});
        return;
    }
    for (const char* program : {"reboot", "mkswap", "kestro-clone", "/sbin/poweroff"}) {
        qputenv("KESTRO_FAKES_INNER", program);
        const Ended ended = runProgram(
            {QCoreApplication::applicationFilePath(), u"dangerousProgramsNeverPass"_s, u"-nocrashhandler"_s});
        QVERIFY2(ended.code < 0 && (ended.out + ended.err).contains("never runs for real"), ended.out + ended.err);
    }
    qunsetenv("KESTRO_FAKES_INNER");
}

void FakeProgramsTest::pathIsRestored()
{
    const QByteArray before = qgetenv("PATH");
    {
        const FakePrograms fakes;
        QVERIFY(qgetenv("PATH") != before);
    }
    QCOMPARE(qgetenv("PATH"), before);
}

void FakeProgramsTest::logLinesAreCaptured()
{
    const LogCapture log;
    qWarning() << "gui locale: " << u"zh_CN"_s;
    qDebug() << "count:" << 3;
    QCOMPARE(log.messages(), QStringList({u"gui locale:  \"zh_CN\""_s, u"count: 3"_s}));
    QCOMPARE(log.messages(QtWarningMsg).size(), 1);
    QCOMPARE(log.find(u"count: 3"_s).function, u"void FakeProgramsTest::logLinesAreCaptured()"_s);
    QCOMPARE(log.find(u"count: 3"_s).file, u"./tests/support/tst_fakeprograms.cpp"_s);
    QCOMPARE(log.find(u"other"_s).line, 0);
}

int main(int argc, char** argv)
{
    return Sandbox::run<FakeProgramsTest>(argc, argv);
}

#include "tst_fakeprograms.moc"
