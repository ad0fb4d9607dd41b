// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QModelIndex;
class QStandardItemModel;
class QVBoxLayout;
class VListView;

/// The entry screen with the modules "Backup", "Restore" and "System Clone" as tiles. Choosing one asks the session
/// service to show its page; a failure is only logged.
class BackupRestoreWidget : public QWidget
{
    Q_OBJECT

public:
    explicit BackupRestoreWidget(QWidget* parent = nullptr);

    /// A square widget with a list of modules of its own, whose choices come as moduleClicked(); owned by @p parent.
    QWidget* createModuleWidget(QWidget* parent);

Q_SIGNALS:
    /// A row of the list of createModuleWidget() was clicked.
    void moduleClicked(const QModelIndex& index);

public Q_SLOTS:
    /// Asks the session service for the page of the list's current row; without a current row it does nothing.
    void onItemChanged(bool checked);

private:
    void buildLogo();
    void buildTitle();
    void buildSubTitle();
    void buildModules();
    void addModule(int row);

    QVBoxLayout* m_layout = nullptr;
    QLabel* m_logo = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_subTitle = nullptr;
    VListView* m_modules = nullptr;
    QStandardItemModel* m_model = nullptr;
};
