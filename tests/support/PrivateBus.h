// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The message bus that stands in for the system bus of this test process.
///
/// Qt connects to the system bus once per process, so there is one private bus per process: the first call of start()
/// must come before anything else asks for the system bus.
namespace PrivateBus {

/// Starts the bus on first use, names it in DBUS_SYSTEM_BUS_ADDRESS, and returns its address. The daemon ends with the
/// application object, at the latest with the process. Ends the process when it cannot be started.
QString start();

} // namespace PrivateBus
