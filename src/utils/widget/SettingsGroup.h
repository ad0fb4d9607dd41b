// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QVBoxLayout;
class SettingsItem;

/// A vertical stack of rows of settings.
class SettingsGroup : public QFrame
{
    Q_OBJECT

public:
    enum GroupMode {
        NoneBackground, ///< the rows are placed directly
        GroupBackground ///< the rows lie together on one card
    };

    explicit SettingsGroup(QWidget* parent = nullptr, int groupMode = NoneBackground);

    /// Puts @p item at the end, or at @p index of the stack; the group becomes its parent.
    void addItem(SettingsItem* item, int index = -1);

private:
    QVBoxLayout* m_items = nullptr;
};
