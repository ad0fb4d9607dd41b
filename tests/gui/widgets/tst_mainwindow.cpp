// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/FakeMachine.h"
#include "gui/tasks/Task.h"
#include "gui/widgets/EndPage.h"
#include "gui/widgets/MainWindow.h"
#include "gui/widgets/WorkingPage.h"
#include "gui/widgets/failuremessage.h"
#include "platform/velk/VApplication.h"
#include "platform/velk/VWaterProgress.h"
#include "sandbox/Sandbox.h"
#include "utils/core/applicationproperties.h"

#include <QDir>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20000; // ms

/// What a person reads on a page, from top to bottom.
QStringList textsOf(const QWidget* page)
{
    QStringList texts;
    const auto labels = page->findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        if (!label->text().isEmpty()) {
            texts << label->text();
        }
    }
    const auto buttons = page->findChildren<QPushButton*>();
    for (const QPushButton* button : buttons) {
        texts << u'[' + button->text() + u']';
    }
    return texts;
}

QJsonObject pendingTask(const QString& type, const QJsonArray& steps = {})
{
    return {{u"type"_s, type}, {u"tasks"_s, steps}};
}

/// The steps of a backup that has something to do.
QJsonArray backupSteps()
{
    return {taskElement(u"create-backup-directory"_s, {u"ROOT"_s, u"TARGET"_s, u"/saved"_s})};
}

} // namespace

/// One window on one machine.
struct Scenario
{
    Scenario()
    {
        Sandbox::writeFile(u"/home/kestro/kestro-recovery-gui.log"_s, "a line\n");
        ApplicationProperties::setLogFile(u"/home/kestro/kestro-recovery-gui.log"_s);
        ApplicationProperties::setAutoRestart(false);
        machine.allowFileCommands();
        QDir().mkpath(u"/media/TARGET/saved"_s);
        machine.programs.reply({u"reboot"_s});
        machine.programs.reply({u"poweroff"_s});
    }

    /// The page in the window, when it is one of that kind.
    template <class Page>
    [[nodiscard]] Page* page() const
    {
        const QLayoutItem* item = window.layout()->itemAt(0);
        return item ? qobject_cast<Page*>(item->widget()) : nullptr;
    }

    /// The page that tells the end is the only one that is left.
    [[nodiscard]] bool hasEnded() const
    {
        return page<EndPage>() && !window.findChild<WorkingPage*>() && window.findChildren<EndPage*>().size() == 1;
    }

    /// The restarts and shutdowns so far.
    [[nodiscard]] QStringList ends() const
    {
        return machine.programs.callLines().filter(QRegularExpression(u" (reboot|poweroff)"_s));
    }

    [[nodiscard]] bool logIsSaved() const { return QFile::exists(u"/media/RECOVERY/kestro-recovery-gui.log"_s); }

    FakeMachine machine;
    MainWindow window;
};

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dispatch_data();
    void dispatch();
    void unknownTask_data();
    void unknownTask();
    void outcome_data();
    void outcome();
    void failureTextFromRightToLeft();
    void failureWhileBuilding();
    void restoreThatNeverStarts();
    void wholeBackup();
    void altF4EndsTheProgram();
    void otherClosesAreRefused();
    void progressNeverFalls();
    void endPages_data();
    void endPages();
    void screenDetection();
};

void MainWindowTest::dispatch_data()
{
    const QString restoring = u"Restoring your system, please wait..."_s;
    const QString backingUp = u"Backing up, please wait..."_s;
    const QString device = u"Do not remove your storage device, power off or unplug your machine"_s;
    const QString machine = u"Do not power off or unplug your machine"_s;
    QTest::addColumn<QString>("task");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QStringList>("jobs");
    const QString image = u"/media/TARGET/saved/system.kim"_s;
    QTest::newRow("ManualBackup") << u"BackupTask"_s << QStringList{backingUp, device}
                                  << QStringList{u"/dev/sda "_s + image};
    QTest::newRow("SystemBackup") << u"BackupTask"_s << QStringList{backingUp, device}
                                  << QStringList{u"/dev/sda3 "_s + image};
    QTest::newRow("ManualRestore") << u"ManualRestoreTask"_s << QStringList{restoring, device} << QStringList();
    QTest::newRow("SystemRestore") << u"SystemRestoreTask"_s << QStringList{restoring, machine} << QStringList();
}

void MainWindowTest::dispatch()
{
    Scenario scenario;
    scenario.machine.allowImages();
    const QJsonArray image{
        taskElement(u"create-backup-image"_s, {u"ROOT"_s, u"TARGET"_s, u"/saved"_s, u"system.kim"_s})};
    scenario.window.setRecovery(pendingTask(QString::fromLatin1(QTest::currentDataTag()), image));
    QTEST(QString::fromLatin1(scenario.window.findChild<Task*>()->metaObject()->className()), "task");
    const auto* page = scenario.page<WorkingPage>();
    QVERIFY(page);
    QTEST(textsOf(page), "texts");
    QCOMPARE(page->findChild<VWaterProgress*>()->value(), 1);
    QCOMPARE(
        scenario.machine.log.find(u"task type= \"%1\""_s.arg(QString::fromLatin1(QTest::currentDataTag()))).function,
        u"void MainWindow::setRecovery(const QJsonObject&)"_s);
    QTRY_VERIFY_WITH_TIMEOUT(scenario.hasEnded(), patience);
    QTEST(scenario.machine.jobs(), "jobs");
}

void MainWindowTest::unknownTask_data()
{
    QTest::addColumn<QJsonObject>("task");
    QTest::newRow("empty") << QJsonObject();
    QTest::newRow("no type") << QJsonObject{{u"tasks"_s, QJsonArray()}};
    QTest::newRow("other case") << pendingTask(u"systembackup"_s, backupSteps());
    QTest::newRow("longer") << pendingTask(u"SystemBackup "_s, backupSteps());
}

void MainWindowTest::unknownTask()
{
    QFETCH(QJsonObject, task);
    Scenario scenario;
    auto* former = new QLabel(u"restore page"_s);
    scenario.window.layout()->addWidget(former);
    scenario.window.setRecovery(task);
    QCoreApplication::processEvents();
    QVERIFY(!scenario.window.findChild<Task*>());
    QCOMPARE(scenario.page<QLabel>(), former);
}

void MainWindowTest::outcome_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("success");
    QTest::addColumn<bool>("autoRestart");
    QTest::addColumn<QStringList>("texts"); // empty: no end page
    QTest::addColumn<QString>("end");
    const QList<std::tuple<const char*, QString>> types{{"ManualBackup", u"Backup"_s}, {"SystemBackup", u"Backup"_s},
        {"ManualRestore", u"Restore"_s}, {"SystemRestore", u"Restore"_s}};
    for (const auto& [type, word] : types) {
        const QString name = QString::fromLatin1(type);
        QTest::addRow("%s succeeds", type)
            << name << true << false << QStringList{word + u" Successful"_s, u"[Reboot Now]"_s} << u"sudo reboot -f"_s;
        QTest::addRow("%s fails", type) << name << false << false
                                        << QStringList{word + u" Failed"_s, word + u" failed, error: <b>why</b>"_s,
                                               u"[Shut Down]"_s}
                                        << u"sudo poweroff"_s;
        for (const bool success : {true, false}) {
            QTest::addRow("%s, auto restart, %s", type, success ? "succeeds" : "fails")
                << name << success << true << QStringList() << u"sudo reboot -f"_s;
        }
    }
}

void MainWindowTest::outcome()
{
    QFETCH(QString, type);
    QFETCH(bool, success);
    QFETCH(bool, autoRestart);
    QFETCH(QStringList, texts);
    QFETCH(QString, end);
    Scenario scenario;
    // A task without steps has failed and said so: from here on only the signal below counts.
    scenario.window.setRecovery(pendingTask(type));
    QTRY_VERIFY_WITH_TIMEOUT(scenario.hasEnded(), patience);
    QFile::remove(u"/media/RECOVERY/kestro-recovery-gui.log"_s);
    ApplicationProperties::setAutoRestart(autoRestart);

    auto* task = scenario.window.findChild<Task*>();
    delete scenario.page<EndPage>();
    if (success) {
        Q_EMIT
        task->finished();
    } else {
        Q_EMIT
        task->failed(u"<b>why</b>"_s);
    }
    QVERIFY(scenario.logIsSaved());
    if (autoRestart) {
        QVERIFY(!scenario.page<EndPage>());
        QCOMPARE(scenario.ends(), QStringList{end});
        return;
    }
    QCOMPARE(textsOf(scenario.page<EndPage>()), texts);
    QCOMPARE(scenario.ends(), QStringList());
    scenario.page<EndPage>()->findChild<QPushButton*>()->click();
    QCOMPARE(scenario.ends(), QStringList{end});
}

// Beside Arabic text a path keeps its slashes: it is set apart from the sentence around it.
void MainWindowTest::failureTextFromRightToLeft()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(failureMessage(true, u"/a/b"_s), u"Backup failed, error: \u2068/a/b\u2069"_s);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QCOMPARE(failureMessage(false, u"/a/b"_s), u"Restore failed, error: /a/b"_s);
}

// A backup fails inside its constructor, before anybody can listen.
void MainWindowTest::failureWhileBuilding()
{
    Scenario scenario;
    scenario.window.setRecovery(pendingTask(u"SystemBackup"_s));
    QVERIFY(scenario.page<WorkingPage>());
    QTRY_VERIFY_WITH_TIMEOUT(scenario.hasEnded(), patience);
    QCOMPARE(textsOf(scenario.page<EndPage>()),
        (QStringList{u"Backup Failed"_s, u"Backup failed, error: Failed to initialize the task"_s, u"[Shut Down]"_s}));
    QVERIFY(scenario.logIsSaved());
    QCOMPARE(scenario.machine.log.messages().filter(u"MainWindow::onFailed(), saveLogToRecovery, error: "_s).size(), 1);
}

// Without its recovery partition a system restore says nothing at all by itself.
void MainWindowTest::restoreThatNeverStarts()
{
    Scenario scenario;
    scenario.machine.refuseMount(u"sda4"_s);
    scenario.window.setRecovery(pendingTask(u"SystemRestore"_s));
    QTRY_VERIFY_WITH_TIMEOUT(scenario.hasEnded(), patience);
    QVERIFY(textsOf(scenario.page<EndPage>()).contains(u"Restore failed, error: Failed to initialize the task"_s));
}

void MainWindowTest::wholeBackup()
{
    Scenario scenario;
    Sandbox::writeFile(u"/media/ROOT/opt/program"_s, "x");
    Sandbox::writeFile(u"/media/ROOT/var/state"_s, "x");
    scenario.window.setRecovery(pendingTask(u"SystemBackup"_s, backupSteps()));
    QTRY_VERIFY_WITH_TIMEOUT(scenario.hasEnded(), patience);
    QCOMPARE(textsOf(scenario.page<EndPage>()), (QStringList{u"Backup Successful"_s, u"[Reboot Now]"_s}));
}

void MainWindowTest::altF4EndsTheProgram()
{
    Scenario scenario;
    scenario.machine.programs.reply({u"tar"_s}, {.delayMs = 60000});
    scenario.window.setRecovery(pendingTask(u"SystemBackup"_s, backupSteps()));
    scenario.window.show();
    QVERIFY(QTest::qWaitForWindowActive(&scenario.window));
    QVERIFY(scenario.page<WorkingPage>()->hasFocus());
    QTimer::singleShot(0, &scenario.window, [&] {
        // To the window, as the window system does: the page must be the one that has the focus.
        QTest::keyClick(scenario.window.windowHandle(), Qt::Key_F4, Qt::AltModifier);
    });
    QTimer::singleShot(patience, &scenario.window, [] { QCoreApplication::exit(7); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void MainWindowTest::otherClosesAreRefused()
{
    Scenario scenario;
    scenario.window.showWorkingPage();
    scenario.window.show();
    QVERIFY(!scenario.window.close());
    QTest::keyClick(scenario.page<WorkingPage>(), Qt::Key_F4, Qt::AltModifier | Qt::ControlModifier);
    QTest::keyClick(scenario.page<WorkingPage>(), Qt::Key_Escape);
    QVERIFY(scenario.window.isVisible());
    QVERIFY(scenario.page<WorkingPage>());
}

void MainWindowTest::progressNeverFalls()
{
    WorkingPage page;
    QList<int> shown;
    for (const int value : {0, 33, 132, 99, -5}) {
        page.setProgress(value);
        shown << page.findChild<VWaterProgress*>()->value();
    }
    QCOMPARE(shown, (QList<int>{1, 33, 100, 100, 100}));
    page.setTitle({});
    page.setTip({});
    QCOMPARE(textsOf(&page).size(), 2);
}

void MainWindowTest::endPages_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("end");
    QTest::newRow("success") << 0 << u":/success.svg"_s << u"sudo reboot -f"_s;
    QTest::newRow("warning") << 1 << u":/warning.svg"_s << u"sudo reboot -f"_s;
    QTest::newRow("failure") << 2 << u":/failed.svg"_s << u"sudo poweroff"_s;
    QTest::newRow("unknown") << 7 << u":/warning.svg"_s << u"sudo reboot -f"_s;
}

void MainWindowTest::endPages()
{
    QFETCH(int, state);
    QFETCH(QString, icon);
    Scenario scenario;
    EndPage page(state);
    bool isShown = false;
    for (const QLabel* label : page.findChildren<QLabel*>()) {
        isShown = isShown || label->pixmap().toImage() == QIcon(icon).pixmap(QSize(128, 128), 1.0).toImage();
    }
    QVERIFY(isShown);
    auto* button = page.findChild<QPushButton*>();
    QCOMPARE(button->size(), QSize(220, 40));
    page.show();
    // The answer to the question before may still be held down.
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
    QCoreApplication::sendEvent(button, &repeated);
    QCOMPARE(scenario.ends(), QStringList());
    QTest::keyClick(button, Qt::Key_Return);
    QTEST(scenario.ends().join(u' '), "end");
}

void MainWindowTest::screenDetection()
{
    Scenario scenario;
    Sandbox::writeFile(u"/lib/kestro-recovery-gui/scripts/autoAdapterScreen.sh"_s, "echo \"$#\" >> /tmp/adapted\n");
    scenario.window.move(5, 7);
    scenario.window.onDetectScreen();
    QCOMPARE(Sandbox::readFile(u"/tmp/adapted"_s), QByteArray("0\n"));
    const QSize room = QGuiApplication::primaryScreen()->size() - scenario.window.size();
    QCOMPARE(scenario.window.pos(), QPoint(room.width() / 2, room.height() / 2));
    scenario.window.onDetectScreen();
    QCOMPARE(Sandbox::readFile(u"/tmp/adapted"_s), QByteArray("0\n"));
    // The only screen gets another mode a moment after the script has asked for it.
    Q_EMIT
    QGuiApplication::primaryScreen()->geometryChanged(QRect(1920, 30, 1024, 768));
    QCOMPARE(scenario.window.pos(), QPoint(1920 + 112, 30 + 84));
    // Deliberate: at start-up a screen to the right of another one counts as one at (0, 0).
    scenario.window.centreAtStartUp(QRect(1920, 30, 1280, 1024));
    QCOMPARE(scenario.window.pos(), QPoint(240, 212));
}

int main(int argc, char** argv)
{
    Sandbox::enter(argv);
    const VApplication application(argc, argv);
    MainWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_mainwindow.moc"
