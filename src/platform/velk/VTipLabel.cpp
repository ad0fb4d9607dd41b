// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VTipLabel.h"

VTipLabel::VTipLabel(const QString& text, QWidget* parent)
    : VLabel(text, parent)
{
    setForegroundRole(VPalette::TipText);
    setWordWrap(true);
}
