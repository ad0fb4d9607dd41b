// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/VLabel.h"

/// A label for explanations: in the colour of tips, wrapping words.
class VTipLabel : public VLabel
{
    Q_OBJECT

public:
    explicit VTipLabel(const QString& text = QString(), QWidget* parent = nullptr);
};
