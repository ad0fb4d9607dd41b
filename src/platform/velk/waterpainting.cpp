// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/waterpainting.h"

#include "platform/velk/VPalette.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace {

constexpr int segments = 24;
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

// The surface from left to right, then down around the bottom of the box.
QPolygonF waterBelow(const QRectF& box, const WaterPainting::Water& water, const Wave& wave)
{
    // Waves lie flat at both ends, so that 0 is empty and 100 is full.
    const qreal calm = std::sqrt(qMax<qreal>(0, water.level * (1 - water.level)) * 4);
    const qreal surface = box.bottom() - (box.height() * water.level);
    QPolygonF shape;
    shape.reserve(segments + 3);
    for (int i = 0; i <= segments; ++i) {
        const qreal across = static_cast<qreal>(i) / segments;
        const qreal turn = (across * wave.lengths) + (water.phase * wave.turns) + wave.offset;
        const qreal rise = std::sin(turn * 2 * std::numbers::pi) * wave.height * box.height() * calm;
        shape.append({box.left() + (across * box.width()), surface - rise});
    }
    shape.append(box.bottomRight());
    shape.append(box.bottomLeft());
    return shape;
}

QColor withAlpha(QColor color, float alpha)
{
    color.setAlphaF(alpha);
    return color;
}

} // namespace

namespace WaterPainting {

void paintVessel(QPainter* painter, const QRectF& vessel, const Water& water, const VPalette& palette)
{
    const QColor accent = palette.color(QPalette::Highlight);
    const qreal inset = wall / 2;
    painter->save();
    painter->setPen(QPen(withAlpha(accent, 0.35F), wall));
    painter->setBrush(palette.color(VPalette::ItemBackground));
    painter->drawEllipse(vessel.adjusted(inset, inset, -inset, -inset));

    const qreal inner = wall + gap;
    const QRectF box = vessel.adjusted(inner, inner, -inner, -inner);
    QPainterPath bowl;
    bowl.addEllipse(box);
    QPainterPath back;
    back.addPolygon(waterBelow(box, water, backWave));
    QPainterPath front;
    front.addPolygon(waterBelow(box, water, frontWave));
    QLinearGradient depth(box.topLeft(), box.bottomLeft());
    depth.setColorAt(0, accent.lighter(118));
    depth.setColorAt(1, accent);
    painter->setPen(Qt::NoPen);
    painter->fillPath(bowl, withAlpha(accent, 0.08F));
    // The intersection keeps the edge of the water smooth, which clipping would not.
    painter->fillPath(bowl.intersected(back), withAlpha(accent, 0.45F));
    painter->fillPath(bowl.intersected(front), depth);
    painter->restore();
}

void paintText(QPainter* painter, const QRectF& vessel, const QString& text, const VPalette& palette)
{
    QFont font = painter->font();
    font.setWeight(QFont::DemiBold);
    const QFontMetricsF metrics(font);
    const QPointF origin(vessel.center().x() - (metrics.horizontalAdvance(text) / 2),
        vessel.center().y() + ((metrics.ascent() - metrics.descent()) / 2));
    QPainterPath letters;
    letters.addText(origin, font, text);
    // A halo in the colour of the vessel keeps the letters apart from the water behind them.
    painter->strokePath(letters,
        QPen(withAlpha(palette.color(VPalette::ItemBackground), 0.9F), 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->fillPath(letters, palette.color(VPalette::TitleText));
}

} // namespace WaterPainting
