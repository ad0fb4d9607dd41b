// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/stylepainting.h"

#include "platform/velk/VGuiApplicationHelper.h"
#include "platform/velk/VPalette.h"
#include "platform/velk/VStyle.h"

#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QRegion>
#include <QStyleOption>
#include <QtMath>

#include <cmath>

namespace {

constexpr qreal buttonRadius = VStyle::frameRadius - 2;
constexpr qreal checkRadius = 4;
constexpr qreal dialogRadius = VStyle::frameRadius + 4;

QColor interactive(const QColor& color, QStyle::State state)
{
    if (!state.testFlag(QStyle::State_Enabled)) {
        return color;
    }
    if (state.testFlag(QStyle::State_Sunken)) {
        return VGuiApplicationHelper::adjustColor(color, -24);
    }
    return state.testFlag(QStyle::State_MouseOver) ? VGuiApplicationHelper::adjustColor(color, -12) : color;
}

// The ring of the focus lies around the indicator, inside the room that the style gives it.
QRectF indicatorBox(const QStyleOption& option)
{
    return QRectF(option.rect).adjusted(4, 4, -4, -4);
}

// Outline and background of an indicator: outlined while off, filled while on.
void prepareIndicator(QPainter* painter, const QStyleOption& option, const VPalette& palette, bool on)
{
    painter->setRenderHint(QPainter::Antialiasing);
    if (on) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(interactive(palette.color(QPalette::Highlight), option.state));
        return;
    }
    const bool hover = option.state.testFlag(QStyle::State_MouseOver);
    painter->setPen(QPen(palette.color(hover ? VPalette::FocusRing : VPalette::ControlBorder), 1.5));
    painter->setBrush(palette.color(QPalette::Base));
}

void focusAround(
    QPainter* painter, const QStyleOption& option, const QRectF& box, qreal radius, const VPalette& palette)
{
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        StylePainting::focusRing(painter, box.adjusted(-4, -4, 4, 4), radius + 3, palette);
    }
}

QRect along(const QStyleOptionSlider& option, int from, int length)
{
    return option.orientation == Qt::Vertical ? QRect(0, from, option.rect.width(), length)
                                              : QRect(from, 0, length, option.rect.height());
}

} // namespace

namespace StylePainting {

void focusRing(QPainter* painter, const QRectF& rect, qreal radius, const VPalette& palette)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(palette.color(VPalette::FocusRing), 2));
    painter->drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius, radius);
    painter->restore();
}

void buttonPanel(QPainter* painter, const QStyleOption& option, const VPalette& palette, const QColor& fill)
{
    const bool focus = option.state.testFlag(QStyle::State_HasFocus);
    const QRectF box = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(interactive(fill, option.state));
    // With the focus the panel shrinks a little, so that a gap keeps the ring apart from a fill of its colour.
    const qreal gap = focus ? 3.5 : 0;
    painter->drawRoundedRect(box.adjusted(gap, gap, -gap, -gap), buttonRadius - (gap / 2), buttonRadius - (gap / 2));
    painter->restore();
    if (focus) {
        focusRing(painter, box, buttonRadius, palette);
    }
}

void iconAndText(QPainter* painter, const QStyleOptionButton& button, const VPalette& palette)
{
    const QSize icon = button.iconSize;
    const int textWidth = button.fontMetrics.horizontalAdvance(button.text);
    QRect both(0, 0, icon.width() + VStyle::spaceSmall + textWidth, qMax(icon.height(), button.fontMetrics.height()));
    both.moveCenter(button.rect.center());
    const QRect iconPlace(both.left(), both.center().y() - (icon.height() / 2), icon.width(), icon.height());
    const QColor color = palette.color(QPalette::ButtonText);
    painter->drawPixmap(QStyle::visualRect(button.direction, both, iconPlace),
        tinted(button.icon, icon, painter->device()->devicePixelRatio(), color));
    painter->setPen(color);
    const QRect textPlace = both.adjusted(icon.width() + VStyle::spaceSmall, 0, 0, 0);
    painter->drawText(QStyle::visualRect(button.direction, both, textPlace), Qt::AlignCenter, button.text);
}

QPixmap tinted(const QIcon& icon, const QSize& size, qreal ratio, const QColor& color)
{
    QPixmap pixmap = icon.pixmap(size, ratio);
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    return pixmap;
}

void dialogPanel(QPainter* painter, const QRect& rect, const VPalette& palette)
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(palette.color(VPalette::ControlBorder));
    painter->setBrush(palette.color(QPalette::Window));
    painter->drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), dialogRadius, dialogRadius);
    painter->restore();
}

QRegion dialogShape(const QRect& rect)
{
    const int radius = qCeil(dialogRadius);
    QRegion shape(rect.adjusted(0, radius, 0, -radius));
    for (int row = 0; row < radius; ++row) {
        const qreal fromCentre = radius - row - 0.5;
        const int inset = qCeil(radius - std::sqrt((radius * radius) - (fromCentre * fromCentre)));
        const int width = rect.width() - (2 * inset);
        shape += QRect(rect.left() + inset, rect.top() + row, width, 1);
        shape += QRect(rect.left() + inset, rect.bottom() - row, width, 1);
    }
    return shape;
}

void checkBox(QPainter* painter, const QStyleOption& option, const VPalette& palette)
{
    const bool on = option.state.testFlag(QStyle::State_On);
    const QRectF box = indicatorBox(option);
    painter->save();
    prepareIndicator(painter, option, palette, on);
    painter->drawRoundedRect(box, checkRadius, checkRadius);
    if (on) {
        const QPointF tick[] = {box.topLeft() + (QPointF(0.22, 0.52) * box.width()),
            box.topLeft() + (QPointF(0.42, 0.72) * box.width()), box.topLeft() + (QPointF(0.78, 0.30) * box.width())};
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPolyline(tick, 3);
    }
    painter->restore();
    focusAround(painter, option, box, checkRadius, palette);
}

void radioButton(QPainter* painter, const QStyleOption& option, const VPalette& palette)
{
    const bool on = option.state.testFlag(QStyle::State_On);
    const QRectF box = indicatorBox(option);
    painter->save();
    prepareIndicator(painter, option, palette, on);
    painter->drawEllipse(box);
    if (on) {
        const qreal inset = box.width() * 0.3;
        painter->setBrush(Qt::white);
        painter->drawEllipse(box.adjusted(inset, inset, -inset, -inset));
    }
    painter->restore();
    focusAround(painter, option, box, box.width() / 2, palette);
}

void frame(QPainter* painter, const QStyleOption& option, const VPalette& palette)
{
    const bool focus = option.state.testFlag(QStyle::State_HasFocus);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(palette.color(focus ? VPalette::FocusRing : VPalette::ControlBorder));
    painter->setBrush(palette.color(QPalette::Base));
    painter->drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), buttonRadius, buttonRadius);
    painter->restore();
}

void lineEdit(QPainter* painter, const QStyleOption& option, const VPalette& palette, bool alert)
{
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
    if (frame != nullptr && frame->lineWidth == 0) {
        painter->fillRect(option.rect, palette.color(QPalette::Base));
        return;
    }
    const bool focus = option.state.testFlag(QStyle::State_HasFocus);
    const auto edge = focus ? VPalette::FocusRing : VPalette::ControlBorder;
    const qreal width = focus || alert ? 2 : 1;
    const qreal inset = width / 2;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(palette.color(alert ? VPalette::ErrorText : edge), width));
    painter->setBrush(palette.color(QPalette::Base));
    painter->drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), buttonRadius, buttonRadius);
    painter->restore();
}

void scrollHandle(QPainter* painter, const QStyleOptionSlider& option, const QRect& handle, const VPalette& palette)
{
    const bool active = option.state.testFlag(QStyle::State_MouseOver) || option.state.testFlag(QStyle::State_Sunken);
    const QRectF box = QRectF(handle).adjusted(2, 2, -2, -2);
    const qreal radius = qMin(box.width(), box.height()) / 2;
    QColor fill = palette.color(VPalette::ControlBorder);
    fill.setAlphaF(active ? 1.0F : 0.7F);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(fill);
    painter->drawRoundedRect(box, radius, radius);
    painter->restore();
}

QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part, int minimumLength)
{
    const int length = option.orientation == Qt::Vertical ? option.rect.height() : option.rect.width();
    const int range = option.maximum - option.minimum;
    const int natural = static_cast<int>(qint64(length) * option.pageStep / qMax(1, range + option.pageStep));
    const int handle = range == 0 ? length : qBound(qMin(minimumLength, length), natural, length);
    const int from = QStyle::sliderPositionFromValue(
        option.minimum, option.maximum, option.sliderPosition, length - handle, option.upsideDown);
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return along(option, 0, length);
    case QStyle::SC_ScrollBarSlider:
        return along(option, from, handle);
    case QStyle::SC_ScrollBarSubPage:
        return along(option, 0, from);
    case QStyle::SC_ScrollBarAddPage:
        return along(option, from + handle, length - from - handle);
    default:
        return {};
    }
}

} // namespace StylePainting
