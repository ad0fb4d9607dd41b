// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/widget/SettingsItem.h"

class QAbstractButton;
class QLabel;

/// A row of settings that can be chosen: a checkable button at its left, title, tip and content beside it.
///
/// A click anywhere on the title chooses the row.
class RadioItem : public SettingsItem
{
    Q_OBJECT

public:
    /// @param icon resource of the picture before the title, empty for none
    explicit RadioItem(const QString& title, const QString& icon = QString(), QWidget* parent = nullptr);

    /// The button that chooses the row; owned by the row.
    [[nodiscard]] QAbstractButton* button() const { return m_button; }

    /// Puts @p content below the title, indented by @p indent pixels; the row becomes its parent.
    void addContent(QWidget* content, int indent = 0);

    [[nodiscard]] bool isChecked() const;
    void setChecked(bool checked);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QAbstractButton* m_button = nullptr;
    QLabel* m_title = nullptr;
    QVBoxLayout* m_column = nullptr;
};
