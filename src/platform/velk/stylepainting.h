// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyle>

class QColor;
class QIcon;
class QPainter;
class QPixmap;
class QRegion;
class QRectF;
class QStyleOption;
class QStyleOptionButton;
class QStyleOptionSlider;
class VPalette;

/// What VStyle paints; each function takes the palette with its current colour group set.
namespace StylePainting {

/// The ring of the keyboard focus, just inside @p rect.
void focusRing(QPainter* painter, const QRectF& rect, qreal radius, const VPalette& palette);

/// A push button's background, filled with @p fill, a little darker under the pointer and while pressed.
void buttonPanel(QPainter* painter, const QStyleOption& option, const VPalette& palette, const QColor& fill);

/// A push button's icon and, after it in the direction of writing, its text, together in the middle of the button.
void iconAndText(QPainter* painter, const QStyleOptionButton& button, const VPalette& palette);

/// An icon in one colour: its shape is what is not transparent in it.
/// @param size in device-independent pixels
/// @param ratio device pixels to one of those
[[nodiscard]] QPixmap tinted(const QIcon& icon, const QSize& size, qreal ratio, const QColor& color);

/// A window's background and outline, as large as the window.
void dialogPanel(QPainter* painter, const QRect& rect, const VPalette& palette);

/// What dialogPanel() covers of a window. Where nothing composites windows, what lies outside would else be black.
[[nodiscard]] QRegion dialogShape(const QRect& rect);

void checkBox(QPainter* painter, const QStyleOption& option, const VPalette& palette);
void radioButton(QPainter* painter, const QStyleOption& option, const VPalette& palette);

/// The rounded background and outline of a list.
void frame(QPainter* painter, const QStyleOption& option, const VPalette& palette);

/// A line edit's background and outline; @p alert draws the outline in the colour of errors.
void lineEdit(QPainter* painter, const QStyleOption& option, const VPalette& palette, bool alert);

/// The only visible part of a scroll bar.
void scrollHandle(QPainter* painter, const QStyleOptionSlider& option, const QRect& handle, const VPalette& palette);

/// Where a part of a scroll bar lies: it has a groove over its whole length, a handle and the pages around it.
/// @param minimumLength of the handle, in device-independent pixels
[[nodiscard]] QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part, int minimumLength);

} // namespace StylePainting
