// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/shellscenes.h"

#include "gui/widgets/EndPage.h"
#include "gui/widgets/MainWindow.h"
#include "gui/widgets/WorkingPage.h"
#include "gui/widgets/failuremessage.h"
#include "platform/velk/VDialog.h"
#include "platform/velk/VWaterProgress.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

// No picture waits until the water has risen.
QWidget* working(int percent, const QString& title, const QString& tip)
{
    auto* page = new WorkingPage;
    page->setFixedSize(800, 600);
    page->setTitle(title);
    page->setTip(tip);
    page->findChild<VWaterProgress*>()->stop();
    page->setProgress(percent);
    return page;
}

QWidget* end(int state, const QString& title, const QString& message, const QString& button)
{
    auto* page = new EndPage(state);
    page->setFixedSize(800, 600);
    page->setTitle(title);
    page->setMessage(message);
    page->setButtonText(button);
    return page;
}

/// The end page of a restore that was refused or failed.
Scene restoreFailure(const QString& name, const char* context, const char* error)
{
    return {name, [context, error] {
                return end(EndPage::Failure, MainWindow::tr("Restore Failed"),
                    failureMessage(false, QCoreApplication::translate(context, error)), MainWindow::tr("Shut Down"));
            }};
}

QWidget* exitQuestion()
{
    auto* question = new VDialog({}, MainWindow::tr("Are you sure you want to exit and reboot your computer?"));
    question->setIcon(QIcon(u":/warning.svg"_s));
    question->addButton(QCoreApplication::translate("button", "Cancel"));
    question->addButton(MainWindow::tr("Restart"), true, VDialog::ButtonWarning);
    question->moveToCenter();
    return question;
}

} // namespace

QList<Scene> shellScenes()
{
    return {
        {u"working-restore"_s, [] { return working(1, {}, {}); }},
        {u"working-backup"_s, [] { return working(45, MainWindow::tr("Backing up, please wait..."), {}); }},
        {u"working-system-restore"_s,
            [] { return working(99, {}, MainWindow::tr("Do not power off or unplug your machine")); }},
        {u"end-backup-success"_s,
            [] {
                return end(EndPage::Success, MainWindow::tr("Backup Successful"), {}, MainWindow::tr("Reboot Now"));
            }},
        {u"end-restore-success"_s,
            [] {
                return end(EndPage::Success, MainWindow::tr("Restore Successful"), {}, MainWindow::tr("Reboot Now"));
            }},
        {u"end-backup-failure"_s,
            [] {
                return end(EndPage::Failure, MainWindow::tr("Backup Failed"),
                    failureMessage(true, u"/recovery/kestro-recovery-gui.log"_s), MainWindow::tr("Shut Down"));
            }},
        restoreFailure(u"end-restore-version"_s, "ManualRestoreTask",
            "Your system version does not match the backup file, please update the system and restore again"),
        restoreFailure(u"end-restore-other-disk"_s, "ManualRestoreTask",
            "Your disk info and the backup info do not match, so you cannot restore now"),
        restoreFailure(u"end-restore-initial-backup"_s, "SystemRestoreTask",
            "There is something wrong with your initial backup file"),
        {u"dialog-exit"_s, exitQuestion},
    };
}
