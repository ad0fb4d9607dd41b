// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPixmap>
#include <QString>

class QPainter;
class VPalette;

/// The picture of VWaterProgress.
namespace WaterPainting {

/// What changes from frame to frame.
struct Water
{
    double level = 0; ///< share of the vessel that is full, 0 to 1
    double phase = 0; ///< of the waves, in turns, 0 to 1
};

/// What stays from frame to frame: painting it anew would cost most of a frame's time.
struct Pictures
{
    QPixmap vessel; ///< the empty vessel
    QPixmap water;  ///< a vessel full of water, without the vessel
};

/// The pictures of a vessel that is @p extent device-independent pixels wide, at the device pixel ratio @p ratio.
[[nodiscard]] Pictures picturesOf(int extent, qreal ratio, const VPalette& palette);

/// Paints the round vessel inside the square @p vessel, with two waves on the water.
void paintVessel(
    QPainter* painter, const QRect& vessel, const Pictures& pictures, const Water& water, const VPalette& palette);

/// Paints @p text in the middle of the vessel, in the painter's font: in the colour of titles above the water and white
/// in it.
void paintText(
    QPainter* painter, const QRect& vessel, const Water& water, const QString& text, const VPalette& palette);

} // namespace WaterPainting
