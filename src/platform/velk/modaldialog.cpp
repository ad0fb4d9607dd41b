// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/modaldialog.h"

#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/stylepainting.h"

#include <QPainter>

int ModalDialog::exec()
{
    const int result = QDialog::exec();
    if (parentWidget() != nullptr) {
        parentWidget()->activateWindow();
    }
    return result;
}

void ModalDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    activateWindow();
}

void ModalDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    setMask(StylePainting::dialogShape(rect()));
}

void ModalDialog::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    StylePainting::dialogPanel(&painter, rect(), VPaletteHelper::instance()->palette(this));
}
