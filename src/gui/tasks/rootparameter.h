// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// What "root=" on the kernel command line names; at most one field is set.
struct RootParameter
{
    QString uuid;   ///< of the root file system
    QString device; ///< a device path, for example of the device mapper, plain or a link
};

/// Reads the first "root=" token of a kernel command line ("/proc/cmdline"). The value is what follows the *last* "=",
/// so "root=PARTUUID=x" names the UUID x.
[[nodiscard]] RootParameter parseRootParameter(const QByteArray& commandLine);
