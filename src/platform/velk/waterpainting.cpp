// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/waterpainting.h"

#include "platform/velk/VPalette.h"

#include <QPainter>
#include <QPainterPath>

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

qreal surfaceAt(const QRectF& box, const WaterPainting::Water& water, const Wave& wave, qreal across)
{
    // Waves lie flat at both ends, so that 0 is empty and 100 is full.
    const qreal calm = std::sqrt(qMax<qreal>(0, water.level * (1 - water.level)) * 4);
    const qreal turn = (across * wave.lengths) + (water.phase * wave.turns) + wave.offset;
    const qreal rise = std::sin(turn * 2 * std::numbers::pi) * wave.height * calm;
    return box.bottom() - (box.height() * (water.level + rise));
}

// The water inside the circle that fills box: from left to right along the surface, and back along the bottom. Cutting
// it here is much cheaper than intersecting paths, and its edge is smooth, which that of a clip is not.
QPolygonF waterInside(const QRectF& box, const WaterPainting::Water& water, const Wave& wave)
{
    const qreal radius = box.width() / 2;
    QPolygonF surface;
    QPolygonF bottom;
    for (int i = 0; i <= segments; ++i) {
        // Steps of an angle follow the circle closely at its steep ends.
        const qreal angle = std::numbers::pi * i / segments;
        const qreal x = box.center().x() - (radius * std::cos(angle));
        const qreal half = radius * std::sin(angle);
        const qreal y = surfaceAt(box, water, wave, (x - box.left()) / box.width());
        surface.append({x, qBound(box.center().y() - half, y, box.center().y() + half)});
        bottom.prepend({x, box.center().y() + half});
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

} // namespace

namespace WaterPainting {

void paintVessel(QPainter* painter, const QRectF& vessel, const Water& water, const VPalette& palette)
{
    const QColor accent = palette.color(QPalette::Highlight);
    const QRectF bowl = bowlOf(vessel);
    const qreal inset = wall / 2;
    painter->save();
    painter->setPen(QPen(withAlpha(accent, 0.35F), wall));
    painter->setBrush(palette.color(VPalette::ItemBackground));
    painter->drawEllipse(vessel.adjusted(inset, inset, -inset, -inset));
    painter->setPen(Qt::NoPen);
    painter->setBrush(withAlpha(accent, 0.08F));
    painter->drawEllipse(bowl);
    painter->setBrush(withAlpha(accent, 0.45F));
    painter->drawPolygon(waterInside(bowl, water, backWave));
    QLinearGradient depth(bowl.topLeft(), bowl.bottomLeft());
    depth.setColorAt(0, accent.lighter(110));
    depth.setColorAt(1, accent);
    painter->setBrush(depth);
    painter->drawPolygon(waterInside(bowl, water, frontWave));
    painter->restore();
}

void paintText(
    QPainter* painter, const QRectF& vessel, const Water& water, const QString& text, const VPalette& palette)
{
    const QFontMetricsF metrics(painter->font());
    const QPointF origin(vessel.center().x() - (metrics.horizontalAdvance(text) / 2),
        vessel.center().y() + ((metrics.ascent() - metrics.descent()) / 2));
    QPainterPath flooded;
    flooded.addPolygon(waterInside(bowlOf(vessel), water, frontWave));
    QPainterPath dry;
    dry.addRect(vessel);
    dry.addPath(flooded); // odd-even: the vessel without the water
    painter->setPen(palette.color(VPalette::TitleText));
    painter->setClipPath(dry);
    painter->drawText(origin, text);
    painter->setClipPath(flooded);
    painter->setPen(Qt::white);
    painter->drawText(origin, text);
    painter->setClipping(false);
}

} // namespace WaterPainting
