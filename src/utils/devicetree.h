// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"
#include "utils/deviceclasses.h"

/// Sets `parent` to the classified device whose kernel name is the device's `pkname`, and fills and sorts `children`.
/// Links from an earlier call are replaced. The links are a cycle of shared pointers: unlinkDevices() ends it.
void linkDeviceTree(const DeviceClasses& classes);

/// Empties `parent` and `children` of each device of the list.
void unlinkDevices(const BlockDeviceList& devices);
