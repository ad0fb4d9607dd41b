// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Asks the running system to reboot, and waits until the request has been made.
/// @return true when the request was accepted
bool rebootSystem();
