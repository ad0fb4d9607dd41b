// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/SettingsGroup.h"

#include "platform/velk/VBackgroundGroup.h"
#include "utils/widget/SettingsItem.h"

#include <QBoxLayout>

SettingsGroup::SettingsGroup(QWidget* parent, int groupMode)
    : QFrame(parent)
    , m_items(new QVBoxLayout)
{
    m_items->setSpacing(10);
    m_items->setContentsMargins(0, 0, 0, 0);
    if (groupMode != GroupBackground) {
        setLayout(m_items);
        return;
    }
    auto* card = new VBackgroundGroup(m_items, this);
    card->setBackgroundRole(QPalette::Window);
    card->setItemSpacing(1);
    card->setUseWidgetBackground(false);
    auto* around = new QVBoxLayout(this);
    around->setContentsMargins(0, 0, 0, 0);
    around->addWidget(card);
}

void SettingsGroup::addItem(SettingsItem* item, int index)
{
    m_items->insertWidget(index, item);
}
