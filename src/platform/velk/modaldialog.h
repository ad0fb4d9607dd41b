// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

/// A dialog that has the keyboard while it is shown and gives it back to its parent's window afterwards, also where no
/// window manager sees to that.
class ModalDialog : public QDialog
{
    Q_OBJECT

public:
    using QDialog::QDialog;

    /// @return as QDialog::exec()
    int exec() override;

protected:
    void showEvent(QShowEvent* event) override;
};
