// SPDX-License-Identifier: GPL-3.0-or-later
// The window while nothing is pending: the restore page, its list, its requests, and the way out.
#include "gui/tasks/FakeMachine.h"
#include "gui/tasks/Task.h"
#include "gui/widgets/EndPage.h"
#include "gui/widgets/MainWindow.h"
#include "gui/widgets/WorkingPage.h"
#include "gui/widgets/backuplist.h"
#include "platform/velk/VApplication.h"
#include "platform/velk/VDialog.h"
#include "platform/velk/VIconButton.h"
#include "sandbox/Sandbox.h"
#include "support/buttons.h"
#include "support/files.h"
#include "utils/core/applicationproperties.h"
#include "utils/FsTab.h"
#include "utils/mountedpartition.h"
#include "utils/widget/TreeViewModel.h"
#include "utils/widget/restorepage.h"

#include <QDir>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20000; // ms

/// A window that shows the restore page.
struct LiveWindow
{
    /// @param disks what lsblk prints
    explicit LiveWindow(const QString& disks = {})
    {
        ApplicationProperties::setAutoRestart(false);
        ApplicationProperties::setLogFile(u"/home/kestro/kestro-recovery-gui.log"_s);
        machine.allowFileCommands();
        machine.programs.listNoDevices();
        if (!disks.isEmpty()) {
            machine.programs.reply({u"lsblk"_s, u"--bytes"_s, u"--pairs"_s}, disks.toUtf8());
        }
        machine.programs.reply({u"reboot"_s});
    }

    void open()
    {
        window.initUI();
        window.show();
    }

    [[nodiscard]] RestorePage* page() const { return window.findChild<RestorePage*>(); }

    /// How many ways to restore are offered.
    [[nodiscard]] int offers() const
    {
        int count = 0;
        const auto rows = page()->findChildren<QRadioButton*>();
        for (const QRadioButton* row : rows) {
            count += row->isVisible() ? 1 : 0;
        }
        return count;
    }

    FakeMachine machine;
    MainWindow window;
};

/// An fstab that mounts the recordings' boot partition and the file system with that digit throughout its UUID.
QByteArray fstabWith(char digit)
{
    const auto line = [](char number) {
        return QByteArray("UUID=0000000N-0000-4000-8000-00000000000N /N ext4 rw 0 1\n").replace('N', number);
    };
    return line('2') + line(digit);
}

SavedBackup saved(const QString& time, const QString& name, const QStringList& files)
{
    const QString directory = u"/media/TARGET/"_s + name;
    QDir().mkpath(directory);
    for (const QString& file : files) {
        Sandbox::writeFile(directory + u'/' + file, "x");
    }
    return {time, directory};
}

} // namespace

class LiveWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void restriction_data();
    void restriction();
    void systemRestore();
    void manualRestore();
    void wayOut_data();
    void wayOut();
    void listOfBackups();
    void listIsAskedFor();
    void partitionOfDirectory_data();
    void partitionOfDirectory();
};

void LiveWindowTest::restriction_data()
{
    QTest::addColumn<QString>("mapping");
    QTest::addColumn<bool>("device");
    QTest::addColumn<QString>("disks"); // a recorded answer of lsblk; empty: no devices
    QTest::addColumn<QByteArray>("fstab");
    QTest::addColumn<QString>("answers");
    QTest::addColumn<int>("offers");
    const auto plain = [](const char* name, const QString& mapping, bool device, int offers) {
        QTest::newRow(name) << mapping << device << QString() << QByteArray()
                            << u"isLvm:  false , isEncrypted:  false"_s << offers;
    };
    const auto mapped = [](const char* name, const QString& disks, char root, const QString& answers, int offers) {
        QTest::newRow(name) << QString() << false << disks << fstabWith(root) << answers << offers;
    };
    plain("plain", {}, false, 3);
    plain("device edition", {}, true, 1);
    plain("encrypted root", u"luks_crypt0"_s, false, 1);
    plain("another mapping", u"luks_crypt01"_s, false, 3);
    plain("other case", u"LUKS_crypt0"_s, false, 3);
    mapped("LVM", u"composed-lvm-two-pvs"_s, '5', u"isLvm:  true , isEncrypted:  false"_s, 1);
    mapped("LVM in a container", u"composed-luks-lvm"_s, '5', u"isLvm:  true , isEncrypted:  true"_s, 1);
    // Encryption alone is only told.
    mapped("container without LVM", u"composed-luks-fs"_s, '4', u"isLvm:  false , isEncrypted:  true"_s, 3);
}

void LiveWindowTest::restriction()
{
    QFETCH(QString, mapping);
    QFETCH(bool, device);
    QFETCH(QString, disks);
    QFETCH(QByteArray, fstab);
    QFETCH(QString, answers);
    LiveWindow live(disks.isEmpty() ? QString() : recording(u"lsblk/%1.txt"_s.arg(disks)));
    if (!mapping.isEmpty()) {
        Sandbox::writeFile(u"/dev/mapper/"_s + mapping, {});
    }
    live.window.setFstabEntries(FSTab::parseFSTab(fstab));
    ApplicationProperties::setDeviceOS(device);
    ApplicationProperties::setHaveInitBackup(true);
    live.open();
    QTEST(live.offers(), "offers");
    QVERIFY(live.machine.log.find(u"is device os: "_s + (device ? u"true"_s : u"false"_s)).line > 0);
    QCOMPARE(live.machine.log.messages(QtInfoMsg).filter(u"MainWindow::initUI isLvm: "_s),
        QStringList{u"MainWindow::initUI %1 , isLuksCrypt:  "_s.arg(answers)
            + (mapping == "luks_crypt0"_L1 ? u"true"_s : u"false"_s)});
    ApplicationProperties::setDeviceOS(false);
}

void LiveWindowTest::systemRestore()
{
    LiveWindow live;
    live.open();
    Q_EMIT
    live.page()->requestSystemRestore(true);
    auto* working = qobject_cast<WorkingPage*>(live.window.layout()->itemAt(0)->widget());
    QVERIFY(working);
    QCOMPARE(working->findChildren<QLabel*>().last()->text(), u"Do not power off or unplug your machine"_s);
    QVERIFY(live.window.findChild<Task*>()->inherits("SystemRestoreTask"));
    QTRY_VERIFY_WITH_TIMEOUT(live.window.findChild<EndPage*>(), patience);
    QVERIFY(!live.page());
}

void LiveWindowTest::manualRestore()
{
    LiveWindow live;
    live.open();
    Q_EMIT
    live.page()->requestManualRestore(u"/media/TARGET/none"_s);
    QVERIFY(live.window.findChild<WorkingPage*>());
    QVERIFY(live.window.findChild<Task*>()->inherits("ManualRestoreTask"));
    QTRY_VERIFY_WITH_TIMEOUT(live.window.findChild<EndPage*>(), patience);
    QCOMPARE(live.window.findChild<EndPage*>()->findChildren<QLabel*>().size(), 3);
}

void LiveWindowTest::wayOut_data()
{
    QTest::addColumn<QString>("button"); // empty: by keys alone
    QTest::addColumn<QStringList>("commands");
    QTest::newRow("cancel") << u"Cancel"_s << QStringList();
    QTest::newRow("escape") << QString() << QStringList();
    QTest::newRow("restart") << u"Restart"_s << QStringList{u"sudo reboot -f"_s};
}

void LiveWindowTest::wayOut()
{
    QFETCH(QString, button);
    LiveWindow live;
    live.open();
    QVERIFY(QTest::qWaitForWindowActive(&live.window)); // for the shortcut
    live.machine.programs.forgetCalls();
    bool answered = false;
    QTimer look;
    connect(&look, &QTimer::timeout, &live.window, [&] {
        auto* dialog = live.window.findChild<VDialog*>();
        if (!dialog || !dialog->isVisible()) {
            return; // the key presses the button for a moment first
        }
        look.stop();
        QCOMPARE(dialog->message(), u"Are you sure you want to exit and reboot your computer?"_s);
        QVERIFY(dialog->windowFlags().testFlag(Qt::BypassWindowManagerHint));
        if (button.isEmpty()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
        } else {
            buttonIn(*dialog, button)->click();
        }
        answered = !dialog->isVisible();
    });
    look.start(0);
    if (button.isEmpty()) {
        QTest::keyClick(&live.window, Qt::Key_F4, Qt::AltModifier);
    } else {
        live.window.findChild<VIconButton*>()->click();
    }
    QTRY_VERIFY_WITH_TIMEOUT(answered, patience);
    QTEST(live.machine.programs.callLines(), "commands");
    QVERIFY(live.window.isVisible());
}

void LiveWindowTest::listOfBackups()
{
    FakeMachine machine;
    ApplicationProperties::setSavePathJson({
        saved(u"1700000000"_s, u"whole"_s, {u"system.kim"_s, u"opt.tar"_s}),
        saved(u"4294967296"_s, u"beyond 32 bits"_s, {u"a.KIM"_s, u"opt.tar"_s, u"var.tar"_s}),
        saved(u"1700000000"_s, u"no archive"_s, {u"system.kim"_s}),
        saved(u"1700000000"_s, u"no image"_s, {u"opt.tar"_s}),
        {u"1700000000"_s, QString()},
    });
    FakeUDisks::Device target = FakeMachine::device(u"sdb1"_s);
    target.mountPoints = {"/media/TARGET"};
    machine.udisks.addDevice(target);
    TreeViewModel model;
    const QSignalSpy ready(&model, &TreeViewModel::itemsIsReady);
    for (int time = 1; time <= 2; ++time) {
        fillBackupList(&model);
        QCOMPARE(ready.size(), time);
        QCOMPARE(model.rowCount(), 2);
    }
    QCOMPARE(model.item(0, 0)->text(), u"/media/TARGET/whole"_s);
    QCOMPARE(model.item(0, 1)->text(), QDateTime::fromSecsSinceEpoch(1700000000).toString(u"yyyy/MM/dd"_s));
    QCOMPARE(model.item(0, 0)->data(TreeViewModel::DirectoryRole).toString(), u"/media/TARGET/whole"_s);
    QCOMPARE(model.item(0, 0)->data(TreeViewModel::BackupUuidRole).toString(), u"TARGET"_s);
    QCOMPARE(model.item(1, 1)->text(), u"1970/01/01"_s);

    ApplicationProperties::setSavePathJson({});
    fillBackupList(&model);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(ready.size(), 3);
}

void LiveWindowTest::listIsAskedFor()
{
    LiveWindow live;
    ApplicationProperties::setSavePathJson({saved(u"1700000000"_s, u"whole"_s, {u"system.kim"_s, u"opt.tar"_s})});
    live.open();
    QTRY_COMPARE(live.page()->findChild<TreeViewModel*>()->rowCount(), 1);
}

void LiveWindowTest::partitionOfDirectory_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("uuid");
    QTest::newRow("root") << u"/home/x"_s << u"ROOT"_s;
    QTest::newRow("deeper") << u"/media/a/b"_s << u"A"_s;
    QTest::newRow("deepest") << u"/media/a/inner/b"_s << u"INNER"_s;
    QTest::newRow("mount point itself") << u"/media/a"_s << u"A"_s;
    QTest::newRow("another name that begins alike") << u"/media/ab/c"_s << u"ROOT"_s;
}

void LiveWindowTest::partitionOfDirectory()
{
    QFETCH(QString, directory);
    const QList<MountedPartition> partitions{
        {u"/media/a"_s, u"A"_s}, {u"/"_s, u"ROOT"_s}, {u"/media/a/inner"_s, u"INNER"_s}};
    QTEST(partitionUuidOf(directory, partitions), "uuid");
    QCOMPARE(partitionUuidOf(directory, {}), QString());
}

int main(int argc, char** argv)
{
    Sandbox::enter(argv);
    const VApplication application(argc, argv);
    LiveWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_livewindow.moc"
