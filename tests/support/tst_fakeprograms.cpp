// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Ended
{
    QByteArray out;
    QByteArray err;
    int code = -1; ///< minus the signal's number when killed
};

Ended runProgram(const QStringList& call)
{
    QProcess process;
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
    void sudo();
    void passesThrough();
    void unpreparedCallIsAnError();
    void rootsCallsNeedSudo();
    void unpreparedCallFailsTheTest();
    void dangerousProgramsNeverPass();
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

void FakeProgramsTest::passesThrough()
{
    const QString folder = Sandbox::freshFolder();
    Sandbox::writeFile(folder + u"/a"_s, "content");
    FakePrograms fakes;
    fakes.passThrough({u"cp"_s});
    fakes.passThrough({u"sudo"_s, u"rm"_s, u"-f"_s});
    QCOMPARE(runProgram({u"sudo"_s, u"cp"_s, folder + u"/a"_s, folder + u"/b"_s}).code, 0);
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

void FakeProgramsTest::rootsCallsNeedSudo()
{
    FakePrograms fakes;
    fakes.reply({u"kestro-clone"_s});
    fakes.needsRoot({u"kestro-clone"_s, u"--tui"_s});
    for (const QStringList& call : {QStringList{u"sudo"_s, u"kestro-clone"_s, u"--tui"_s, u"x"_s},
             QStringList{u"kestro-clone"_s, u"--kim-info"_s}, QStringList{u"kestro-clone"_s}}) {
        QCOMPARE(runProgram(call).code, 0);
    }
    QCOMPARE(fakes.unexpectedCalls(), QStringList());
    QCOMPARE(runProgram({u"kestro-clone"_s, u"--tui"_s, u"x"_s}).code, 0);
    QCOMPARE(fakes.unexpectedCalls(), QStringList{u"kestro-clone --tui x"_s});
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

int main(int argc, char** argv)
{
    return Sandbox::run<FakeProgramsTest>(argc, argv);
}

#include "tst_fakeprograms.moc"
