// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class VDialog;

/// Answers the next VDialog that opens during its life, so that a test can go through a modal question.
class DialogAnswer : public QObject
{
    Q_OBJECT

public:
    /// @param button index of the button to press; -1 leaves the dialog as Escape does
    explicit DialogAnswer(int button);

    /// What the dialog said; all empty and 0 when none opened.
    QString title;
    QString message;
    QString confirmText; ///< text of the last button
    bool bypassesWindowManager = false;
    bool confirmHasFocus = false; ///< the last button takes the keyboard
    bool asksAsWarning = false;   ///< "Cancel" and a default button in the colour of a warning, beside an icon
    int dialogs = 0;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void answer(VDialog* dialog);

    int m_button = -1;
};
