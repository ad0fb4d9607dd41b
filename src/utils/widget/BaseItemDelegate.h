// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QItemDelegate>

/// Paints the cells of a table of backups and shows the whole text of a cell that is too narrow for it.
class BaseItemDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    explicit BaseItemDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

public Q_SLOTS:
    /// On a tool-tip event: shows the text of a cell that is narrower than it, wrapped so that long texts break;
    /// hides the tool tip for every other cell.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
        const QModelIndex& index) override;
};
