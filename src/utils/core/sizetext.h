// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The bytes that a text such as "7.28GiB" names, in single precision (7816840704), which is deliberate.
///
/// The text begins with a number of at least two digits, else the result is 0: "5GiB" has no size. Units are KiB, MiB,
/// GiB, TiB and PiB; a text without one ("16.00B") is in bytes.
/// @return -1 when the size does not fit into 64 bits
[[nodiscard]] qint64 bytesOfSizeText(const QString& text);
