// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QVBoxLayout;

/// One row of settings.
class SettingsItem : public QFrame
{
    Q_OBJECT

public:
    /// @param accessibleName what screen readers call the row
    explicit SettingsItem(const QString& accessibleName = QString(), QWidget* parent = nullptr);

    /// With the flag set the row paints its own rounded background.
    void setIsErr(bool isErr);
    [[nodiscard]] bool isErr() const { return m_isErr; }

    /// The layout that holds the row's content; owned by the row.
    [[nodiscard]] QVBoxLayout* contentLayout() const { return m_layout; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_layout = nullptr;
    bool m_isErr = false;
};
