// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/backdrop.h"

#include "platform/velk/VFrame.h"

#include <QVBoxLayout>

QVBoxLayout* addBackdrop(QWidget* page)
{
    auto* outer = new QVBoxLayout(page);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* frame = new VFrame(page);
    outer->addWidget(frame);
    auto* inner = new QVBoxLayout(frame);
    inner->setContentsMargins(0, 0, 0, 0);
    return inner;
}
