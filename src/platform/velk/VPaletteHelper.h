// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/VPalette.h"

class QWidget;

/// Where widgets get their full palette from.
class VPaletteHelper
{
public:
    static VPaletteHelper* instance();

    /// The palette of @p widget, with its current colour group; the application's when @p widget is null.
    [[nodiscard]] VPalette palette(const QWidget* widget) const;

private:
    VPaletteHelper() = default;
};
