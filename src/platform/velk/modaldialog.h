// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

/// A dialog with round corners and an outline of its own that has the keyboard while it is shown and gives it back to
/// its parent's window afterwards, also where no window manager sees to that.
class ModalDialog : public QDialog
{
    Q_OBJECT

public:
    using QDialog::QDialog;

    /// @return as QDialog::exec()
    int exec() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
};
