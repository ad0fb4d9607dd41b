// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VPalette.h"

#include "platform/velk/VGuiApplicationHelper.h"

#include <array>

namespace {

using Look = std::array<QRgb, VPalette::ColorTypeCount>;

// In the order of VPalette::ColorType.
constexpr Look lightLook = {0, 0xffffffff, 0xff12161d, 0xff525b69, 0xffb3261e, 0xff1558c0, 0xff1a7037, 0xffc22f26,
    0xffdfe3e9, 0xff757e8c, 0xff2a74e5, 0xffe9eff9};
constexpr Look darkLook = {0, 0xff2b3039, 0xfff4f6f9, 0xffa9b2c0, 0xffff827a, 0xff8fb8ff, 0xff7fd69a, 0xffc5372e,
    0xff3a404b, 0xff8c96a5, 0xff6ba3ff, 0xff363d49};

struct RoleColor
{
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr RoleColor roleColors[] = {
    {QPalette::Window, 0xfff3f5f8, 0xff1e2229},
    {QPalette::WindowText, 0xff1f2530, 0xffe4e8ee},
    {QPalette::Base, 0xffffffff, 0xff23272f},
    {QPalette::AlternateBase, 0xfff3f5f8, 0xff2b3039},
    {QPalette::Text, 0xff1f2530, 0xffe4e8ee},
    {QPalette::Button, 0xffe6eaf0, 0xff39404c},
    {QPalette::ButtonText, 0xff1f2530, 0xffe4e8ee},
    {QPalette::BrightText, 0xffffffff, 0xffffffff},
    {QPalette::Highlight, 0xff1b62d0, 0xff2568d8},
    {QPalette::HighlightedText, 0xffffffff, 0xffffffff},
    {QPalette::Link, 0xff1558c0, 0xff8fb8ff},
    {QPalette::LinkVisited, 0xff6b3fa8, 0xffc5a8ff},
    {QPalette::PlaceholderText, 0xff5f6876, 0xffa0a9b7},
    {QPalette::ToolTipBase, 0xff2b3039, 0xff434b58},
    {QPalette::ToolTipText, 0xffffffff, 0xffffffff},
    {QPalette::Light, 0xffffffff, 0xff4a5260},
    {QPalette::Midlight, 0xfff3f5f8, 0xff3f4652},
    {QPalette::Mid, 0xffc3cad4, 0xff30353f},
    {QPalette::Dark, 0xff9aa3b0, 0xff16191e},
    {QPalette::Shadow, 0xff6d7684, 0xff0b0d10},
};

// What cannot be used keeps a little more than half of its contrast.
constexpr float disabledAlpha = 0.55F;

QColor faded(const QColor& color, const QColor& background)
{
    QColor pale = color;
    pale.setAlphaF(disabledAlpha);
    return VGuiApplicationHelper::blendColor(background, pale);
}

} // namespace

VPalette::VPalette(const QPalette& palette)
    : QPalette(palette)
{ }

QColor VPalette::color(ColorGroup group, ColorType type) const
{
    if (type <= NoType || type >= ColorTypeCount) {
        return {};
    }
    const bool dark = VGuiApplicationHelper::toColorType(*this) == VGuiApplicationHelper::DarkType;
    const QColor color = QColor::fromRgb((dark ? darkLook : lightLook)[type]);
    // Explanations and errors often tell why something cannot be used.
    const bool kept = type == ItemBackground || type == HoverBackground || type == TipText || type == ErrorText;
    return group == Disabled && !kept ? faded(color, QPalette::color(Disabled, Window)) : color;
}

QColor VPalette::color(ColorType type) const
{
    return color(currentColorGroup(), type);
}

QBrush VPalette::brush(ColorGroup group, ColorType type) const
{
    return {color(group, type)};
}

QBrush VPalette::itemBackground() const
{
    return brush(currentColorGroup(), ItemBackground);
}

QPalette VPalette::standard(bool dark)
{
    QPalette palette;
    for (const RoleColor& entry : roleColors) {
        palette.setColor(entry.role, QColor::fromRgb(dark ? entry.dark : entry.light));
    }
    const QColor window = palette.color(Window);
    for (const ColorRole role : {WindowText, Text, ButtonText, PlaceholderText, Highlight, HighlightedText}) {
        palette.setColor(Disabled, role, faded(palette.color(Active, role), window));
    }
    return palette;
}
