// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"

#include <QString>

/// What a tool printed, from a file under "tests/utils/data", for example "lsblk/composed-mixed.txt".
/// Ends the process when there is no such file.
[[nodiscard]] QString recording(const QString& file);

/// The devices of a recorded lsblk output, with mapper names as "/dev/mapper/" would give them (from PATH) and parents
/// from a recorded dmsetup output where one is given.
[[nodiscard]] BlockDeviceList recordedDevices(const QString& lsblkFile, const QString& dmsetupFile = {});
