// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VFrame.h"

#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"

#include <QPainter>

VFrame::VFrame(QWidget* parent)
    : QFrame(parent)
{
    setFrameShape(QFrame::NoFrame);
}

void VFrame::setBackgroundRole(VPalette::ColorType type)
{
    m_background = type;
    update();
}

void VFrame::paintEvent(QPaintEvent* event)
{
    const VPalette colors = VPaletteHelper::instance()->palette(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colors.color(VPalette::FrameBorder));
    painter.setBrush(m_background == VPalette::NoType ? colors.color(QPalette::Window) : colors.color(m_background));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), VStyle::frameRadius, VStyle::frameRadius);
    painter.end();
    QFrame::paintEvent(event);
}
