// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

class QStyleOptionButton;
class QStyleOptionSlider;

/// How every control of the program is drawn, on top of Qt's Fusion style.
///
/// A push button is filled in the accent colour when it is the default button or its dynamic property "accent" is true,
/// and in the colour of destruction when its dynamic property "warning" is true.
class VStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// The steps of the spacing scale, in device-independent pixels.
    static constexpr int spaceTiny = 4;
    static constexpr int spaceSmall = 8;
    static constexpr int spaceMedium = 12;
    static constexpr int spaceLarge = 20;
    static constexpr int spaceHuge = 32;

    VStyle();

    /// Radius of the corners of cards, frames and lists, in device-independent pixels.
    static constexpr int frameRadius = 8;

    void drawPrimitive(
        PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const override;
    void drawControl(
        ControlElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
        const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
        const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(
        StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const override;
    QSize sizeFromContents(
        ContentsType type, const QStyleOption* option, const QSize& size, const QWidget* widget) const override;

    /// Draws the ring that shows the keyboard focus just inside @p rect.
    static void drawFocusRing(QPainter* painter, const QRectF& rect, qreal radius, const QPalette& palette);
};
