// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/backuppage.h"

#include "platform/velk/VFileChooserEdit.h"
#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VLabel.h"
#include "platform/velk/VListView.h"
#include "platform/velk/VWaterProgress.h"
#include "utils/core/systemreboot.h"
#include "utils/widget/BaseTableView.h"
#include "utils/widget/ErrorLabel.h"
#include "utils/widget/RadioItem.h"
#include "utils/widget/SettingsGroup.h"
#include "utils/widget/TreeViewModel.h"
#include "utils/widget/pagelayout.h"
#include "utils/widget/recoverytool.h"
#include "utils/widget/warningdialog.h"

#include <QBoxLayout>
#include <QButtonGroup>
#include <QDebug>
#include <QGuiApplication>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>

using namespace Qt::StringLiterals;

namespace {

enum BackupType { FullBackup, SystemBackup };
constexpr int typeRole = Qt::UserRole + 1;
constexpr QSize typeCell(304, 78); // two fill the width of the page and the margin of the viewport

QLabel* caption(const QString& text)
{
    auto* label = new VLabel(text);
    const bool fromRight = QGuiApplication::isRightToLeft();
    label->setContentsMargins(fromRight ? 0 : 10, 0, fromRight ? 10 : 0, 0);
    label->setForegroundRole(VPalette::TitleText);
    VFontSizeManager::instance()->bind(label, VFontSizeManager::T4, 600);
    return label;
}

QStandardItem* typeItem(const QString& text, const QString& icon, BackupType type)
{
    auto* item = new QStandardItem(QIcon(icon), text);
    item->setData(type, typeRole);
    item->setAccessibleText(text);
    item->setCheckState(type == FullBackup ? Qt::Checked : Qt::Unchecked);
    return item;
}

// A row's content with the margins that the rows of the page have.
QWidget* framed(QWidget* content)
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(3, 3, 3, 3);
    layout->addWidget(content);
    return row;
}

} // namespace

BackupPage::BackupPage(QWidget* parent)
    : QWidget(parent)
    , m_methods(new QButtonGroup(this))
    , m_model(new TreeViewModel(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    PageLayout::addHeading(layout, tr("Backup"));
    layout->addWidget(caption(tr("Backup Type")));
    layout->addWidget(buildTypes());
    layout->addWidget(caption(tr("Saving Method")));
    layout->addWidget(PageLayout::scrolling(buildSavingMethods()), 1);
    m_error = new ErrorLabel(this);
    layout->addWidget(m_error);
    buildWaiting();
    layout->addWidget(m_waiting, 0, Qt::AlignHCenter);
    m_backupButton = PageLayout::actionButton(tr("Back Up"), this);
    m_backupButton->setProperty("accent", true);
    layout->addWidget(m_backupButton, 0, Qt::AlignHCenter);
    layout->addSpacing(PageLayout::bottomSpacing);
    connect(m_backupButton, &QPushButton::clicked, this, &BackupPage::backup);
    onChoose(NewDirectory);
}

QWidget* BackupPage::buildTypes()
{
    m_typeModel = new QStandardItemModel(this);
    m_typeModel->appendRow(typeItem(tr("Full Backup"), u":/type-full.svg"_s, FullBackup));
    m_typeModel->appendRow(typeItem(tr("System Backup"), u":/type-system.svg"_s, SystemBackup));
    m_types = new VListView(this);
    m_types->setAccessibleName(tr("Backup Type"));
    m_types->setModel(m_typeModel);
    m_types->setFixedHeight(85);
    m_types->setFlow(QListView::LeftToRight);
    m_types->setItemSpacing(5);
    m_types->setItemSize(typeCell);
    m_types->setGridSize(typeCell);
    m_types->setFrameShape(QFrame::NoFrame);
    m_types->setViewportMargins(-8, 0, 0, 0);
    m_types->setMovement(QListView::Static);
    m_types->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_types->setAutoScroll(false);
    m_types->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_types->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_types->setSelectionMode(QAbstractItemView::NoSelection);
    m_types->setBackgroundType(VListView::RoundedBackground);
    m_types->setCurrentIndex(m_typeModel->index(0, 0));
    connect(m_types, &VListView::clicked, this, &BackupPage::chooseType);
    return m_types;
}

QWidget* BackupPage::buildSavingMethods()
{
    auto* group = new SettingsGroup(this, SettingsGroup::GroupBackground);
    m_newBackupItem = new RadioItem(tr("New Backup"));
    m_incrementalItem = new RadioItem(tr("System Incremental Backup"));
    buildDirectoryRow();
    buildListRow();
    m_methods->setExclusive(true);
    m_methods->addButton(m_newBackupItem->button(), NewDirectory);
    m_methods->addButton(m_incrementalItem->button(), ListEntry);
    group->addItem(m_newBackupItem);
    group->addItem(m_incrementalItem);
    connect(m_methods, &QButtonGroup::idClicked, this, &BackupPage::onChoose);
    return group;
}

void BackupPage::buildDirectoryRow()
{
    m_directory = new VFileChooserEdit;
    m_directory->setPlaceholderText(tr("Select a path to save backup files"));
    m_directoryRow = framed(m_directory);
    m_newBackupItem->addContent(m_directoryRow, 28);
}

void BackupPage::buildListRow()
{
    m_backups = new BaseTableView;
    m_backups->setAccessibleName(tr("System Incremental Backup"));
    m_backups->setModel(m_model);
    m_listRow = framed(m_backups);
    m_listRow->setMaximumHeight(120);
    m_incrementalItem->addContent(m_listRow, 28);
}

void BackupPage::buildWaiting()
{
    m_waiting = new QWidget(this);
    auto* column = new QVBoxLayout(m_waiting);
    auto* water = new VWaterProgress(m_waiting);
    water->setValue(50);
    water->setTextVisible(false);
    water->setFixedSize(48, 48);
    water->start();
    column->addWidget(water, 0, Qt::AlignHCenter);
    column->addWidget(new QLabel(tr("Applying changes to your system..."), m_waiting), 0, Qt::AlignHCenter);
    m_waiting->hide();
}

void BackupPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!m_listRequested) {
        m_listRequested = true;
        Q_EMIT
        requestTreeViewListItem(m_model);
    }
}

void BackupPage::chooseType(const QModelIndex& index)
{
    for (int row = 0; row < m_typeModel->rowCount(); ++row) {
        m_typeModel->item(row)->setCheckState(row == index.row() ? Qt::Checked : Qt::Unchecked);
    }
    m_systemBackup = index.data(typeRole).toInt() == SystemBackup;
}

void BackupPage::onChoose(int code)
{
    if (code != NewDirectory && code != ListEntry) {
        return;
    }
    m_savingMethod = code;
    m_methods->button(code)->setChecked(true);
    m_directoryRow->setVisible(code == NewDirectory);
    m_listRow->setVisible(code == ListEntry);
}

QString BackupPage::chosenPath() const
{
    if (m_savingMethod == NewDirectory) {
        return m_directory->text();
    }
    const QModelIndex row = m_backups->currentIndex().siblingAtColumn(TreeViewModel::BackupFileColumn);
    return row.data(TreeViewModel::DirectoryRole).toString();
}

void BackupPage::backup()
{
    m_error->hide();
    const QString path = chosenPath();
    if (path.isEmpty()) {
        return; // the owner tells what is wrong with a path, a missing one included
    }
    setFocus();
    m_backupButton->hide();
    m_waiting->show();
    if (m_systemBackup) {
        Q_EMIT
        requestSetSystemBackupDirectory(path);
    } else {
        Q_EMIT
        requestSetManualBackupDirectory(path);
    }
}

void BackupPage::onBackupButtonVisibleChanged(bool value)
{
    m_backupButton->setVisible(value);
    if (value) {
        m_waiting->hide();
    }
}

void BackupPage::onManualBackupErrorTypeChanged(Utils::ErrorType type)
{
    const bool shown = type > Utils::NoError && type < Utils::EncryptedSystem && type != Utils::InvalidBackup;
    if (shown) {
        m_error->showError(Utils::errorText(type));
    } else {
        m_error->hide();
    }
}

void BackupPage::onCancelBackup()
{
    const bool reboot = confirmWarning(this,
        {{}, tr("System backup is ready. Do you want to reboot and backup your system now?"), tr("Reboot and Backup")});
    if (reboot) {
        qDebug() << ", RestorePage::onCancelRestore reboot now"; // deliberate: the same text as on the restore page
        Utils::rebootSystem();
        return;
    }
    doCancelBackup();
}

int BackupPage::doCancelBackup()
{
    const RecoveryToolResult result = runRecoveryTool(u"cancel_backup"_s);
    qDebug() << "doCancelBackup, exitCode:" << result.exitCode << ", args: " << result.args
             << ", error: " << result.error;
    return result.exitCode;
}
