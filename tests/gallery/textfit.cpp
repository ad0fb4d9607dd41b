// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/textfit.h"

#include <QAbstractButton>
#include <QLabel>
#include <QStyle>
#include <QStyleOptionButton>

namespace {

/// The room that a label's text needs in the width that the label has.
QSize neededBy(const QLabel* label)
{
    if (label->wordWrap()) {
        const int longestWord = label->minimumSizeHint().width();
        return {longestWord, label->heightForWidth(label->width())};
    }
    return label->sizeHint();
}

bool isCut(const QWidget* widget, const QSize& needed, const QWidget* window)
{
    const QRect place(widget->mapTo(window, QPoint(0, 0)), widget->size());
    return needed.width() > widget->width() || needed.height() > widget->height() || !window->rect().contains(place);
}

} // namespace

QStringList textsThatDoNotFit(const QWidget* window)
{
    QStringList cut;
    const auto labels = window->findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        if (label->isVisible() && !label->text().isEmpty() && isCut(label, neededBy(label), window)) {
            cut << label->text();
        }
    }
    const auto buttons = window->findChildren<QAbstractButton*>();
    for (const QAbstractButton* button : buttons) {
        if (button->isVisible() && !button->text().isEmpty() && isCut(button, button->minimumSizeHint(), window)) {
            cut << button->text();
        }
    }
    return cut;
}
