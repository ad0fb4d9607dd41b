// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VStyle.h"

#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/stylepainting.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QStyleOption>
#include <QVariant>
#include <QWidget>

namespace {

constexpr int indicatorExtent = 24; // with room for the focus ring
constexpr int scrollBarExtent = 10;

VPalette paletteOf(const QStyleOption* option)
{
    VPalette palette(option->palette);
    palette.setCurrentColorGroup(option->state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled);
    return palette;
}

bool isWarning(const QWidget* widget)
{
    return widget != nullptr && widget->property("warning").toBool();
}

bool isAlert(const QWidget* widget)
{
    return widget != nullptr && widget->property("alert").toBool();
}

bool isAccent(const QStyleOptionButton& option, const QWidget* widget)
{
    return option.features.testFlag(QStyleOptionButton::DefaultButton)
        || (widget != nullptr && widget->property("accent").toBool());
}

// A button that cannot be pressed looks the same whatever it would do.
QColor buttonFill(const QStyleOptionButton& option, const VPalette& palette, const QWidget* widget)
{
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return palette.color(QPalette::Button);
    }
    const QColor fill = palette.color(isAccent(option, widget) ? QPalette::Highlight : QPalette::Button);
    return isWarning(widget) ? palette.color(VPalette::WarningButton) : fill;
}

} // namespace

VStyle::VStyle()
    : QProxyStyle(QStringLiteral("fusion"))
{ }

void VStyle::drawFocusRing(QPainter* painter, const QRectF& rect, qreal radius, const QPalette& palette)
{
    StylePainting::focusRing(painter, rect, radius, VPalette(palette));
}

void VStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const
{
    const VPalette palette = paletteOf(option);
    switch (element) {
    case PE_PanelButtonCommand:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            StylePainting::buttonPanel(painter, *button, palette, buttonFill(*button, palette, widget));
        }
        return;
    case PE_FrameFocusRect:
        if (qobject_cast<const QRadioButton*>(widget) == nullptr && qobject_cast<const QCheckBox*>(widget) == nullptr) {
            StylePainting::focusRing(painter, QRectF(option->rect), 4, palette); // those two show it at their indicator
        }
        return;
    case PE_IndicatorCheckBox:
        StylePainting::checkBox(painter, *option, palette);
        return;
    case PE_IndicatorRadioButton:
        StylePainting::radioButton(painter, *option, palette);
        return;
    case PE_Frame:
        StylePainting::frame(painter, *option, palette);
        return;
    case PE_PanelLineEdit:
        StylePainting::lineEdit(painter, *option, palette, isAlert(widget));
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void VStyle::drawControl(
    ControlElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const
{
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element != CE_PushButtonLabel || button == nullptr) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QStyleOptionButton label = *button;
    if (isWarning(widget) || isAccent(*button, widget)) {
        for (const auto group : {QPalette::Active, QPalette::Inactive}) {
            label.palette.setColor(group, QPalette::ButtonText, Qt::white);
        }
    }
    if (!label.icon.isNull() && !label.text.isEmpty()) {
        StylePainting::iconAndText(painter, label, paletteOf(&label)); // Qt's own loses the room between them in Arabic
        return;
    }
    QProxyStyle::drawControl(element, &label, painter, widget);
}

void VStyle::drawComplexControl(
    ComplexControl control, const QStyleOptionComplex* option, QPainter* painter, const QWidget* widget) const
{
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || slider == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    const QRect handle = subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget);
    StylePainting::scrollHandle(painter, *slider, handle, paletteOf(option));
}

QRect VStyle::subControlRect(
    ComplexControl control, const QStyleOptionComplex* option, SubControl subControl, const QWidget* widget) const
{
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || slider == nullptr) {
        return QProxyStyle::subControlRect(control, option, subControl, widget);
    }
    return StylePainting::scrollBarPart(*slider, subControl, pixelMetric(PM_ScrollBarSliderMin, option, widget));
}

QRect VStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    const QRect natural = QProxyStyle::subElementRect(element, option, widget);
    return element == SE_LineEditContents ? natural.adjusted(spaceSmall, 0, -spaceSmall, 0) : natural;
}

int VStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return indicatorExtent;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return spaceTiny;
    case PM_ScrollBarExtent:
        return scrollBarExtent;
    case PM_DefaultFrameWidth:
        return 1;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int VStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const
{
    switch (hint) {
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_UnderlineShortcut:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QSize VStyle::sizeFromContents(
    ContentsType type, const QStyleOption* option, const QSize& size, const QWidget* widget) const
{
    const QSize natural = QProxyStyle::sizeFromContents(type, option, size, widget);
    switch (type) {
    case CT_PushButton:
        return {qMax(natural.width() + spaceLarge, 88), qMax(natural.height(), 36)};
    case CT_LineEdit:
        return {natural.width(), qMax(natural.height(), 36)};
    default:
        return natural;
    }
}
