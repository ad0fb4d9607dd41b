// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/VPalette.h"

#include <QFrame>

/// A frame that fills itself with one colour of the palette, with rounded corners and a hairline around it.
class VFrame : public QFrame
{
    Q_OBJECT

public:
    explicit VFrame(QWidget* parent = nullptr);

    /// The colour of the background; NoType, with which a frame begins, means the colour of windows.
    void setBackgroundRole(VPalette::ColorType type);
    [[nodiscard]] VPalette::ColorType backgroundType() const { return m_background; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    VPalette::ColorType m_background = VPalette::NoType;
};
