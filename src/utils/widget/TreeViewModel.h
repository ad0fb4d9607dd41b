// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStandardItemModel>

/// The list of backups: one row a backup, with its directory in column 0 ("Backup File") and its day in column 1
/// ("Time", "yyyy/MM/dd", so that the order of the texts is that of the days).
///
/// Whoever fills it removes the old rows first and emits itemsIsReady() at the end.
class TreeViewModel : public QStandardItemModel
{
    Q_OBJECT

public:
    enum Column { BackupFileColumn, TimeColumn, ColumnCount };

    /// What the item in column 0 of a row carries beside its text.
    enum Role {
        DirectoryRole = Qt::UserRole + 1, ///< absolute directory of the backup; QString
        BackupUuidRole                    ///< UUID of the partition that holds it; QString
    };

    explicit TreeViewModel(QObject* parent = nullptr);

    /// The texts "Backup File" and "Time" in the context "Recovery.Table.Header", their alignment (left and vertically
    /// centred) and the order to begin with (descending); everything else is QStandardItemModel's.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    /// The rows have been filled.
    void itemsIsReady();
};
