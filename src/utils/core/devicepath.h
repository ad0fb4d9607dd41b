// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Whether a path has the form of a device node and nothing that a shell or a program could take for something else:
/// "/dev/" and names of letters, digits and "._+:@-" that begin with a letter, a digit or "_".
[[nodiscard]] bool isDevicePath(const QString& path);
