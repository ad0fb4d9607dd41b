// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Utils {

/// How systemctl is asked to reboot.
enum class RebootMode { Plain, IgnoreInhibitors, Force };

/// Asks systemd for a reboot, and waits until the request has been made; one that is refused is logged.
/// @return whether the request was accepted
bool rebootSystem(RebootMode mode = RebootMode::Plain);

/// Reboots at once without shutting anything down. @return whether the command succeeded
bool forceReboot();

} // namespace Utils
