// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTreeView>

/// A flat table of backups with a rounded, filled frame; sorted by its time column, newest first, to begin with. A
/// list that has come and is empty says so.
class BaseTableView : public QTreeView
{
    Q_OBJECT

public:
    explicit BaseTableView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;

    /// Two rows and the header.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
        const QModelIndex& index, const QEvent* event) const override;
    void focusInEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& options, const QModelIndex& index) const override;

private:
    void sortAgain();
    void paintEmptiness();
};
