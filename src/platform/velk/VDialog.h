// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/modaldialog.h"

#include <QIcon>
#include <QList>

class QAbstractButton;
class QHBoxLayout;
class QLabel;
class QPushButton;

/// A small modal question: icon, title, message and a row of buttons.
///
/// exec() gives the index of the button that was chosen, in the order in which the buttons were added, or -1 when the
/// dialog was closed or left with Escape.
class VDialog : public ModalDialog
{
    Q_OBJECT

public:
    enum ButtonType {
        ButtonNormal,
        ButtonWarning, ///< destroys something, or ends the session
        ButtonRecommend
    };
    Q_ENUM(ButtonType)

    explicit VDialog(QWidget* parent = nullptr);
    VDialog(const QString& title, const QString& message, QWidget* parent = nullptr);

    /// The heading; an empty one takes no room.
    void setTitle(const QString& title);
    [[nodiscard]] QString title() const;
    /// The question; plain text that wraps.
    void setMessage(const QString& message);
    [[nodiscard]] QString message() const;
    void setIcon(const QIcon& icon);

    /// Adds a button at the end of the row.
    /// @param isDefault it is the one that Enter chooses and that has the focus at first
    /// @return its index, from 0
    int addButton(const QString& text, bool isDefault = false, ButtonType type = ButtonNormal);
    /// The button at @p index, owned by the dialog; null outside the row.
    [[nodiscard]] QAbstractButton* getButton(int index) const;

    /// Moves the dialog to the middle of its parent's window, without a parent to that of its screen.
    void moveToCenter();

    /// Centres and shows the dialog and waits for the answer.
    int exec() override;

protected:
    void showEvent(QShowEvent* event) override;
    void reject() override;

private:
    void build();

    QLabel* m_icon = nullptr;
    QLabel* m_title = nullptr;
    QLabel* m_message = nullptr;
    QHBoxLayout* m_buttonRow = nullptr;
    QList<QPushButton*> m_buttons;
};
