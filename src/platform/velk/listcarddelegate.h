// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

class VListView;

/// Draws an item of a VListView as a card with its icon, its text and, when it is checkable, a round mark.
class ListCardDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// @param view the list that it draws for; also its parent
    explicit ListCardDelegate(VListView* view);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    VListView* m_view = nullptr;
};
