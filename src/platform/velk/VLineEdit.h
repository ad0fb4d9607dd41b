// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLineEdit>

/// A line of text that can be marked as wrong.
class VLineEdit : public QLineEdit
{
    Q_OBJECT
    Q_PROPERTY(bool alert READ isAlert WRITE setAlert)

public:
    explicit VLineEdit(QWidget* parent = nullptr);

    /// Draws the line in the colour of errors.
    void setAlert(bool alert);
    [[nodiscard]] bool isAlert() const { return m_alert; }

private:
    bool m_alert = false;
};
