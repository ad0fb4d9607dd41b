// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/waterpainting.h"

#include "platform/velk/VPalette.h"

#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <cmath>
#include <numbers>

namespace {

constexpr int segments = 40;
constexpr qreal wall = 3;
constexpr qreal gap = 4;

struct Wave
{
    qreal height;  ///< share of the vessel's diameter
    qreal lengths; ///< wave lengths across the vessel
    qreal turns;   ///< how often it passes in one turn of the phase; a whole number, or it would jump
    qreal offset;
};

constexpr Wave backWave = {0.030, 1.1, -1, 0.35};
constexpr Wave frontWave = {0.038, 0.9, 1, 0.0};

qreal surfaceAt(const QRectF& bowl, const WaterPainting::Water& water, const Wave& wave, qreal x)
{
    // Waves lie flat at both ends, so that 0 is empty and 100 is full.
    const qreal calm = std::sqrt(qMax<qreal>(0, water.level * (1 - water.level)) * 4);
    const qreal across = (x - bowl.left()) / bowl.width();
    const qreal turn = (across * wave.lengths) + (water.phase * wave.turns) + wave.offset;
    const qreal rise = std::sin(turn * 2 * std::numbers::pi) * wave.height * calm;
    return bowl.bottom() - (bowl.height() * (water.level + rise));
}

// Below this whole pixel no wave is seen.
int stillWaterTop(const QRectF& bowl, const WaterPainting::Water& water)
{
    const qreal trough = bowl.bottom() - (bowl.height() * (water.level - frontWave.height));
    return qCeil(qBound(bowl.top(), trough, bowl.bottom()));
}

// The water of a wave down to "floor", inside the circle that fills the bowl: from left to right along the surface and
// back along the bottom. Cutting it here is much cheaper than intersecting paths, and its edge is smooth, which that of
// a clip is not.
QPolygonF waterAbove(int floor, const QRectF& bowl, const WaterPainting::Water& water, const Wave& wave)
{
    const qreal radius = bowl.width() / 2;
    const QPointF center = bowl.center();
    QPolygonF surface;
    QPolygonF bottom;
    for (int i = 0; i <= segments; ++i) {
        // Steps of an angle follow the circle closely at its steep ends.
        const qreal angle = std::numbers::pi * i / segments;
        const qreal x = center.x() - (radius * std::cos(angle));
        const qreal half = radius * std::sin(angle);
        const qreal deepest = qBound(center.y() - half, qreal(floor), center.y() + half);
        surface.append({x, qBound(center.y() - half, surfaceAt(bowl, water, wave, x), deepest)});
        bottom.prepend({x, deepest});
    }
    return surface + bottom;
}

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

QRectF bowlOf(const QRectF& vessel)
{
    constexpr qreal inner = wall + gap;
    return vessel.adjusted(inner, inner, -inner, -inner);
}

QBrush waterBrush(const QRectF& bowl, const VPalette& palette)
{
    const QColor accent = palette.color(QPalette::Highlight);
    QLinearGradient depth(bowl.topLeft(), bowl.bottomLeft());
    depth.setColorAt(0, accent.lighter(110));
    depth.setColorAt(1, accent);
    return depth;
}

QPixmap blank(int extent, qreal ratio)
{
    QPixmap picture(QSize(extent, extent) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    return picture;
}

// The part of the text's box that lies under the front wave.
QPainterPath floodedPart(const QRectF& box, const QRectF& bowl, const WaterPainting::Water& water)
{
    constexpr int steps = 16;
    QPolygonF flooded;
    for (int i = 0; i <= steps; ++i) {
        const qreal x = box.left() + (box.width() * i / steps);
        flooded.append({x, qBound(box.top(), surfaceAt(bowl, water, frontWave, x), box.bottom())});
    }
    flooded.append(box.bottomRight());
    flooded.append(box.bottomLeft());
    QPainterPath path;
    path.addPolygon(flooded);
    path.closeSubpath();
    return path;
}

} // namespace

namespace WaterPainting {

Pictures picturesOf(int extent, qreal ratio, const VPalette& palette)
{
    const QColor accent = palette.color(QPalette::Highlight);
    const QRectF vessel(0, 0, extent, extent);
    const QRectF bowl = bowlOf(vessel);
    const qreal inset = wall / 2;
    Pictures pictures = {blank(extent, ratio), blank(extent, ratio)};
    QPainter painter(&pictures.vessel);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(withAlpha(accent, 0.35F), wall));
    painter.setBrush(palette.color(VPalette::ItemBackground));
    painter.drawEllipse(vessel.adjusted(inset, inset, -inset, -inset));
    painter.setPen(Qt::NoPen);
    painter.setBrush(withAlpha(accent, 0.08F));
    painter.drawEllipse(bowl);
    painter.end();
    painter.begin(&pictures.water);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(waterBrush(bowl, palette));
    painter.drawEllipse(bowl);
    return pictures;
}

void paintVessel(
    QPainter* painter, const QRect& vessel, const Pictures& pictures, const Water& water, const VPalette& palette)
{
    const QRectF bowl = bowlOf(vessel);
    const int floor = stillWaterTop(bowl, water);
    painter->drawPixmap(vessel.topLeft(), pictures.vessel);
    const qreal ratio = pictures.water.devicePixelRatio();
    const int above = floor - vessel.top();
    painter->drawPixmap(QRectF(vessel.left(), floor, vessel.width(), vessel.height() - above), pictures.water,
        QRectF(0, above * ratio, vessel.width() * ratio, (vessel.height() - above) * ratio));
    painter->setPen(Qt::NoPen);
    painter->setBrush(withAlpha(palette.color(QPalette::Highlight), 0.45F));
    painter->drawPolygon(waterAbove(floor, bowl, water, backWave));
    painter->setBrush(waterBrush(bowl, palette));
    painter->drawPolygon(waterAbove(floor, bowl, water, frontWave));
}

void paintText(QPainter* painter, const QRect& vessel, const Water& water, const QString& text, const VPalette& palette)
{
    const QFontMetricsF metrics(painter->font());
    const qreal width = metrics.horizontalAdvance(text);
    const QPointF center = QRectF(vessel).center();
    const QPointF origin(center.x() - (width / 2), center.y() + ((metrics.ascent() - metrics.descent()) / 2));
    const QRectF box(origin.x(), origin.y() - metrics.ascent(), width, metrics.height());
    const QPainterPath flooded = floodedPart(box, bowlOf(vessel), water);
    QPainterPath dry;
    dry.addRect(box);
    dry.addPath(flooded); // odd-even: the box without the water
    painter->setPen(palette.color(VPalette::TitleText));
    painter->setClipPath(dry);
    painter->drawText(origin, text);
    painter->setClipPath(flooded);
    painter->setPen(Qt::white);
    painter->drawText(origin, text);
    painter->setClipping(false);
}

} // namespace WaterPainting
