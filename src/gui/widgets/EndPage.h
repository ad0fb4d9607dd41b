// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/// The page that tells how a task ended. Its button powers the machine off after a failure and reboots it otherwise.
class EndPage : public QWidget
{
    Q_OBJECT

public:
    enum State { Success = 0, Failure = 2 };

    /// @param state Success or Failure; any other value gives a warning
    explicit EndPage(int state, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    /// Plain text that can be selected and copied.
    void setMessage(const QString& message);
    void setButtonText(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void arrange();
    void onButtonClicked() const;

    int m_state = Success;
    QLabel* m_title = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_button = nullptr;
    QLabel* m_icon = nullptr;
};
