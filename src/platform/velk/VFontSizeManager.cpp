// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VFontSizeManager.h"

#include <QWidget>

#include <array>

VFontSizeManager* VFontSizeManager::instance()
{
    static VFontSizeManager sizes;
    return &sizes;
}

int VFontSizeManager::fontPixelSize(SizeType type)
{
    static constexpr std::array<int, NSizeTypes> pixelSizes = {36, 26, 22, 17, 16, 14, 13, 12, 11, 10};
    return pixelSizes[static_cast<size_t>(qBound(T1, type, T10))];
}

void VFontSizeManager::bind(QWidget* widget, SizeType type, int weight) const
{
    QFont font = get(type, widget->font());
    if (weight >= 0) {
        font.setWeight(static_cast<QFont::Weight>(weight));
    }
    widget->setFont(font);
}

QFont VFontSizeManager::get(SizeType type, const QFont& base)
{
    QFont font = base;
    font.setPixelSize(fontPixelSize(type));
    return font;
}
