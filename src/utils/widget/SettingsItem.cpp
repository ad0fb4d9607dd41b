// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/SettingsItem.h"

#include "platform/velk/VPaletteHelper.h"

#include <QBoxLayout>
#include <QPainter>

SettingsItem::SettingsItem(const QString& accessibleName, QWidget* parent)
    : QFrame(parent)
    , m_layout(new QVBoxLayout(this))
{
    m_layout->setSpacing(10);
    m_layout->setContentsMargins(0, 0, 0, 0);
    setAccessibleName(accessibleName);
}

void SettingsItem::setIsErr(bool isErr)
{
    m_isErr = isErr;
    update();
}

void SettingsItem::paintEvent(QPaintEvent* /*event*/)
{
    if (!m_isErr) {
        return;
    }
    constexpr int radius = 8;
    const VPalette colors = VPaletteHelper::instance()->palette(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.itemBackground());
    painter.drawRoundedRect(rect().adjusted(0, 0, 1, 1), radius, radius);
}
