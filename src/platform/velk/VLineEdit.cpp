// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VLineEdit.h"

VLineEdit::VLineEdit(QWidget* parent)
    : QLineEdit(parent)
{ }

void VLineEdit::setAlert(bool alert)
{
    m_alert = alert;
    update();
}
