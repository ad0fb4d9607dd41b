// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/ErrorLabel.h"

#include <QAccessible>

ErrorLabel::ErrorLabel(QWidget* parent)
    : VLabel(parent)
{
    setForegroundRole(VPalette::ErrorText);
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    setTextFormat(Qt::PlainText);
    hide();
}

void ErrorLabel::showError(const QString& text)
{
    setText(text);
    setAccessibleName(text);
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
