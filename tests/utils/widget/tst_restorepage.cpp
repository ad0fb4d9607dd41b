// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VApplication.h"
#include "platform/velk/VFileChooserEdit.h"
#include "support/DialogAnswer.h"
#include "support/FakePrograms.h"
#include "support/LogCapture.h"
#include "utils/widget/BaseTableView.h"
#include "utils/widget/ShownRestorePage.h"
#include "utils/widget/TreeViewModel.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString initialBroken =
    u"The initial backup file is broken, so your system cannot be reset to factory settings."_s;
const QString backupInvalid = u"Backup file is invalid"_s;
const QString encrypted =
    u"The system contains encrypted partition, please decrypt it before using the backup and restore function."_s;

void addRestorePoint(TreeViewModel* model, const QString& directory, const QString& uuid)
{
    auto* item = new QStandardItem(u"shown, not read"_s);
    item->setData(directory, TreeViewModel::DirectoryRole);
    item->setData(uuid, TreeViewModel::BackupUuidRole);
    model->appendRow({item, new QStandardItem(u"2026/01/01"_s)});
    Q_EMIT
    model->itemsIsReady();
}

} // namespace

class RestorePageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void systemRestore_data();
    void systemRestore();
    void backupFiles();
    void restorePoint_data();
    void restorePoint();
    void errors();
    void rowsOffered_data();
    void rowsOffered();
    void hiddenRowsCannotBeChosen();
    void encryptedSystemStaysUnusable();
    void rebuiltRowIsCheckedAgain();
    void ownerShowsAndHides();
    void listIsRequestedOnce();
    void keyboardReachesEverything();
    void smallPageShowsItsButton();
    void cancelling();
};

void RestorePageTest::systemRestore_data()
{
    QTest::addColumn<bool>("keep");
    QTest::addColumn<bool>("owner");
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("requests");
    QTest::newRow("keep, confirmed") << true << false << 1 << QStringList{u"keep"_s};
    QTest::newRow("keep, cancelled") << true << false << 0 << QStringList{};
    QTest::newRow("reset, confirmed") << false << true << 1 << QStringList{u"format"_s};
    QTest::newRow("reset, left with Escape") << false << false << -1 << QStringList{};
}

void RestorePageTest::systemRestore()
{
    QFETCH(bool, keep);
    QFETCH(bool, owner);
    QFETCH(int, answer);
    QFETCH(QStringList, requests);
    ShownRestorePage shown;
    shown.page.setOwnerFlag(owner);
    QVERIFY(shown.keepFiles()->isChecked());
    shown.keepFiles()->setChecked(keep);
    DialogAnswer dialog(answer);
    shown.restoreButton()->click();

    QCOMPARE(dialog.dialogs, 1);
    QVERIFY(dialog.asksAsWarning);
    QCOMPARE(dialog.title, keep ? u"Keep Personal Files"_s : u"Reset to Factory Settings"_s);
    QCOMPARE(dialog.message,
        keep ? u"It will reset data on your system disk but keep your personal data. You need to create an account "
               "with the same username as the current user so that you can access your personal data later. Please "
               "confirm before proceeding."_s
             : u"It will permanently clear data of all users on this device, please confirm before proceeding"_s);
    QCOMPARE(dialog.confirmText, u"Confirm and Reset"_s);
    QCOMPARE(dialog.bypassesWindowManager, owner);
    QCOMPARE(shown.requests, requests);
    QCOMPARE(shown.waitingButton()->isVisible(), !requests.isEmpty());
    QCOMPARE(shown.restoreButton()->isVisible(), requests.isEmpty());
    QVERIFY(!shown.waitingDuringRequest);
}

void RestorePageTest::backupFiles()
{
    ShownRestorePage shown;
    shown.choose(1);
    shown.restoreButton()->click();
    QCOMPARE(shown.requests, QStringList{});
    QCOMPARE(shown.errorText(), backupInvalid);
    QVERIFY(shown.restoreButton()->isVisible() && !shown.waitingButton()->isVisible());

    shown.page.findChild<VFileChooserEdit*>()->setText(u"/media/kestro/b 1"_s);
    shown.restoreButton()->click();
    QCOMPARE(shown.requests, QStringList{u"/media/kestro/b 1"_s});
    QCOMPARE(shown.errorText(), QString());
    QVERIFY(shown.waitingButton()->isVisible() && !shown.restoreButton()->isVisible());
}

void RestorePageTest::restorePoint_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("uuid");
    QTest::addColumn<bool>("owner");
    QTest::addColumn<QStringList>("requests");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QStringList>("warnings");
    const QStringList warning{u"CoverRestore backupUUID isEmpty"_s};
    QTest::newRow("for the owner") << u"/b"_s << u"11-22"_s << true << QStringList{u"/b 11-22"_s} << QString()
                                   << QStringList{};
    QTest::newRow("without owner") << u"/b"_s << u"11-22"_s << false << QStringList{u"/b"_s} << QString()
                                   << QStringList{};
    QTest::newRow("no path") << QString() << u"11-22"_s << true << QStringList{} << backupInvalid << QStringList{};
    QTest::newRow("no UUID and no path") << QString() << QString() << true << QStringList{} << QString() << warning;
}

void RestorePageTest::restorePoint()
{
    QFETCH(QString, directory);
    QFETCH(QString, uuid);
    QFETCH(bool, owner);
    QFETCH(QStringList, requests);
    QFETCH(QString, error);
    QFETCH(QStringList, warnings);
    ShownRestorePage shown;
    shown.page.setOwnerFlag(owner);
    QVERIFY(!shown.row(u"Restore from a restore point"_s)->isEnabled());
    addRestorePoint(shown.model, directory, uuid);
    shown.choose(2);
    auto* table = shown.page.findChild<BaseTableView*>();
    // Whichever column was clicked.
    table->setCurrentIndex(shown.model->index(0, TreeViewModel::TimeColumn));
    const LogCapture log;
    shown.restoreButton()->click();
    QCOMPARE(shown.requests, requests);
    QCOMPARE(shown.errorText(), error);
    QCOMPARE(log.messages(QtWarningMsg), warnings);
    QCOMPARE(shown.waitingButton()->isVisible(), !requests.isEmpty());
}

void RestorePageTest::errors()
{
    const QMap<int, QString> texts{{3, u"Invalid path"_s}, {5, initialBroken}, {8, encrypted}};
    for (int code = -1; code <= 16; ++code) {
        ShownRestorePage shown;
        shown.page.onManualRestoreErrorChanged(Utils::InvalidPath);
        shown.page.onManualRestoreErrorChanged(static_cast<Utils::ErrorType>(code));
        QCOMPARE(shown.errorText(), texts.value(code));
    }
    ShownRestorePage shown;
    shown.choose(1);
    shown.page.onManualRestoreErrorChanged(Utils::InvalidBackup);
    QCOMPARE(shown.errorText(), backupInvalid);
}

void RestorePageTest::rowsOffered_data()
{
    QTest::addColumn<bool>("restricted");
    QTest::addColumn<bool>("haveInitBackup");
    QTest::addColumn<bool>("button");
    QTest::newRow("everything") << false << true << true;
    QTest::newRow("no initial backup") << false << false << true;
    QTest::newRow("restricted") << true << true << true;
    QTest::newRow("restricted, no initial backup") << true << false << false;
}

void RestorePageTest::rowsOffered()
{
    QFETCH(bool, restricted);
    QFETCH(bool, haveInitBackup);
    QFETCH(bool, button);
    ShownRestorePage shown(haveInitBackup);
    if (restricted) {
        shown.page.restrictOffer();
        shown.page.setHaveInitBackup(haveInitBackup);
    }
    QCoreApplication::processEvents();
    auto* first = shown.row(u"Reset to factory settings"_s);
    QVERIFY(first->isVisible());
    QCOMPARE(first->isEnabled(), haveInitBackup);
    QCOMPARE(first->isChecked(), haveInitBackup || restricted);
    QCOMPARE(shown.keepFiles()->isEnabled(), haveInitBackup);
    QCOMPARE(shown.row(u"Restore from backup files"_s)->isVisible(), !restricted);
    QCOMPARE(shown.row(u"Restore from a restore point"_s)->isVisible(), !restricted);
    QCOMPARE(shown.restoreButton()->isVisible(), button);

    const QString tip =
        u"The initial backup file does not exist, so your system cannot be reset to factory settings."_s;
    const auto labels = shown.page.findChildren<QLabel*>();
    const bool tipShown = std::any_of(labels.cbegin(), labels.cend(),
        [&tip](const QLabel* label) { return label->text() == tip && label->isVisible(); });
    QCOMPARE(tipShown, !haveInitBackup);
}

// Arrow keys go from choice to choice, also from one that is shown to one that is not.
void RestorePageTest::hiddenRowsCannotBeChosen()
{
    ShownRestorePage shown;
    addRestorePoint(shown.model, u"/b"_s, u"11-22"_s);
    shown.page.restrictOffer();
    shown.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    auto* first = shown.row(u"Reset to factory settings"_s);
    first->setFocus();
    for (const auto key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Right}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        QVERIFY(first->isChecked());
    }
}

void RestorePageTest::encryptedSystemStaysUnusable()
{
    ShownRestorePage shown;
    shown.page.onManualRestoreErrorChanged(Utils::EncryptedSystem);
    shown.page.onManualRestoreErrorChanged(Utils::NoError);
    shown.page.setHaveInitBackup(true);
    QVERIFY(!shown.restoreButton()->isEnabled());
    QVERIFY(!shown.row(u"Reset to factory settings"_s)->isEnabled());
    QVERIFY(!shown.keepFiles()->isEnabled());
}

void RestorePageTest::rebuiltRowIsCheckedAgain()
{
    ShownRestorePage shown;
    shown.keepFiles()->setChecked(false);
    shown.choose(1);
    shown.page.restrictOffer();
    shown.page.setHaveInitBackup(true);
    QVERIFY(shown.row(u"Reset to factory settings"_s)->isChecked());
    QVERIFY(shown.keepFiles()->isChecked());
    DialogAnswer dialog(1);
    shown.restoreButton()->click();
    QCOMPARE(shown.requests, QStringList{u"keep"_s});
}

void RestorePageTest::ownerShowsAndHides()
{
    ShownRestorePage shown;
    shown.page.onRestoreButtonVisibleChanged(false);
    shown.page.setHaveInitBackup(true);
    QVERIFY(!shown.restoreButton()->isVisible());
    shown.page.onRestoreButtonVisibleChanged(true);
    QVERIFY(shown.restoreButton()->isVisible());
    shown.page.onSystemRestoreItemVisibelChanged(false);
    QVERIFY(!shown.row(u"Reset to factory settings"_s)->isVisible());
    QVERIFY(shown.row(u"Restore from backup files"_s)->isChecked());
    shown.page.onSystemRestoreItemVisibelChanged(true);
    QVERIFY(shown.row(u"Reset to factory settings"_s)->isVisible());
    shown.page.restrictOffer();
    shown.page.onSystemRestoreItemVisibelChanged(false);
    QVERIFY(!shown.restoreButton()->isVisible());
}

void RestorePageTest::listIsRequestedOnce()
{
    ShownRestorePage shown;
    shown.page.hide();
    shown.page.show();
    QCOMPARE(shown.listRequests, 1);
    QVERIFY(shown.model == shown.page.findChild<BaseTableView*>()->model());
}

void RestorePageTest::keyboardReachesEverything()
{
    ShownRestorePage shown;
    addRestorePoint(shown.model, u"/b"_s, u"11-22"_s);
    shown.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&shown.window));
    shown.row(u"Reset to factory settings"_s)->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_K, Qt::AltModifier);
    QTRY_VERIFY(!shown.keepFiles()->isChecked()); // it never takes the focus itself
    QCOMPARE(shown.keepFiles()->focusPolicy(), Qt::NoFocus);

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QVERIFY(shown.row(u"Restore from backup files"_s)->isChecked());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), shown.page.findChild<VFileChooserEdit*>()->lineEdit());
    for (int i = 0; i < 4 && QApplication::focusWidget() != shown.restoreButton(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget(), shown.restoreButton());
    shown.page.findChild<VFileChooserEdit*>()->setText(u"/b"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(shown.requests, QStringList{u"/b"_s});
    QCOMPARE(QApplication::focusWidget(), &shown.page);
}

void RestorePageTest::smallPageShowsItsButton()
{
    ShownRestorePage shown(false);
    shown.page.resize(400, 300);
    QCoreApplication::processEvents();
    const QRect button(shown.restoreButton()->mapTo(&shown.page, QPoint()), shown.restoreButton()->size());
    QVERIFY(shown.page.rect().contains(button));
}

void RestorePageTest::cancelling()
{
    FakePrograms programs;
    programs.reply({u"systemctl"_s, u"reboot"_s});
    programs.reply({u"pkexec"_s}, FakePrograms::Reply{.err = "no", .exitCode = 7});
    ShownRestorePage shown;
    const LogCapture log;
    for (const int answer : {1, 0}) {
        const DialogAnswer dialog(answer);
        shown.page.onCancelRestore();
        QVERIFY(dialog.asksAsWarning);
        QCOMPARE(dialog.message, u"System restore is ready. Do you want to reboot and restore your system now?"_s);
        QCOMPARE(dialog.confirmText, u"Reboot and Restore"_s);
    }
    QCOMPARE(programs.callLines(),
        (QStringList{u"systemctl reboot"_s, u"pkexec /bin/kestro-recovery-tool -a cancel_restore"_s}));
    QCOMPARE(log.messages(QtDebugMsg),
        (QStringList{u", RestorePage::onCancelRestore reboot now"_s,
            u"doCancelRestore, exitCode: 7 , args:  QList(\"/bin/kestro-recovery-tool\", \"-a\", "
            "\"cancel_restore\") , error:  \"no\""_s}));
    QCOMPARE(shown.page.doCancelRestore(), 7);
}

int main(int argc, char** argv)
{
    VApplication app(argc, argv);
    RestorePageTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_restorepage.moc"
