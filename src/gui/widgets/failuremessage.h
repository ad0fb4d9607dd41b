// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// What the end page says about a backup or a restore that failed, translated.
/// @param error a sentence or the path of a log; in an interface from right to left a path stays readable
[[nodiscard]] QString failureMessage(bool isBackup, const QString& error);
