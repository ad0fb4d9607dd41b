// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QPainter;
class QRectF;
class VPalette;

/// The picture of VWaterProgress.
namespace WaterPainting {

/// What changes from frame to frame.
struct Water
{
    double level = 0; ///< share of the vessel that is full, 0 to 1
    double phase = 0; ///< of the waves, in turns, 0 to 1
};

/// Paints the round vessel inside the square @p vessel, with two waves on the water.
void paintVessel(QPainter* painter, const QRectF& vessel, const Water& water, const VPalette& palette);

/// Paints @p text in the middle of the vessel, in the painter's font: dark above the water and white in it, or light
/// and white in the dark palette.
void paintText(
    QPainter* painter, const QRectF& vessel, const Water& water, const QString& text, const VPalette& palette);

} // namespace WaterPainting
