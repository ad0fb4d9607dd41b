// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/scenes.h"

#include "gallery/shellscenes.h"
#include "platform/velk/VDialog.h"
#include "platform/velk/VFileChooserEdit.h"
#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VFrame.h"
#include "platform/velk/VIconButton.h"
#include "platform/velk/VLabel.h"
#include "platform/velk/VTipLabel.h"
#include "platform/velk/VWaterProgress.h"
#include "platform/velk/directorychooser.h"
#include "utils/widget/BackupRestoreWidget.h"
#include "utils/widget/BaseTableView.h"
#include "utils/widget/ItemFrame.h"
#include "utils/widget/TreeViewModel.h"
#include "utils/widget/backuppage.h"
#include "utils/widget/restorepage.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItem>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

enum class Backups { None, Some, LongNames };

void fill(TreeViewModel* model, Backups backups)
{
    model->removeRows(0, model->rowCount());
    const QString folder = backups == Backups::LongNames
        ? u"/media/kestro/Backups of the whole family/laptop in the living room/before the great renewal/backup-%1"_s
        : u"/media/kestro/backup-%1"_s;
    for (int i = 1; backups != Backups::None && i <= 4; ++i) {
        auto* directory = new QStandardItem(folder.arg(i));
        directory->setData(directory->text(), TreeViewModel::DirectoryRole);
        directory->setData(u"0ce5-%1"_s.arg(i), TreeViewModel::BackupUuidRole);
        model->appendRow({directory, new QStandardItem(u"2026/0%1/1%1"_s.arg(i))});
    }
    Q_EMIT
    model->itemsIsReady();
}

// The window that the product shows its pages in.
QWidget* inWindow(QWidget* page)
{
    auto* window = new VFrame;
    window->setFixedSize(800, 600);
    auto* close = new VIconButton;
    close->setIcon(QIcon(u":/close.svg"_s));
    close->setFlat(true);
    close->setFocusPolicy(Qt::NoFocus);
    close->setAccessibleName(u"Close"_s);
    auto* column = new QVBoxLayout(window);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(close, 0, Qt::AlignRight);
    column->addWidget(page, 1);
    return window;
}

void check(QWidget* page, int row)
{
    const auto rows = page->findChildren<QRadioButton*>();
    rows.at(row)->setFocus();
    rows.at(row)->click();
}

QWidget* restorePage(const std::function<void(RestorePage*)>& change, Backups backups = Backups::Some)
{
    auto* page = new RestorePage;
    page->setHaveInitBackup(true);
    page->setPageMargins({100, 0, 100, 4});
    page->initUI();
    QObject::connect(
        page, &RestorePage::requestTreeViewListItem, page, [backups](TreeViewModel* model) { fill(model, backups); });
    change(page);
    return inWindow(page);
}

QWidget* restorePoint(Backups backups)
{
    return restorePage(
        [](RestorePage* page) {
            auto* table = page->findChild<BaseTableView*>();
            QObject::connect(
                static_cast<TreeViewModel*>(table->model()), &TreeViewModel::itemsIsReady, page, [page, table] {
                    check(page, 2);
                    table->setCurrentIndex(table->model()->index(1, 0));
                });
        },
        backups);
}

Scene restoreError(const QString& name, Utils::ErrorType error, int row)
{
    return {name, [error, row] {
                return restorePage([error, row](RestorePage* page) {
                    check(page, row);
                    page->onManualRestoreErrorChanged(error);
                });
            }};
}

QList<Scene> restoreScenes()
{
    return {
        {u"restore-system"_s, [] { return restorePage([](RestorePage*) {}); }},
        {u"restore-files"_s, [] { return restorePage([](RestorePage* page) { check(page, 1); }); }},
        {u"restore-point"_s, [] { return restorePoint(Backups::Some); }},
        {u"restore-point-long-names"_s, [] { return restorePoint(Backups::LongNames); }},
        {u"restore-point-none"_s, [] { return restorePoint(Backups::None); }},
        {u"restore-no-initial-backup"_s,
            [] { return restorePage([](RestorePage* page) { page->setHaveInitBackup(false); }); }},
        {u"restore-restricted"_s, [] { return restorePage([](RestorePage* page) { page->restrictOffer(); }); }},
        {u"restore-restricted-no-initial-backup"_s,
            [] {
                return restorePage([](RestorePage* page) {
                    page->restrictOffer();
                    page->setHaveInitBackup(false);
                });
            }},
        {u"restore-waiting"_s,
            [] {
                return restorePage([](RestorePage* page) {
                    check(page, 1);
                    page->findChild<VFileChooserEdit*>()->setText(u"/media/kestro/backup-1"_s);
                    page->restore();
                });
            }},
        restoreError(u"restore-error-path"_s, Utils::InvalidPath, 1),
        restoreError(u"restore-error-initial-backup"_s, Utils::InvalidBackup, 0),
        restoreError(u"restore-error-backup"_s, Utils::InvalidBackup, 1),
        restoreError(u"restore-error-encrypted"_s, Utils::EncryptedSystem, 0),
    };
}

QWidget* backupPage(const std::function<void(BackupPage*)>& change)
{
    auto* page = new BackupPage;
    QObject::connect(
        page, &BackupPage::requestTreeViewListItem, page, [](TreeViewModel* model) { fill(model, Backups::Some); });
    change(page);
    auto* frame = new QWidget;
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(100, 0, 100, 4);
    layout->addWidget(page);
    return inWindow(frame);
}

QList<Scene> backupScenes()
{
    QList<Scene> scenes = {
        {u"backup-new"_s, [] { return backupPage([](BackupPage*) {}); }},
        {u"backup-list"_s, [] { return backupPage([](BackupPage* page) { page->onChoose(1); }); }},
        {u"backup-waiting"_s,
            [] {
                return backupPage([](BackupPage* page) {
                    page->findChild<VFileChooserEdit*>()->setText(u"/media/kestro/backup-1"_s);
                    page->backup();
                });
            }},
    };
    for (const auto error : {Utils::InsufficientSpace, Utils::UnsupportedFileSystem, Utils::InvalidPath,
             Utils::PathInSourceDisk, Utils::ReadOnlyDevice, Utils::UnusableDirectory}) {
        scenes.append({u"backup-error-%1"_s.arg(static_cast<int>(error)), [error] {
                           return backupPage(
                               [error](BackupPage* page) { page->onManualBackupErrorTypeChanged(error); });
                       }});
    }
    return scenes;
}

QWidget* dialog(const QString& title, const QString& message, const QString& confirm)
{
    auto* question = new VDialog(title, message);
    question->setIcon(QIcon(u":/warning.svg"_s));
    question->addButton(QCoreApplication::translate("button", "Cancel"));
    question->addButton(confirm, true, VDialog::ButtonWarning);
    question->moveToCenter();
    return question;
}

QList<Scene> dialogScenes()
{
    return {
        {u"dialog-factory"_s,
            [] {
                return dialog(RestorePage::tr("Reset to Factory Settings"),
                    RestorePage::tr("It will permanently clear data of all users on this device, please confirm "
                                    "before proceeding"),
                    RestorePage::tr("Confirm and Reset"));
            }},
        {u"dialog-keep-files"_s,
            [] {
                return dialog(RestorePage::tr("Keep Personal Files"),
                    RestorePage::tr(
                        "It will reset data on your system disk but keep your personal data. You need to "
                        "create an account with the same username as the current user so that you can access "
                        "your personal data later. Please confirm before proceeding."),
                    RestorePage::tr("Confirm and Reset"));
            }},
        {u"dialog-reboot"_s,
            [] {
                return dialog({},
                    RestorePage::tr("System restore is ready. Do you want to reboot and restore your system "
                                    "now?"),
                    RestorePage::tr("Reboot and Restore"));
            }},
        {u"directory-chooser"_s,
            [] {
                auto* chooser = new DirectoryChooser;
                chooser->openDirectory(u"/usr"_s);
                // The folders are read in another thread.
                const auto* folders = chooser->findChild<QListView*>(u"folders"_s);
                if (!QTest::qWaitFor([&] { return folders->model()->rowCount(folders->rootIndex()) > 0; }, 20000)) {
                    qWarning() << "no folders are shown";
                }
                return chooser;
            }},
    };
}

QWidget* water(int value)
{
    auto* progress = new VWaterProgress;
    progress->setValue(value);
    return progress;
}

QWidget* waterLevels()
{
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    for (const int value : {0, 1, 25, 50, 75, 99, 100}) {
        layout->addWidget(water(value));
    }
    return inWindow(row);
}

QWidget* typeScale()
{
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(32, 0, 32, 32);
    for (int size = VFontSizeManager::T1; size < VFontSizeManager::NSizeTypes; ++size) {
        auto* label = new VLabel(u"T%1 Restore, 恢复系统, استعادة"_s.arg(size + 1));
        VFontSizeManager::instance()->bind(label, static_cast<VFontSizeManager::SizeType>(size));
        layout->addWidget(label);
    }
    layout->addWidget(new VTipLabel(u"An explanation in the colour of tips."_s));
    return inWindow(column);
}

QPushButton* button(const QString& text, const char* property = nullptr, bool enabled = true)
{
    auto* result = new QPushButton(text);
    if (property != nullptr) {
        result->setProperty(property, true);
    }
    result->setEnabled(enabled);
    return result;
}

QWidget* controls()
{
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(32, 0, 32, 32);
    auto* focused = button(u"With the focus"_s, "accent");
    auto* checked = new QCheckBox(u"Checked"_s);
    checked->setChecked(true);
    auto* disabled = new QCheckBox(u"Disabled and checked"_s);
    disabled->setChecked(true);
    disabled->setEnabled(false);
    auto* chosen = new QRadioButton(u"Chosen"_s);
    chosen->setChecked(true);
    auto* alert = new VLineEdit;
    alert->setText(u"/marked/as/wrong"_s);
    alert->setAlert(true);
    for (QWidget* widget : std::initializer_list<QWidget*>{button(u"Plain"_s), button(u"Disabled"_s, nullptr, false),
             button(u"Accent"_s, "accent"), button(u"Accent, disabled"_s, "accent", false),
             button(u"Warning"_s, "warning"), focused, new QCheckBox(u"Not checked"_s), checked, disabled,
             new QRadioButton(u"Not chosen"_s), chosen, new VFileChooserEdit, alert}) {
        layout->addWidget(widget);
    }
    focused->setFocus();
    return inWindow(column);
}

QList<Scene> controlScenes()
{
    return {
        {u"modules"_s, [] { return inWindow(new BackupRestoreWidget); }},
        {u"module-tile-title-first"_s,
            [] {
                return new plugins::ItemFrame(u"Restore"_s, u"Bring the system back"_s,
                    QIcon(u":/module-restore.svg"_s), nullptr, plugins::ItemFrame::TitleFirst);
            }},
        {u"water"_s, waterLevels},
        {u"type-scale"_s, typeScale},
        {u"controls"_s, controls},
    };
}

} // namespace

QList<Scene> allScenes()
{
    return restoreScenes() + backupScenes() + dialogScenes() + shellScenes() + controlScenes();
}
