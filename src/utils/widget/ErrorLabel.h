// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/VLabel.h"

/// The one place of a page where an error is told; hidden while there is none.
class ErrorLabel : public VLabel
{
    Q_OBJECT

public:
    explicit ErrorLabel(QWidget* parent = nullptr);

    /// Shows @p text and announces it to screen readers.
    void showError(const QString& text);
};
