// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

/// The size in bytes of one device in the output of `lsblk --bytes --output PATH,SIZE`; none when it is not listed with
/// a number.
[[nodiscard]] std::optional<qint64> parseDeviceSize(const QString& output, const QString& devicePath);
