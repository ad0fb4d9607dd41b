// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Utils {

/// Registers with the meta type system, by name, the pages that a host can create (BackupPage, BackupRestoreWidget) and
/// the types of their signals (Utils::ErrorType, SortOrder, Qt::SortOrder). Further calls do nothing.
void registerPageTypes();

} // namespace Utils
