// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VPaletteHelper.h"

#include <QGuiApplication>
#include <QWidget>

VPaletteHelper* VPaletteHelper::instance()
{
    static VPaletteHelper helper;
    return &helper;
}

// A member because callers ask the instance.
VPalette VPaletteHelper::palette(const QWidget* widget) const // NOLINT(readability-convert-member-functions-to-static)
{
    VPalette palette(widget != nullptr ? widget->palette() : QGuiApplication::palette());
    if (widget != nullptr && !widget->isEnabled()) {
        palette.setCurrentColorGroup(QPalette::Disabled);
    }
    return palette;
}
