// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VIconButton.h"

#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"
#include "platform/velk/stylepainting.h"

#include <QEvent>
#include <QPainter>

VIconButton::VIconButton(QWidget* parent)
    : QAbstractButton(parent)
{
    setIconSize({16, 16});
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

void VIconButton::setFlat(bool flat)
{
    m_flat = flat;
    update();
}

QSize VIconButton::sizeHint() const
{
    return iconSize() + QSize(24, 24);
}

bool VIconButton::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) {
        update();
    }
    return QAbstractButton::event(event);
}

void VIconButton::paintEvent(QPaintEvent* /*event*/)
{
    const VPalette colors = VPaletteHelper::instance()->palette(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(2, 2, -2, -2);
    if (isDown() || underMouse() || !m_flat) {
        QColor fill = colors.color(QPalette::WindowText);
        fill.setAlphaF(isDown() ? 0.16F : 0.08F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(box, VStyle::frameRadius, VStyle::frameRadius);
    }
    QRect iconBox({}, iconSize());
    iconBox.moveCenter(rect().center());
    painter.drawPixmap(
        iconBox, StylePainting::tinted(icon(), iconSize(), devicePixelRatioF(), colors.color(QPalette::WindowText)));
    if (hasFocus()) {
        VStyle::drawFocusRing(&painter, box, VStyle::frameRadius, colors);
    }
}
