// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/BaseTableView.h"

#include "platform/velk/VGuiApplicationHelper.h"
#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"
#include "utils/widget/BaseHeaderView.h"
#include "utils/widget/BaseItemDelegate.h"
#include "utils/widget/TreeViewModel.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr qreal washOpacity = 0.01;
constexpr qreal rowOpacity = 0.05;
constexpr int hoverLightness = 50;
constexpr int selectionLightness = -100;

QColor rowColor(const VPalette& colors, bool alternate)
{
    return colors.color(alternate ? QPalette::WindowText : QPalette::Base);
}

} // namespace

BaseTableView::BaseTableView(QWidget* parent)
    : QTreeView(parent)
{
    auto* header = new BaseHeaderView(Qt::Horizontal, this);
    setHeader(header);
    setItemDelegate(new BaseItemDelegate(this));
    viewport()->setAutoFillBackground(false);
    setFrameShape(QFrame::NoFrame);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setMouseTracking(true);
    setVerticalScrollMode(ScrollPerPixel);
}

void BaseTableView::setModel(QAbstractItemModel* model)
{
    QTreeView::setModel(model);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(TreeViewModel::BackupFileColumn, QHeaderView::Stretch);
    header()->setSectionResizeMode(TreeViewModel::TimeColumn, QHeaderView::Fixed);
    header()->resizeSection(TreeViewModel::TimeColumn, 130);
    setSortingEnabled(true);
    sortByColumn(TreeViewModel::TimeColumn, Qt::DescendingOrder);
    if (const auto* backups = qobject_cast<TreeViewModel*>(model)) {
        connect(backups, &TreeViewModel::itemsIsReady, this, &BaseTableView::sortAgain);
    }
}

// The model does not sort rows that come later by itself.
void BaseTableView::sortAgain()
{
    sortByColumn(header()->sortIndicatorSection(), header()->sortIndicatorOrder());
    setAccessibleDescription(model()->rowCount() == 0 ? tr("No backups found") : QString());
    viewport()->update();
}

QSize BaseTableView::sizeHint() const
{
    constexpr int rows = 2;
    const int rowHeight = model() != nullptr && model()->rowCount() > 0 ? sizeHintForRow(0) : 36;
    return {QTreeView::sizeHint().width(), header()->sizeHint().height() + (rows * rowHeight)};
}

// With Ctrl the current row could be deselected, and would still be the one that is restored.
QItemSelectionModel::SelectionFlags BaseTableView::selectionCommand(const QModelIndex& index, const QEvent* event) const
{
    const auto command = QTreeView::selectionCommand(index, event);
    return command.testFlag(QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate : command;
}

void BaseTableView::focusInEvent(QFocusEvent* event)
{
    QTreeView::focusInEvent(event);
    // Qt makes the first row the current one when Tab comes here, without selecting it. What is taken for chosen has to
    // look like it.
    if (currentIndex().isValid() && !selectionModel()->isSelected(currentIndex())) {
        selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
}

void BaseTableView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipping(true);
    painter.setOpacity(washOpacity); // deliberate: a wash that is nearly invisible
    QPainterPath shape;
    shape.addRoundedRect(QRectF(viewport()->rect()).adjusted(0, 0, 1, 1), VStyle::frameRadius, VStyle::frameRadius);
    painter.fillPath(shape, VPaletteHelper::instance()->palette(this).brush(QPalette::WindowText));
    painter.end();
    QTreeView::paintEvent(event);
    paintEmptiness();
}

/// Says that there is nothing to choose from, once the list has come.
void BaseTableView::paintEmptiness()
{
    if (accessibleDescription().isEmpty()) {
        return;
    }
    QPainter painter(viewport());
    painter.setPen(VPaletteHelper::instance()->palette(this).color(VPalette::TipText));
    painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, accessibleDescription());
}

void BaseTableView::drawRow(QPainter* painter, const QStyleOptionViewItem& options, const QModelIndex& index) const
{
    const VPalette colors = VPaletteHelper::instance()->palette(this);
    const QColor base = rowColor(colors, index.row() % 2 != 0);
    const bool hover = indexAt(viewport()->mapFromGlobal(QCursor::pos())).row() == index.row() && underMouse();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(rowOpacity);
    painter->setPen(Qt::NoPen);
    if (selectionModel()->isRowSelected(index.row(), index.parent())) {
        painter->setBrush(VGuiApplicationHelper::adjustColor(base, selectionLightness));
    } else {
        painter->setBrush(hover ? VGuiApplicationHelper::adjustColor(base, hoverLightness) : base);
    }
    const QRectF row = QRectF(options.rect).adjusted(0, 1, 0, -1);
    painter->drawRoundedRect(row, VStyle::frameRadius - 2, VStyle::frameRadius - 2);
    painter->restore();

    QStyleOptionViewItem plain = options;
    plain.state.setFlag(QStyle::State_HasFocus, false);
    QTreeView::drawRow(painter, plain, index);
    if (hasFocus() && currentIndex().row() == index.row()) {
        VStyle::drawFocusRing(painter, row, VStyle::frameRadius - 2, colors);
    }
}
