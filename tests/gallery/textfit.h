// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

class QWidget;

/// The texts of labels and buttons that are cut off: those that need more room than their widget has, and those whose
/// widget reaches out of the window.
/// @param window shown, with its layout done
[[nodiscard]] QStringList textsThatDoNotFit(const QWidget* window);
