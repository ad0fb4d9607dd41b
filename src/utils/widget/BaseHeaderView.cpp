// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/BaseHeaderView.h"

#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"

#include <QPainter>

namespace {

constexpr int headerHeight = 32;
constexpr qreal arrowExtent = 4;

// Which way a column is sorted, as a small arrow.
void paintArrow(QPainter* painter, const QPointF& center, bool descending)
{
    const qreal tip = descending ? arrowExtent / 2 : -arrowExtent / 2;
    const QPointF arrow[] = {
        center + QPointF(-arrowExtent, -tip), center + QPointF(0, tip), center + QPointF(arrowExtent, -tip)};
    painter->save();
    painter->setPen(QPen(painter->pen().color(), 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPolyline(arrow, 3);
    painter->restore();
}

} // namespace

BaseHeaderView::BaseHeaderView(Qt::Orientation orientation, QWidget* parent)
    : QHeaderView(orientation, parent)
{
    viewport()->setAutoFillBackground(false);
    setSectionsClickable(true);
    setHighlightSections(false);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

QSize BaseHeaderView::sizeHint() const
{
    return {QHeaderView::sizeHint().width(), headerHeight};
}

void BaseHeaderView::paintEvent(QPaintEvent* /*event*/)
{
    const VPalette colors = VPaletteHelper::instance()->palette(this);
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(1.0);
    painter.fillRect(viewport()->rect(), colors.itemBackground());
    painter.setPen(colors.color(VPalette::FrameBorder));
    const QRectF box = viewport()->rect();
    painter.drawLine(box.bottomLeft() + QPointF(0, -0.5), box.bottomRight() + QPointF(0, -0.5));
    painter.setPen(colors.color(QPalette::Text));
    for (int visual = 0; visual < count(); ++visual) {
        paintSection(&painter, logicalIndex(visual));
    }
}

void BaseHeaderView::paintSection(QPainter* painter, int logicalIndex) const
{
    const QRect section(sectionViewportPosition(logicalIndex), 0, sectionSize(logicalIndex), viewport()->height());
    const QRect place = section.adjusted(VStyle::spaceMedium, 0, -VStyle::spaceMedium, 0);
    const QString text = model()->headerData(logicalIndex, orientation(), Qt::DisplayRole).toString();
    const auto alignment = QStyle::visualAlignment(layoutDirection(), defaultAlignment());
    QFont bold = font();
    bold.setWeight(QFont::DemiBold);
    painter->setFont(bold);
    painter->drawText(place, static_cast<int>(alignment), text);
    if (isSortIndicatorShown() && sortIndicatorSection() == logicalIndex) {
        const int end = layoutDirection() == Qt::RightToLeft ? place.left() + VStyle::spaceSmall
                                                             : place.right() - VStyle::spaceSmall;
        paintArrow(painter, QPointF(end, place.center().y() + 0.5), sortIndicatorOrder() == Qt::DescendingOrder);
    }
}
