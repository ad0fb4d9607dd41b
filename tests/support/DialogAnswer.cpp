// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/DialogAnswer.h"

#include "platform/velk/VDialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

DialogAnswer::DialogAnswer(int button)
    : m_button(button)
{
    qApp->installEventFilter(this);
}

bool DialogAnswer::eventFilter(QObject* object, QEvent* event)
{
    auto* dialog = qobject_cast<VDialog*>(object);
    if (dialog != nullptr && event->type() == QEvent::Show) {
        QTimer::singleShot(0, this, [this, dialog] { answer(dialog); });
    }
    return false;
}

void DialogAnswer::answer(VDialog* dialog)
{
    ++dialogs;
    title = dialog->title();
    message = dialog->message();
    bypassesWindowManager = dialog->windowFlags().testFlag(Qt::BypassWindowManagerHint);
    const auto buttons = dialog->findChildren<QPushButton*>();
    confirmText = buttons.last()->text();
    const auto labels = dialog->findChildren<QLabel*>();
    asksAsWarning = buttons.first()->text() == QLatin1StringView("Cancel") && buttons.last()->isDefault()
        && buttons.last()->property("warning").toBool()
        && std::any_of(labels.cbegin(), labels.cend(), [](const QLabel* label) { return !label->pixmap().isNull(); });
    confirmHasFocus = dialog->focusWidget() == buttons.last();
    if (m_button >= 0) {
        dialog->getButton(m_button)->click();
        return;
    }
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(dialog, &escape);
}
