// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// What runs, by its number.
enum TaskType { NoTask = 0, SystemRestore = 1, ManualRestore = 2, ManualBackup = 3, SystemBackup = 4 };
