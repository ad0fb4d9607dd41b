// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/widget/errortype.h"

#include <QWidget>

class BaseTableView;
class ErrorLabel;
class QButtonGroup;
class QModelIndex;
class QPushButton;
class QStandardItemModel;
class QVBoxLayout;
class RadioItem;
class TreeViewModel;
class VFileChooserEdit;
class VListView;

/// The page on which a backup is started: its type, where it is saved, and "Back Up".
///
/// It runs nothing: it emits a request and shows that it is waiting. The owner checks the directory and answers with
/// onManualBackupErrorTypeChanged() and onBackupButtonVisibleChanged().
class BackupPage : public QWidget
{
    Q_OBJECT

public:
    explicit BackupPage(QWidget* parent = nullptr);

    /// Cancels a scheduled backup with the recovery tool and waits for it.
    /// @return the exit code of the tool; -1 when it could not be run
    int doCancelBackup();

Q_SIGNALS:
    /// Back up everything into @p path.
    void requestSetManualBackupDirectory(const QString& path);
    /// Back up the system into @p path.
    void requestSetSystemBackupDirectory(const QString& path);
    /// Asks the owner to fill the list of earlier backups; emitted once, when the page is shown for the first time.
    void requestTreeViewListItem(TreeViewModel* model);

public Q_SLOTS:
    /// Shows or hides "Back Up"; showing it ends the waiting.
    void onBackupButtonVisibleChanged(bool value);
    /// Shows the text of @p type; NoError, InvalidBackup and the codes from EncryptedSystem on hide the error.
    void onManualBackupErrorTypeChanged(Utils::ErrorType type);
    /// Asks whether to reboot into a scheduled backup; otherwise cancels it.
    void onCancelBackup();
    /// Selects the saving method: 0 a new directory, 1 an entry of the list; other codes change nothing.
    void onChoose(int code);
    /// "Back Up": requests the backup unless no path is given.
    void backup();

protected:
    void showEvent(QShowEvent* event) override;

private:
    enum SavingMethod { NewDirectory, ListEntry };

    [[nodiscard]] QWidget* buildTypes();
    [[nodiscard]] QWidget* buildSavingMethods();
    void buildDirectoryRow();
    void buildListRow();
    void buildWaiting();
    void chooseType(const QModelIndex& index);
    [[nodiscard]] QString chosenPath() const;

    QPushButton* m_backupButton = nullptr;
    ErrorLabel* m_error = nullptr;
    QWidget* m_waiting = nullptr;
    RadioItem* m_newBackupItem = nullptr;
    RadioItem* m_incrementalItem = nullptr;
    VListView* m_types = nullptr;
    VFileChooserEdit* m_directory = nullptr;
    BaseTableView* m_backups = nullptr;
    int m_savingMethod = NewDirectory;
    bool m_systemBackup = false;

    QWidget* m_directoryRow = nullptr;
    QWidget* m_listRow = nullptr;
    QButtonGroup* m_methods = nullptr;
    QStandardItemModel* m_typeModel = nullptr;
    TreeViewModel* m_model = nullptr;
    bool m_listRequested = false;
};
