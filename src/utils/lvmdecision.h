// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/deviceclasses.h"

#include <QStringList>

/// How the file systems of an installed system lie on the machine's devices.
struct LvmDecision
{
    bool isOnLvm = false;               ///< one is on a logical volume
    bool isEncrypted = false;           ///< one lies in a LUKS container
    bool isEncryptedFileSystem = false; ///< one is on an encrypted file system that is not LVM's
};

/// Decides from the linked devices of the machine.
/// @param uuids of the installed system's file systems; duplicates count
[[nodiscard]] LvmDecision decideLvm(const DeviceClasses& classes, const QStringList& uuids);
