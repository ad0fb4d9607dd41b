// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/VPalette.h"

#include <QLabel>

/// A label whose text has one of the further colours of the palette.
class VLabel : public QLabel
{
    Q_OBJECT

public:
    explicit VLabel(QWidget* parent = nullptr);
    explicit VLabel(const QString& text, QWidget* parent = nullptr);

    /// The colour of the text; NoType, with which a label begins, means the colour of plain text.
    void setForegroundRole(VPalette::ColorType type);

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyForeground();

    VPalette::ColorType m_foreground = VPalette::NoType;
    bool m_applying = false;
};
