// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/BaseItemDelegate.h"

#include "platform/velk/VGuiApplicationHelper.h"
#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

constexpr int rowHeight = 36;
constexpr int textMargin = VStyle::spaceMedium;
constexpr float highlightAlpha = 0.1F;
constexpr int darkening = -40;

enum Corners { NoCorners = 0, LeftCorners = 1, RightCorners = 2, AllCorners = 3 };

// The corners that a cell rounds: the row is one shape, whatever the number of its cells.
int cornersOf(const QStyleOptionViewItem& option)
{
    const bool mirrored = option.direction == Qt::RightToLeft;
    switch (option.viewItemPosition) {
    case QStyleOptionViewItem::Beginning:
        return mirrored ? RightCorners : LeftCorners;
    case QStyleOptionViewItem::Middle:
        return NoCorners;
    case QStyleOptionViewItem::End:
        return mirrored ? LeftCorners : RightCorners;
    default:
        return AllCorners;
    }
}

QPainterPath cellShape(const QRectF& box, int corners)
{
    constexpr qreal radius = VStyle::frameRadius - 2;
    QPainterPath shape;
    shape.addRoundedRect(box, radius, radius);
    shape.setFillRule(Qt::WindingFill);
    if ((corners & LeftCorners) == 0) {
        shape.addRect(box.adjusted(0, 0, -radius, 0));
    }
    if ((corners & RightCorners) == 0) {
        shape.addRect(box.adjusted(radius, 0, 0, 0));
    }
    return shape.simplified();
}

QColor selectionColor(const VPalette& colors)
{
    QColor accent = colors.color(QPalette::Highlight);
    accent.setAlphaF(highlightAlpha);
    const QColor background = colors.color(VPalette::ItemBackground);
    return VGuiApplicationHelper::blendColor(VGuiApplicationHelper::adjustColor(background, darkening), accent);
}

int alignmentOf(const QStyleOptionViewItem& option)
{
    return static_cast<int>(QStyle::visualAlignment(option.direction, Qt::AlignLeft | Qt::AlignVCenter));
}

/// A colour alone must not tell which row is chosen; but no name is shortened only for being bold, because its tool tip
/// comes by its plain width.
QFont fontOf(const QStyleOptionViewItem& option, const QString& text)
{
    QFont plain = option.font;
    plain.setWeight(QFont::Normal);
    if (!option.state.testFlag(QStyle::State_Selected)) {
        return plain;
    }
    QFont bold = plain;
    bold.setWeight(QFont::DemiBold);
    const int room = option.rect.width();
    const bool fits = QFontMetrics(bold).horizontalAdvance(text) <= room;
    return fits || QFontMetrics(plain).horizontalAdvance(text) > room ? bold : plain;
}

void paintText(QPainter* painter, const QStyleOptionViewItem& option, const QString& text, const VPalette& colors)
{
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    painter->setPen(colors.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Text));
    const QFont font = fontOf(option, text);
    painter->setFont(font);
    painter->setLayoutDirection(Qt::LeftToRight); // else the first slash of a path goes to its end
    const QFontMetrics metrics(font);
    const QRect inner = option.rect.adjusted(textMargin, 0, -textMargin, 0);
    // Rather no margin than a shortened text: up to the cell's width there is no tool tip to read it in.
    const int width = metrics.horizontalAdvance(text);
    const QRect place = width > inner.width() && width <= option.rect.width() ? option.rect : inner;
    painter->drawText(place, alignmentOf(option), metrics.elidedText(text, Qt::ElideMiddle, place.width()));
}

} // namespace

BaseItemDelegate::BaseItemDelegate(QObject* parent)
    : QItemDelegate(parent)
{ }

void BaseItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const VPalette colors(option.palette);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setOpacity(1.0);
    if (option.state.testFlag(QStyle::State_Selected)) {
        painter->fillPath(
            cellShape(QRectF(option.rect).adjusted(0, 1, 0, -1), cornersOf(option)), selectionColor(colors));
    }
    paintText(painter, option, index.data(Qt::DisplayRole).toString(), colors);
    painter->restore();
}

QSize BaseItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QSize natural = QItemDelegate::sizeHint(option, index);
    return {natural.width() + (2 * textMargin), qMax(natural.height(), rowHeight)};
}

bool BaseItemDelegate::helpEvent(
    QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event == nullptr || view == nullptr || event->type() != QEvent::ToolTip) {
        return QItemDelegate::helpEvent(event, view, option, index);
    }
    const QString text = index.data(Qt::DisplayRole).toString();
    const QRect cell = option.rect;
    const int width = QFontMetrics(view->font()).boundingRect({}, Qt::TextSingleLine, text).width();
    if (width > cell.right() - cell.left() + 1) {
        QToolTip::showText(event->globalPos(), u"<div>%1</div>"_s.arg(text.toHtmlEscaped()), view);
    } else {
        QToolTip::hideText();
    }
    return true;
}
