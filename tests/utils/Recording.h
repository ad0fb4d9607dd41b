// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"

#include <QString>

/// The devices of a recorded lsblk output, with mapper names as "/dev/mapper/" would give them (from PATH) and parents
/// from a recorded dmsetup output where one is given.
[[nodiscard]] BlockDeviceList recordedDevices(const QString& lsblkFile, const QString& dmsetupFile = {});
