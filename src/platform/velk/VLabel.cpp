// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VLabel.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScopedValueRollback>

VLabel::VLabel(QWidget* parent)
    : QLabel(parent)
{ }

VLabel::VLabel(const QString& text, QWidget* parent)
    : QLabel(text, parent)
{ }

void VLabel::setForegroundRole(VPalette::ColorType type)
{
    m_foreground = type;
    applyForeground();
}

void VLabel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && !m_applying) {
        applyForeground();
    }
    QLabel::changeEvent(event);
}

// Computed from the application's palette: the label's own one already carries the colour set here.
void VLabel::applyForeground()
{
    if (m_foreground == VPalette::NoType) {
        return;
    }
    const QScopedValueRollback guard(m_applying, true);
    const VPalette colors(QGuiApplication::palette());
    QPalette own;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        own.setColor(group, QPalette::WindowText, colors.color(group, m_foreground));
    }
    setPalette(own);
}
