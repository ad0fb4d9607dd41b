// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QWidget;

/// A question before something that cannot be taken back.
struct WarningQuestion
{
    QString title; ///< may be empty
    QString message;
    QString confirmText;              ///< text of the default button; the other one is "Cancel"
    bool bypassWindowManager = false; ///< show the dialog without the window manager
};

/// Asks @p question over @p parent's window and waits for the answer.
/// @return true only when the confirming button was chosen; closing and Escape are a no
[[nodiscard]] bool confirmWarning(QWidget* parent, const WarningQuestion& question);
