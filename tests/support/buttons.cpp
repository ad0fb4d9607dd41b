// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/buttons.h"

#include <QPushButton>

#include <algorithm>

QPushButton* buttonIn(const QWidget& widget, const QString& text)
{
    const auto buttons = widget.findChildren<QPushButton*>();
    const auto found =
        std::ranges::find_if(buttons, [&text](const QPushButton* button) { return button->text() == text; });
    return found == buttons.cend() ? nullptr : *found;
}
