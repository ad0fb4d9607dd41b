// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/widget/errortype.h"

#include <QWidget>

class BaseTableView;
class ErrorLabel;
class QButtonGroup;
class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;
class RadioItem;
class SettingsGroup;
class TreeViewModel;
class VFileChooserEdit;

/// The page on which one chooses how the system is restored: from the initial backup (everything reset, or keeping
/// personal files), from a directory, or from a restore point of a list.
///
/// It runs nothing: after the confirmation it emits a request and shows that it is waiting until its owner replaces it.
class RestorePage : public QWidget
{
    Q_OBJECT

public:
    explicit RestorePage(QWidget* parent = nullptr);

    /// Builds the items; to be called once, after setHaveInitBackup() and setPageMargins(), and before anything else
    /// but setOwnerFlag() and restrictOffer().
    void initUI();

    /// Whether an initial backup exists. Without one the system-restore row is disabled and shows its tip. May be
    /// called again at any time.
    void setHaveInitBackup(bool have);

    /// The margins of the page's layout, in device-independent pixels.
    void setPageMargins(const QMargins& margins);

    /// Leaves only the system restore, for systems without a plain partition layout (LVM, encryption, device edition):
    /// the other rows are hidden and the system-restore row is rebuilt and checked. Pass the initial backup's existence
    /// again afterwards.
    void restrictOffer();

    /// With the owner flag set a restore point is requested together with its backup UUID, and dialogs bypass the
    /// window manager. Not set at first.
    void setOwnerFlag(bool owner);

    /// Cancels a scheduled restore with the recovery tool and waits for it.
    /// @return the exit code of the tool
    int doCancelRestore();

Q_SIGNALS:
    /// Restore from the initial backup; @p formatData clears the data of all users.
    void requestSystemRestore(bool formatData);
    /// Restore from the backup in @p directory; not checked.
    void requestManualRestore(const QString& directory);
    /// Restore from a restore point in @p directory on the partition @p backupUUID.
    void requestManualRestoreNew(const QString& directory, const QString& backupUUID);
    /// Asks the owner to fill the list of restore points; emitted once, when the page is shown for the first time.
    void requestTreeViewListItem(TreeViewModel* model);

public Q_SLOTS:
    /// Shows or hides the system-restore row. (The spelling is deliberate: hosts connect to it by this name.)
    void onSystemRestoreItemVisibelChanged(bool value);
    /// Shows or hides "Restore Now". Showing it ends the waiting; hidden, it stays hidden until it is shown here again.
    void onRestoreButtonVisibleChanged(bool value);
    /// Shows the text of InvalidPath, InvalidBackup and EncryptedSystem; every other value hides the error.
    void onManualRestoreErrorChanged(Utils::ErrorType errorType);
    /// Asks whether to reboot into a scheduled restore; otherwise cancels it.
    void onCancelRestore();
    /// Takes over the row that is checked.
    void onItemChecked();
    /// "Restore Now": confirms the chosen restore and requests it.
    void restore();

protected:
    void showEvent(QShowEvent* event) override;

private:
    enum Option { SystemRestore, BackupFiles, RestorePoint };

    void buildSystemRestoreRow();
    void buildBackupFilesRow();
    void buildRestorePointRow();
    void buildFooter();
    void updateRows();
    void updateRestoreButton();
    void onListReady();
    [[nodiscard]] bool isSystemRestoreUsable() const;
    [[nodiscard]] bool confirmSystemRestore(bool formatData);
    // Each gives whether a request was emitted.
    [[nodiscard]] bool restoreSystem();
    [[nodiscard]] bool restoreFromFiles();
    [[nodiscard]] bool restoreFromPoint();
    void showInvalidBackup();
    void showWaiting();

    QCheckBox* m_keepFiles = nullptr;
    VFileChooserEdit* m_directory = nullptr;
    ErrorLabel* m_error = nullptr;
    QPushButton* m_restoreButton = nullptr;
    RadioItem* m_systemRestoreItem = nullptr;
    RadioItem* m_backupFilesItem = nullptr;
    RadioItem* m_restorePointItem = nullptr;
    QPushButton* m_waitingButton = nullptr;
    BaseTableView* m_restorePoints = nullptr;
    QVBoxLayout* m_layout = nullptr;
    SettingsGroup* m_group = nullptr;
    int m_option = SystemRestore;
    bool m_owner = false;
    QLabel* m_systemRestoreTip = nullptr;
    QLabel* m_directoryCaption = nullptr;

    QButtonGroup* m_choice = nullptr;
    TreeViewModel* m_model = nullptr;
    bool m_haveInitBackup = true;
    bool m_systemRestoreOffered = true;
    bool m_restricted = false;
    bool m_encrypted = false;
    bool m_listRequested = false;
    bool m_listReady = false;
    bool m_waiting = false;
    bool m_buttonOffered = true;
};
