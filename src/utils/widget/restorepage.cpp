// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/restorepage.h"

#include "platform/velk/VFileChooserEdit.h"
#include "platform/velk/VStyle.h"
#include "platform/velk/VTipLabel.h"
#include "utils/core/systemreboot.h"
#include "utils/widget/BaseTableView.h"
#include "utils/widget/ErrorLabel.h"
#include "utils/widget/RadioItem.h"
#include "utils/widget/SettingsGroup.h"
#include "utils/widget/TreeViewModel.h"
#include "utils/widget/pagelayout.h"
#include "utils/widget/pagetypes.h"
#include "utils/widget/recoverytool.h"
#include "utils/widget/warningdialog.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QCheckBox>
#include <QDebug>
#include <QPushButton>
#include <QScrollArea>

using namespace Qt::StringLiterals;

RestorePage::RestorePage(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
    , m_choice(new QButtonGroup(this))
    , m_model(new TreeViewModel(this))
{
    Utils::registerPageTypes();
    m_choice->setExclusive(true);
    connect(m_choice, &QButtonGroup::buttonClicked, this, &RestorePage::onItemChecked);
}

void RestorePage::initUI()
{
    PageLayout::addHeading(m_layout, tr("Restore"));
    m_group = new SettingsGroup(this, SettingsGroup::GroupBackground);
    buildSystemRestoreRow();
    buildBackupFilesRow();
    buildRestorePointRow();
    m_layout->addWidget(PageLayout::scrolling(m_group), 1);
    m_layout->setSpacing(VStyle::spaceMedium);
    buildFooter();
    updateRows();
    updateRestoreButton();
}

void RestorePage::setHaveInitBackup(bool have)
{
    m_haveInitBackup = have;
    updateRows();
    updateRestoreButton();
}

void RestorePage::setPageMargins(const QMargins& margins)
{
    m_layout->setContentsMargins(margins);
}

void RestorePage::restrictOffer()
{
    m_restricted = true;
    if (m_group == nullptr) {
        return;
    }
    delete m_systemRestoreItem;
    buildSystemRestoreRow();
    m_option = SystemRestore;
    updateRows();
    updateRestoreButton();
}

void RestorePage::setOwnerFlag(bool owner)
{
    m_owner = owner;
}

void RestorePage::buildSystemRestoreRow()
{
    m_systemRestoreItem = new RadioItem(tr("Reset to factory settings"), u":/restore-initial.svg"_s);
    m_systemRestoreTip = new VTipLabel(
        tr("The initial backup file does not exist, so your system cannot be reset to factory settings."));
    m_systemRestoreTip->setIndent(3); // as far as the contents of the other rows
    m_systemRestoreItem->addContent(m_systemRestoreTip, 28);
    m_keepFiles = new QCheckBox(tr("Keep personal files and apps"));
    m_keepFiles->setMinimumSize(24, 24);
    m_keepFiles->setFocusPolicy(Qt::NoFocus);
    m_keepFiles->setShortcut(Qt::ALT | Qt::Key_K); // it never has the focus, and yet no mouse must be needed
    m_keepFiles->setToolTip(m_keepFiles->shortcut().toString(QKeySequence::NativeText));
    m_keepFiles->setChecked(true);
    m_systemRestoreItem->addContent(m_keepFiles, 28);
    m_choice->addButton(m_systemRestoreItem->button(), SystemRestore);
    m_systemRestoreItem->setChecked(true);
    m_group->addItem(m_systemRestoreItem, 0);
}

void RestorePage::buildBackupFilesRow()
{
    m_backupFilesItem = new RadioItem(tr("Restore from backup files"), u":/restore-files.svg"_s);
    auto* content = new QWidget;
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(3, 3, 3, 3);
    m_directoryCaption = new QLabel(tr("Backup directory"));
    m_directory = new VFileChooserEdit;
    m_directoryCaption->setBuddy(m_directory);
    row->addWidget(m_directoryCaption);
    row->addWidget(m_directory, 1);
    m_backupFilesItem->addContent(content, 28);
    m_choice->addButton(m_backupFilesItem->button(), BackupFiles);
    m_group->addItem(m_backupFilesItem);
}

void RestorePage::buildRestorePointRow()
{
    m_restorePointItem = new RadioItem(tr("Restore from a restore point"), u":/restore-point.svg"_s);
    auto* content = new QWidget;
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(3, 3, 3, 3);
    m_restorePoints = new BaseTableView;
    m_restorePoints->setAccessibleName(tr("Restore points"));
    m_restorePoints->setModel(m_model);
    row->addWidget(m_restorePoints);
    m_restorePointItem->addContent(content, 28);
    m_choice->addButton(m_restorePointItem->button(), RestorePoint);
    m_group->addItem(m_restorePointItem);
    connect(m_model, &TreeViewModel::itemsIsReady, this, &RestorePage::onListReady);
}

void RestorePage::buildFooter()
{
    m_error = new ErrorLabel(this);
    m_waitingButton = PageLayout::actionButton(tr("Applying changes to your system..."), this);
    m_waitingButton->setEnabled(false);
    m_waitingButton->hide();
    m_restoreButton = PageLayout::actionButton(tr("Restore Now"), this);
    m_restoreButton->setProperty("accent", true);
    m_layout->addWidget(m_error);
    m_layout->addWidget(m_waitingButton, 0, Qt::AlignHCenter);
    m_layout->addWidget(m_restoreButton, 0, Qt::AlignHCenter);
    m_layout->addSpacing(PageLayout::bottomSpacing);
    connect(m_restoreButton, &QPushButton::clicked, this, &RestorePage::restore);
}

void RestorePage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!m_listRequested) {
        m_listRequested = true;
        Q_EMIT
        requestTreeViewListItem(m_model);
    }
}

void RestorePage::onListReady()
{
    m_listReady = true;
    updateRows();
}

bool RestorePage::isSystemRestoreUsable() const
{
    return m_systemRestoreOffered && m_haveInitBackup && !m_encrypted;
}

// Which rows are offered, which one is chosen, and which contents can be used follow from the page's facts. Rows that
// are hidden are disabled, too: the arrow keys go from choice to choice without asking whether its row is shown.
void RestorePage::updateRows()
{
    if (m_group == nullptr) {
        return;
    }
    m_systemRestoreItem->setVisible(m_systemRestoreOffered);
    m_systemRestoreItem->setEnabled(isSystemRestoreUsable());
    m_systemRestoreTip->setVisible(!m_haveInitBackup);
    PageLayout::setFilling(m_group, !m_restricted); // the list of restore points takes the room to spare
    m_backupFilesItem->setVisible(!m_restricted);
    m_backupFilesItem->setEnabled(!m_restricted);
    m_restorePointItem->setVisible(!m_restricted);
    m_restorePointItem->setEnabled(m_listReady && !m_restricted);
    if (m_option == SystemRestore && !isSystemRestoreUsable() && !m_restricted && !m_encrypted) {
        m_option = BackupFiles;
    }
    m_choice->button(m_option)->setChecked(true);
    m_keepFiles->setEnabled(isSystemRestoreUsable() && m_option == SystemRestore);
    m_directory->setEnabled(m_option == BackupFiles);
    m_directoryCaption->setEnabled(m_option == BackupFiles);
    m_restorePoints->setEnabled(m_listReady && m_option == RestorePoint);
}

void RestorePage::updateRestoreButton()
{
    if (m_restoreButton != nullptr) {
        m_restoreButton->setVisible(m_buttonOffered && !m_waiting && (!m_restricted || isSystemRestoreUsable()));
    }
}

void RestorePage::onSystemRestoreItemVisibelChanged(bool value)
{
    m_systemRestoreOffered = value;
    updateRows();
    updateRestoreButton();
}

void RestorePage::onRestoreButtonVisibleChanged(bool value)
{
    m_buttonOffered = value;
    m_restoreButton->setVisible(value);
    if (value) {
        m_waiting = false;
        m_waitingButton->hide();
    }
}

void RestorePage::onItemChecked()
{
    m_option = m_choice->checkedId();
    updateRows();
}

void RestorePage::onManualRestoreErrorChanged(Utils::ErrorType errorType)
{
    switch (errorType) {
    case Utils::InvalidBackup:
        showInvalidBackup();
        return;
    case Utils::EncryptedSystem:
        m_encrypted = true;
        m_restoreButton->setEnabled(false);
        updateRows();
        m_error->showError(Utils::errorText(errorType));
        return;
    case Utils::InvalidPath:
        m_error->showError(Utils::errorText(errorType));
        return;
    default:
        m_error->hide();
    }
}

void RestorePage::showInvalidBackup()
{
    m_error->showError(m_option == SystemRestore
            ? tr("The initial backup file is broken, so your system cannot be reset to factory settings.")
            : Utils::errorText(Utils::InvalidBackup));
}

void RestorePage::restore()
{
    m_error->hide();
    bool requested = false;
    switch (m_option) {
    case SystemRestore:
        requested = restoreSystem();
        break;
    case BackupFiles:
        requested = restoreFromFiles();
        break;
    default:
        requested = restoreFromPoint();
    }
    if (requested) {
        showWaiting();
        setFocus();
    }
}

bool RestorePage::restoreSystem()
{
    const bool formatData = !m_keepFiles->isChecked();
    if (!confirmSystemRestore(formatData)) {
        return false;
    }
    Q_EMIT
    requestSystemRestore(formatData);
    return true;
}

bool RestorePage::confirmSystemRestore(bool formatData)
{
    const QString title = formatData ? tr("Reset to Factory Settings") : tr("Keep Personal Files");
    const QString message = formatData
        ? tr("It will permanently clear data of all users on this device, please confirm before proceeding")
        : tr("It will reset data on your system disk but keep your personal data. You need to create an account with "
             "the same username as the current user so that you can access your personal data later. Please confirm "
             "before proceeding.");
    return confirmWarning(this, {title, message, tr("Confirm and Reset"), m_owner});
}

bool RestorePage::restoreFromFiles()
{
    const QString directory = m_directory->text();
    if (directory.isEmpty()) {
        showInvalidBackup();
        return false;
    }
    Q_EMIT
    requestManualRestore(directory);
    return true;
}

bool RestorePage::restoreFromPoint()
{
    const QModelIndex row = m_restorePoints->currentIndex().siblingAtColumn(TreeViewModel::BackupFileColumn);
    const QString backupUuid = row.data(TreeViewModel::BackupUuidRole).toString();
    const QString directory = row.data(TreeViewModel::DirectoryRole).toString();
    if (backupUuid.isEmpty()) {
        qWarning() << "CoverRestore backupUUID isEmpty";
        return false;
    }
    if (directory.isEmpty()) {
        showInvalidBackup();
        return false;
    }
    if (m_owner) {
        Q_EMIT
        requestManualRestoreNew(directory, backupUuid);
    } else {
        Q_EMIT
        requestManualRestore(directory);
    }
    return true;
}

void RestorePage::showWaiting()
{
    m_waiting = true;
    m_waitingButton->show();
    m_restoreButton->hide();
}

void RestorePage::onCancelRestore()
{
    const bool reboot = confirmWarning(this,
        {{}, tr("System restore is ready. Do you want to reboot and restore your system now?"),
            tr("Reboot and Restore"), m_owner});
    if (reboot) {
        qDebug() << ", RestorePage::onCancelRestore reboot now";
        Utils::rebootSystem();
        return;
    }
    doCancelRestore();
}

int RestorePage::doCancelRestore()
{
    const RecoveryToolResult result = runRecoveryTool(u"cancel_restore"_s);
    qDebug() << "doCancelRestore, exitCode:" << result.exitCode << ", args: " << result.args
             << ", error: " << result.error;
    return result.exitCode;
}
