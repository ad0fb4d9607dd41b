// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VGuiApplicationHelper.h"

#include "platform/velk/VPalette.h"

#include <QApplication>
#include <QStyle>

using namespace Qt::StringLiterals;

VGuiApplicationHelper::ColorType VGuiApplicationHelper::themeType()
{
    return toColorType(QGuiApplication::palette());
}

void VGuiApplicationHelper::setPaletteType(ColorType type)
{
    if (type != UnknownType) {
        QApplication::setPalette(VPalette::standard(type == DarkType));
    }
}

VGuiApplicationHelper::ColorType VGuiApplicationHelper::preferredType(const QPalette& platformPalette)
{
    const QString wish = qEnvironmentVariable("KESTRO_THEME");
    if (wish == "dark"_L1) {
        return DarkType;
    }
    return wish == "light"_L1 ? LightType : toColorType(platformPalette);
}

VGuiApplicationHelper::ColorType VGuiApplicationHelper::toColorType(const QPalette& palette)
{
    const bool dark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
    return dark ? DarkType : LightType;
}

QColor VGuiApplicationHelper::adjustColor(const QColor& base, int steps)
{
    const QColor hsl = base.toHsl();
    const int lightness = qBound(0, hsl.lightness() + steps, 255);
    return QColor::fromHsl(qMax(0, hsl.hslHue()), hsl.hslSaturation(), lightness, hsl.alpha());
}

QColor VGuiApplicationHelper::blendColor(const QColor& lower, const QColor& upper)
{
    const auto mix = [share = upper.alphaF()](float below, float above) { return below + ((above - below) * share); };
    return QColor::fromRgbF(
        mix(lower.redF(), upper.redF()), mix(lower.greenF(), upper.greenF()), mix(lower.blueF(), upper.blueF()));
}

bool VGuiApplicationHelper::reducedMotion()
{
    return qEnvironmentVariableIntValue("KESTRO_REDUCED_MOTION") == 1
        || QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
}
