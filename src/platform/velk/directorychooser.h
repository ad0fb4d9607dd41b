// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/modaldialog.h"

#include <memory>

class QAbstractFileIconProvider;
class QFileSystemModel;
class QLineEdit;
class QListView;
class QListWidget;
class QModelIndex;
class QPushButton;

/// A dialog in which a directory is chosen: mounted media on one side, the directories of the open one on the other.
///
/// It needs nothing of a desktop session.
class DirectoryChooser : public ModalDialog
{
    Q_OBJECT

public:
    explicit DirectoryChooser(QWidget* parent = nullptr);
    ~DirectoryChooser() override;

    /// Opens @p path; its nearest existing parent when it is no directory.
    void openDirectory(const QString& path);

    /// The directory that is open, or the one marked inside it; absolute.
    [[nodiscard]] QString directory() const;

private:
    void build();
    void fillPlaces();
    void openPlace(int row);
    void openIndex(const QModelIndex& index);
    void openParent();
    void openTyped();
    void choose();
    void showDirectory();

    QListWidget* m_places = nullptr;
    QListView* m_folders = nullptr;
    QFileSystemModel* m_model = nullptr;
    QLineEdit* m_path = nullptr;
    QPushButton* m_up = nullptr;
    QPushButton* m_choose = nullptr;
    QString m_open;
    std::unique_ptr<QAbstractFileIconProvider> m_icons; ///< the model does not own it
};
