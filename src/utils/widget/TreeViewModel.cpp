// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/TreeViewModel.h"

#include <QCoreApplication>

namespace {

QString headerText(int section)
{
    return section == TreeViewModel::BackupFileColumn
        ? QCoreApplication::translate("Recovery.Table.Header", "Backup File")
        : QCoreApplication::translate("Recovery.Table.Header", "Time");
}

} // namespace

TreeViewModel::TreeViewModel(QObject* parent)
    : QStandardItemModel(0, ColumnCount, parent)
{ }

QVariant TreeViewModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == BackupFileColumn || section == TimeColumn) {
        switch (role) {
        case Qt::DisplayRole:
            return headerText(section);
        case Qt::TextAlignmentRole:
            return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
        case Qt::InitialSortOrderRole:
            return static_cast<int>(Qt::DescendingOrder);
        default:
            break;
        }
    }
    return QStandardItemModel::headerData(section, orientation, role);
}
