// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QPushButton;
class QString;
class QWidget;

/// The button with this text somewhere in a widget; null when there is none.
[[nodiscard]] QPushButton* buttonIn(const QWidget& widget, const QString& text);
