// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/widget/restorepage.h"

#include <QStringList>

class ErrorLabel;
class QCheckBox;
class QPushButton;
class QRadioButton;

/// A restore page as the window builds it, and what it asked for as text.
struct ShownRestorePage
{
    explicit ShownRestorePage(bool haveInitBackup = true);

    /// The control with this text or name; null when there is none.
    [[nodiscard]] QPushButton* button(const QString& text) const;
    [[nodiscard]] QPushButton* restoreButton() const;
    [[nodiscard]] QPushButton* waitingButton() const;
    [[nodiscard]] QRadioButton* row(const QString& title) const;
    [[nodiscard]] QCheckBox* keepFiles() const;

    /// Clicks the row: 0 system restore, 1 backup files, 2 restore point.
    void choose(int option) const;

    /// Empty while no error is shown.
    [[nodiscard]] QString errorText() const;

    QWidget window;
    RestorePage page{&window};
    TreeViewModel* model = nullptr;
    QStringList requests;
    int listRequests = 0;
    bool waitingDuringRequest = false;
};
