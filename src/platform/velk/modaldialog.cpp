// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/modaldialog.h"

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
