// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VListView.h"

#include "platform/velk/listcarddelegate.h"

#include <QKeyEvent>

VListView::VListView(QWidget* parent)
    : QListView(parent)
{
    viewport()->setAutoFillBackground(false);
    setMouseTracking(true);
    setItemDelegate(new ListCardDelegate(this));
}

void VListView::setBackgroundType(BackgroundType type)
{
    m_backgroundType = type;
    viewport()->update();
}

void VListView::setItemSpacing(int spacing)
{
    setSpacing(spacing);
}

void VListView::setItemSize(const QSize& size)
{
    m_itemSize = size;
    doItemsLayout();
}

void VListView::keyPressEvent(QKeyEvent* event)
{
    const bool choose =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (choose && currentIndex().isValid()) {
        Q_EMIT
        clicked(currentIndex());
        return;
    }
    QListView::keyPressEvent(event);
}
