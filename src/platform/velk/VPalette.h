// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPalette>

/// A widget's palette with the colours that Qt's roles do not have.
///
/// The further colours belong to the light or the dark palette, whichever the given palette is nearer to, so that a
/// widget with a palette of its own is drawn in readable colours too.
class VPalette : public QPalette
{
public:
    /// The further colours. The values of the first three and of HoverBackground are fixed.
    enum ColorType {
        NoType = 0,
        ItemBackground = 1,   ///< cards and rows that lie on the window
        TitleText = 2,        ///< headings
        TipText = 3,          ///< explanations, at least 4.5:1 on window and cards
        ErrorText = 4,        ///< refusals and failures, at least 4.5:1 on window and cards
        AccentText = 5,       ///< text and marks in the accent colour
        SuccessText = 6,      ///< good news
        WarningButton = 7,    ///< fill of the button that destroys something; its text is white
        FrameBorder = 8,      ///< hairlines between and around cards
        ControlBorder = 9,    ///< outline of what can be operated, at least 3:1 on window and cards
        FocusRing = 10,       ///< at least 3:1 on window and cards
        HoverBackground = 11, ///< a card under the pointer
        ColorTypeCount
    };

    VPalette() = default;
    explicit VPalette(const QPalette& palette);

    using QPalette::brush;
    using QPalette::color;

    /// @p type's colour in @p group; disabled colours are paler, but for backgrounds, tips and errors. NoType gives an
    /// invalid colour.
    [[nodiscard]] QColor color(ColorGroup group, ColorType type) const;
    /// @p type's colour in the current colour group.
    [[nodiscard]] QColor color(ColorType type) const;
    [[nodiscard]] QBrush brush(ColorGroup group, ColorType type) const;
    /// The brush that fills cards and rows, in the current colour group.
    [[nodiscard]] QBrush itemBackground() const;

    /// The whole palette of the light or the dark look.
    [[nodiscard]] static QPalette standard(bool dark);
};
