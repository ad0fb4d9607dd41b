// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/listcarddelegate.h"

#include "platform/velk/VListView.h"
#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"

#include <QPainter>

namespace {

constexpr int iconExtent = 32;
constexpr int markExtent = 20;

void drawCard(QPainter* painter, const QRectF& box, const VPalette& colors, bool hover, bool chosen)
{
    const auto edge = chosen ? VPalette::FocusRing : VPalette::FrameBorder;
    painter->setPen(QPen(colors.color(edge), chosen ? 2 : 1));
    painter->setBrush(colors.color(hover ? VPalette::HoverBackground : VPalette::ItemBackground));
    painter->drawRoundedRect(box, VStyle::frameRadius, VStyle::frameRadius);
}

// A check mark beside the coloured edge, because a colour alone must not tell what is chosen.
void drawMark(QPainter* painter, const QRect& box, const VPalette& colors)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(colors.color(QPalette::Highlight));
    painter->drawEllipse(box);
    const QPointF origin = box.topLeft();
    const QPointF tick[] = {origin + QPointF(5.5, 10.5), origin + QPointF(8.7, 13.6), origin + QPointF(14.5, 7.2)};
    painter->setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(tick, 3);
}

} // namespace

ListCardDelegate::ListCardDelegate(VListView* view)
    : QStyledItemDelegate(view)
    , m_view(view)
{ }

void ListCardDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (m_view->backgroundType() == VListView::ClipCornerBackground) {
        return; // the widget of the item draws everything
    }
    const VPalette colors = VPaletteHelper::instance()->palette(m_view);
    const bool chosen = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    // The beginning of an item, in either direction of writing, lies under the margin of the viewport.
    const QRectF box = QRectF(option.rect).adjusted(8.5, 1.5, -0.5, -1.5);
    const QRect inside = box.toRect();
    const auto visual = [&](const QRect& place) { return QStyle::visualRect(option.direction, inside, place); };
    drawCard(painter, box, colors, option.state.testFlag(QStyle::State_MouseOver) && enabled, chosen);

    QRect content = inside.adjusted(VStyle::spaceMedium, 0, -VStyle::spaceMedium, 0);
    const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
    if (!icon.isNull()) {
        const QRect place(content.left(), content.center().y() - (iconExtent / 2) + 1, iconExtent, iconExtent);
        icon.paint(painter, visual(place));
        content.setLeft(place.right() + VStyle::spaceMedium);
    }
    if (chosen) {
        const QRect place(
            content.right() - markExtent, content.center().y() - (markExtent / 2) + 1, markExtent, markExtent);
        drawMark(painter, visual(place), colors);
        content.setRight(place.left() - VStyle::spaceSmall);
    }
    painter->setPen(colors.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    const int alignment = static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter));
    const QString text = index.data(Qt::DisplayRole).toString();
    painter->drawText(visual(content), alignment | Qt::TextWordWrap, text);
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        VStyle::drawFocusRing(painter, box.adjusted(3, 3, -3, -3), VStyle::frameRadius - 3, colors);
    }
    painter->restore();
}

QSize ListCardDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    return m_view->itemSize().isEmpty() ? QStyledItemDelegate::sizeHint(option, index) : m_view->itemSize();
}
