// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>

/// The look that the whole program has: light or dark, with or without motion.
class VGuiApplicationHelper
{
public:
    enum ColorType { UnknownType, LightType, DarkType };

    VGuiApplicationHelper() = delete;

    /// The look that the application's palette has.
    [[nodiscard]] static ColorType themeType();

    /// Gives the application the light or the dark palette; UnknownType changes nothing.
    static void setPaletteType(ColorType type);

    /// The look to begin with: what KESTRO_THEME ("light" or "dark") asks for, else that of @p platformPalette.
    [[nodiscard]] static ColorType preferredType(const QPalette& platformPalette);

    /// DarkType when @p palette writes light text on a dark window.
    [[nodiscard]] static ColorType toColorType(const QPalette& palette);

    /// @p base with its HSL lightness moved by @p steps of 255, as far as that goes. Hue and alpha stay.
    [[nodiscard]] static QColor adjustColor(const QColor& base, int steps);

    /// @p upper painted over an opaque @p lower.
    [[nodiscard]] static QColor blendColor(const QColor& lower, const QColor& upper);

    /// The platform theme, or KESTRO_REDUCED_MOTION=1, asks for a still interface.
    [[nodiscard]] static bool reducedMotion();
};
