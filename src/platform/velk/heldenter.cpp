// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/heldenter.h"

#include <QAbstractButton>
#include <QKeyEvent>

namespace {

class HeldEnterFilter : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress) {
            const auto* press = static_cast<QKeyEvent*>(event);
            const bool isEnter = press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter;
            if (isEnter && press->isAutoRepeat()) {
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

void ignoreHeldEnter(QAbstractButton* button)
{
    button->installEventFilter(new HeldEnterFilter(button));
}
