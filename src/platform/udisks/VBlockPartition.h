// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/udisks/VBlockDevice.h"

/// A block device that is a partition (interface org.freedesktop.UDisks2.Partition).
class VBlockPartition : public VBlockDevice
{
public:
    using VBlockDevice::VBlockDevice;

    /// The object path of the whole disk's block device, whose partition table lists this partition.
    [[nodiscard]] QString table() const;
};
