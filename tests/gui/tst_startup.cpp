// SPDX-License-Identifier: GPL-3.0-or-later
// The real program, as a child process on a machine of the sandbox.
#include "gui/tasks/FakeMachine.h"
#include "sandbox/Sandbox.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60000; // ms
const QString logPath = u"/home/kestro/kestro-recovery-gui.log"_s;
const QString markerPath = u"/home/kestro/kestro-recovery-gui.startedFlag"_s;
const QString taskPath = u"/media/RECOVERY/backup/recovery.json"_s;

/// The program while it runs; it never ends by itself.
class Program
{
public:
    Program()
    {
        QDir().mkpath(u"/home/kestro"_s);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.insert(u"LC_ALL"_s, u"ko_KR.UTF-8"_s);
        m_process.setProcessEnvironment(environment);
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.start(QStringLiteral(KESTRO_PROGRAM), {});
    }

    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// The console's lines so far.
    [[nodiscard]] QString console()
    {
        m_console += m_process.readAllStandardError();
        return QString::fromUtf8(m_console);
    }

    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
    [[nodiscard]] QString workingDirectory() const
    {
        return QFile::symLinkTarget(u"/proc/%1/cwd"_s.arg(m_process.processId()));
    }

private:
    QProcess m_process;
    QByteArray m_console;
};

void writeTask(const QJsonObject& task)
{
    Sandbox::writeFile(taskPath, QJsonDocument(task).toJson());
}

QJsonObject backup(const QString& locale, bool autoReboot)
{
    return {{u"type"_s, u"SystemBackup"_s}, {u"locale"_s, locale}, {u"auto_reboot"_s, autoReboot},
        {u"tasks"_s, QJsonArray{taskElement(u"create-backup-directory"_s, {u"ROOT"_s, u"TARGET"_s, u"/saved"_s})}}};
}

QStringList messagesOf(const QByteArray& log)
{
    QStringList messages;
    const QStringList lines = QString::fromUtf8(log).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        messages << line.section(u"] "_s, 3);
    }
    return messages;
}

} // namespace

class StartupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pendingBackup();
    void nothingPending();
    void unwritableHome();
};

// From the task file to the restart, with nothing but the files and commands to look at.
void StartupTest::pendingBackup()
{
    FakeMachine machine;
    machine.allowFileCommands();
    machine.programs.listNoDevices();
    machine.programs.reply({u"reboot"_s});
    machine.programs.reply({u"/lib/kestro-recovery-gui/scripts/create-data-info"_s},
        {.snippet = "printf 'UUID=%s\\nDirectory=%s\\n' \"$1\" \"$2\" > \"$3\""});
    Sandbox::writeFile(u"/media/ROOT/opt/program"_s, "x");
    Sandbox::writeFile(u"/media/ROOT/var/state"_s, "x");
    QVERIFY(QDir().mkpath(u"/media/TARGET/saved"_s));
    Sandbox::writeFile(markerPath, "abcdef");
    writeTask(backup(u"de"_s, true));

    Program program;
    QTRY_VERIFY_WITH_TIMEOUT(machine.programs.callLines().contains(u"sudo reboot -f"_s), patience);
    QVERIFY(program.isRunning());
    QVERIFY(!QFile::exists(taskPath));
    QCOMPARE(Sandbox::readFile(markerPath), QByteArray("okcdef"));
    QVERIFY(QFile::exists(u"/media/TARGET/saved/opt.tar"_s));
    QVERIFY(QFile::exists(u"/media/TARGET/saved/var.tar"_s));
    QVERIFY(program.workingDirectory() != QDir::currentPath());
    QCOMPARE(QFile::permissions(program.workingDirectory()) & QFile::Permissions(0x77), QFile::Permissions());

    const QByteArray log = Sandbox::readFile(logPath);
    const QByteArray saved = Sandbox::readFile(u"/media/RECOVERY/kestro-recovery-gui.log"_s);
    QVERIFY(!saved.isEmpty() && log.startsWith(saved));
    QVERIFY(messagesOf(saved).contains(u"MainWindow::onFinished() task finished! saveLogToRecovery"_s));
    // What is logged after the file was cleaned in place is in the file, too.
    QVERIFY(messagesOf(log).contains(u"saved log to recovery gui"_s));
    QVERIFY(messagesOf(log).contains(u"gui locale:  \"de\""_s));
    const QRegularExpression wholeLine(
        uR"(\[Debug  \] \[\./src/gui/tasks/Task\.cpp=>void Task::checkJobs\(\): \d+\] task count: 2)"_s);
    QTRY_VERIFY_WITH_TIMEOUT(program.console().contains(wholeLine), patience);
}

void StartupTest::nothingPending()
{
    FakeMachine machine;
    machine.programs.listNoDevices();
    Sandbox::writeFile(u"/media/ROOT/etc/default/locale"_s, "LANGUAGE=\"en_US\"\n");
    Program program;
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(markerPath), patience);
    // The marker comes last, but what stands on the console takes its own time to get here.
    const QString restriction = u"MainWindow::initUI isLvm:  false , isEncrypted:  false , isLuksCrypt:  false\n"_s;
    QTRY_VERIFY_WITH_TIMEOUT(program.console().contains(restriction), patience);
    QVERIFY(program.console().contains(u"gui locale:  \"\\\"en_US\\\"\""_s));
    QVERIFY(!program.console().contains(u"task type="_s));
    QVERIFY(program.isRunning());
}

// Without a place for its log and its marker the program runs all the same, in the running system's language.
void StartupTest::unwritableHome()
{
    FakeMachine machine;
    machine.programs.listNoDevices();
    QFile::remove(u"/media/ROOT/etc/default/locale"_s);
    QVERIFY(QDir().mkpath(logPath));
    QVERIFY(QDir().mkpath(markerPath));
    Program program;
    QTRY_VERIFY_WITH_TIMEOUT(
        program.console().contains(u"failed to open startedFlagPath:  \"%1\"\n"_s.arg(markerPath)), patience);
    QVERIFY(program.console().contains(u"gui locale:  \"ko_KR\""_s));
    QVERIFY(program.isRunning());
}

int main(int argc, char** argv)
{
    return Sandbox::run<StartupTest>(argc, argv);
}

#include "tst_startup.moc"
