// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VBackgroundGroup.h"

#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"

#include <QEvent>
#include <QLayout>
#include <QPainter>

VBackgroundGroup::VBackgroundGroup(QLayout* layout, QWidget* parent)
    : QWidget(parent)
{
    if (layout != nullptr) {
        layout->setContentsMargins(0, 0, 0, 0);
        setLayout(layout);
    }
    setItemSpacing(1);
}

void VBackgroundGroup::setItemSpacing(int spacing)
{
    if (layout() != nullptr) {
        layout()->setSpacing(spacing);
    }
}

void VBackgroundGroup::setUseWidgetBackground(bool use)
{
    m_useWidgetBackground = use;
    update();
}

QList<QRect> VBackgroundGroup::visibleItems() const
{
    QList<QRect> items;
    for (int i = 0; layout() != nullptr && i < layout()->count(); ++i) {
        const QWidget* widget = layout()->itemAt(i)->widget();
        if (widget != nullptr && widget->isVisibleTo(this)) {
            items.append(widget->geometry());
        }
    }
    return items;
}

bool VBackgroundGroup::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest) {
        update();
    }
    return QWidget::event(event);
}

void VBackgroundGroup::paintEvent(QPaintEvent* /*event*/)
{
    if (m_useWidgetBackground) {
        return;
    }
    const QList<QRect> items = visibleItems();
    if (items.isEmpty()) {
        return;
    }
    const VPalette colors = VPaletteHelper::instance()->palette(this);
    const QRectF card = QRectF(items.first().united(items.last())).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colors.color(VPalette::FrameBorder));
    painter.setBrush(colors.itemBackground());
    painter.drawRoundedRect(card, VStyle::frameRadius, VStyle::frameRadius);
    for (qsizetype i = 1; i < items.size(); ++i) {
        const qreal y = items[i].top() - 0.5;
        painter.drawLine(QPointF(card.left() + VStyle::spaceMedium, y), QPointF(card.right() - VStyle::spaceMedium, y));
    }
}
