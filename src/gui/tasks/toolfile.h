// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files that tools leave in the working directory.
namespace ToolFile {

/// Makes room for a file that a tool will leave there: one of an earlier run must never be taken for it.
/// @return false when it cannot be removed
[[nodiscard]] bool removeFormer(const QString& fileName);

/// Takes the file away and returns what it held; nothing when there is none. An archive can hold anything by that name:
/// only an ordinary file is opened.
[[nodiscard]] std::optional<QByteArray> take(const QString& fileName);

} // namespace ToolFile
