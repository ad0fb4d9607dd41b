// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/FakeMachine.h"
#include "gui/tasks/Task.h"
#include "sandbox/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

int syncs = 0;
int syncfsError = 0;

} // namespace

// These take the place of the C library's.
extern "C" void sync() noexcept
{
    ++syncs;
}

extern "C" int syncfs(int /*file*/) noexcept
{
    errno = syncfsError;
    return syncfsError == 0 ? 0 : -1;
}

namespace {

struct Watched
{
    Task task;
    QSignalSpy percents{&task, &Task::progressChanged};
    QSignalSpy taskFinished{&task, &Task::taskFinished};
    QSignalSpy failures{&task, &Task::failed};

    [[nodiscard]] QList<int> percentList() const
    {
        QList<int> list;
        for (const QList<QVariant>& arguments : percents) {
            list.append(arguments.constFirst().toInt());
        }
        return list;
    }

    [[nodiscard]] bool hasEnded() const { return taskFinished.size() + failures.size() > 0; }
};

constexpr int patience = 20000; // ms

} // namespace

class TaskEngineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void archivesInOrder();
    void environmentOfJobs();
    void imageAndTwoArchives();
    void laterTaskShowsOnlyWhatIsHigher();
    void failedJob_data();
    void failedJob();
    void jobThatCannotBeStarted();
    void errorOutputIsLogged();
    void emptyList();
    void failedWhileBuilding();
    void unknownJob();
    void jobOutlivesItsTask();
    void archiveThatIsNotWritten_data();
    void archiveThatIsNotWritten();
};

void TaskEngineTest::archivesInOrder()
{
    FakeMachine machine;
    machine.programs.reply({u"tar"_s});
    Watched watched;
    for (const QString& name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s}) {
        watched.task.addJob(u"/m/"_s + name, u"/t/"_s + name + u".tar"_s, JobType::TarAppend);
    }
    watched.task.checkJobs();
    QVERIFY(!watched.task.isStarted());
    int syncsBefore = -1;
    connect(&watched.task, &Task::taskFinished, this, [&syncsBefore] { syncsBefore = syncs; });
    syncs = 0;
    watched.task.start();
    QTRY_VERIFY_WITH_TIMEOUT(watched.hasEnded(), patience);
    QCOMPARE(watched.percentList(), (QList<int>{39, 79, 99, 99, 99}));
    QCOMPARE(watched.taskFinished.size(), 1);
    QCOMPARE(syncsBefore, 1);
    QCOMPARE(machine.programs.callLines().size(), 5);
    QCOMPARE(machine.programs.callLines()[1], u"sudo tar --xattrs --xattrs-include=* -rpf /t/b.tar -C /m/ b"_s);
    QCOMPARE(machine.log.find(u"task count: 5"_s).function, u"void Task::checkJobs()"_s);
    QVERIFY(machine.log.find(u"currentIndex: 5 taskCount: 5"_s).line > 0);
    QVERIFY(machine.log.find(u"job start: \"/m/b\" to \"/t/b.tar\""_s).line > 0);
}

void TaskEngineTest::environmentOfJobs()
{
    FakeMachine machine;
    machine.programs.reply({u"tar"_s});
    Watched watched;
    watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType::TarCreate);
    watched.task.start();
    QTRY_VERIFY_WITH_TIMEOUT(watched.hasEnded(), patience);
    QCOMPARE(machine.programs.environment(0), QStringList{u"LC_ALL=C"_s});
}

void TaskEngineTest::imageAndTwoArchives()
{
    FakeMachine machine;
    machine.programs.reply({u"tar"_s});
    // The second chunk is printed once the first one has been reported.
    machine.programs.reply({u"kestro-clone"_s},
        {.snippet = "printf 'written 50.00%%'; until [ -e /tmp/seen ]; do sleep 0.05; done; printf ' 100.00%%'"});
    Watched watched;
    watched.task.addJob(u"/dev/sda3"_s, u"/t/system.kim"_s, JobType::Clone);
    watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType::TarAppend);
    watched.task.addJob(u"/m/var"_s, u"/t/var.tar"_s, JobType::TarAppend);
    watched.task.start();
    QTRY_COMPARE_WITH_TIMEOUT(watched.percents.size(), 1, patience);
    Sandbox::writeFile(u"/tmp/seen"_s, "");
    QTRY_VERIFY_WITH_TIMEOUT(watched.hasEnded(), patience);
    // Past 100 for the second of three jobs: deliberate, the indicator limits it.
    QCOMPARE(watched.percentList(), (QList<int>{33, 67, 132, 99}));
    QCOMPARE(machine.programs.callLines().constFirst(), u"sudo kestro-clone --tui /dev/sda3 /t/system.kim"_s);
}

void TaskEngineTest::laterTaskShowsOnlyWhatIsHigher()
{
    FakeMachine machine;
    machine.programs.reply({u"kestro-clone"_s}, {.out = "80.00%"});
    machine.programs.reply({u"kestro-clone"_s}, {.out = "30.00%"});
    for (int task = 0; task < 2; ++task) {
        Watched watched;
        watched.task.addJob(u"/dev/sda3"_s, u"/t/a.kim"_s, JobType::Clone);
        watched.task.start();
        QTRY_VERIFY_WITH_TIMEOUT(watched.hasEnded(), patience);
        // Deliberate: the highest percentage belongs to the process, not to the task.
        QCOMPARE(watched.percentList(), QList<int>{80});
    }
}

void TaskEngineTest::failedJob_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<int>("signal");
    QTest::newRow("exit code 1") << 1 << 0;
    QTest::newRow("exit code 2") << 2 << 0;
    QTest::newRow("killed") << 0 << 9;
}

void TaskEngineTest::failedJob()
{
    QFETCH(const int, exitCode);
    QFETCH(const int, signal);
    FakeMachine machine;
    machine.programs.reply({u"tar"_s}, {.exitCode = exitCode, .signal = signal});
    Watched watched;
    watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType::TarAppend);
    watched.task.addJob(u"/m/var"_s, u"/t/var.tar"_s, JobType::TarAppend);
    watched.task.start();
    QTRY_VERIFY_WITH_TIMEOUT(watched.hasEnded(), patience);
    QCOMPARE(watched.failures.size(), 1);
    QCOMPARE(watched.failures[0][0].toString(), u"/recovery/kestro-recovery-gui.log"_s);
    QVERIFY(watched.task.isFailed());
    watched.task.start();
    const auto jobs = watched.task.findChildren<QProcess*>();
    QCOMPARE(jobs.size(), 2);
    for (const QProcess* process : jobs) {
        QCOMPARE(process->state(), QProcess::NotRunning);
    }
    QCOMPARE(machine.programs.callLines().size(), 1);
    QCOMPARE(watched.taskFinished.size(), 0);
    QVERIFY(machine.log.find(u"is error: true"_s).line > 0);
}

void TaskEngineTest::jobThatCannotBeStarted()
{
    FakeMachine machine;
    Watched watched;
    watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType::TarAppend);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/tmp");
    watched.task.start();
    qputenv("PATH", path);
    QTRY_COMPARE_WITH_TIMEOUT(watched.failures.size(), 1, patience);
    QCOMPARE(watched.task.errorMessage(), u"/recovery/kestro-recovery-gui.log"_s);
}

void TaskEngineTest::errorOutputIsLogged()
{
    FakeMachine machine;
    machine.programs.reply({u"tar"_s}, {.err = "tar: /m/opt: file changed\n"});
    Watched watched;
    watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType::TarAppend);
    watched.task.start();
    QTRY_VERIFY_WITH_TIMEOUT(watched.hasEnded(), patience);
    QCOMPARE(watched.taskFinished.size(), 1);
    QVERIFY(machine.log.messages(QtWarningMsg).contains(uR"("tar: /m/opt: file changed\n")"_s));
}

void TaskEngineTest::emptyList()
{
    const FakeMachine machine;
    Watched watched;
    watched.task.checkJobs();
    QCOMPARE(watched.failures.size(), 1);
    QCOMPARE(watched.task.errorMessage(), u"Failed to initialize the task"_s);
    watched.task.start();
    QCOMPARE(watched.taskFinished.size(), 0);
}

void TaskEngineTest::failedWhileBuilding()
{
    const FakeMachine machine;
    Watched watched;
    watched.task.setError(u"first"_s);
    watched.task.checkJobs();
    QCOMPARE(watched.failures.size(), 1);
    QCOMPARE(watched.task.errorMessage(), u"first"_s);
    QVERIFY(machine.log.find(u"task count: 0"_s).line > 0);
}

// Deliberate: it starts nothing, and the run waits for ever.
void TaskEngineTest::unknownJob()
{
    const FakeMachine machine;
    Watched watched;
    watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType(4));
    watched.task.start();
    QTest::qWait(100);
    QVERIFY(watched.task.isStarted() && !watched.hasEnded());
    QCOMPARE(machine.programs.callLines(), QStringList());
}

void TaskEngineTest::jobOutlivesItsTask()
{
    FakeMachine machine;
    machine.programs.reply({u"tar"_s}, {.snippet = "touch /tmp/begun; sleep 1; echo noise >&2; touch /tmp/written"});
    {
        Watched watched;
        watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType::TarAppend);
        watched.task.start();
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(u"/tmp/begun"_s), patience);
    }
    QVERIFY(!QFile::exists(u"/tmp/written"_s));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(u"/tmp/written"_s), patience);
}

void TaskEngineTest::archiveThatIsNotWritten_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("isFailure");
    QTest::newRow("dying stick") << EIO << true;
    QTest::newRow("full") << ENOSPC << true;
    QTest::newRow("file system that cannot be asked") << EINVAL << false;
}

// tar has long ended well when the last of it is written.
void TaskEngineTest::archiveThatIsNotWritten()
{
    QFETCH(const int, error);
    QFETCH(const bool, isFailure);
    FakeMachine machine;
    machine.programs.reply({u"tar"_s});
    Sandbox::writeFile(u"/t/opt.tar"_s, "archive");
    syncfsError = error;
    Watched watched;
    watched.task.addJob(u"/m/opt"_s, u"/t/opt.tar"_s, JobType::TarAppend);
    watched.task.start();
    QTRY_VERIFY_WITH_TIMEOUT(watched.hasEnded(), patience);
    syncfsError = 0;
    QCOMPARE(watched.task.isFailed(), isFailure);
    QCOMPARE(machine.log.messages(QtWarningMsg).filter(u"not written to the disk"_s).size(), isFailure ? 1 : 0);
}

int main(int argc, char** argv)
{
    return Sandbox::run<TaskEngineTest>(argc, argv);
}

#include "tst_taskengine.moc"
