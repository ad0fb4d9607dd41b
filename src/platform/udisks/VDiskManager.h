// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QVariantMap>

#include <memory>

class VBlockDevice;
class VBlockPartition;
struct UDisksObjectTree;

/// Lists the block devices that UDisks2 knows on the system bus and makes objects for them.
///
/// One manager is one look-up: it asks the daemon for its whole object tree once, on first use, and every object made
/// by it answers from that tree. Make a new manager for a new look-up. Without a bus or a daemon every answer is empty,
/// at once.
class VDiskManager
{
public:
    VDiskManager();
    ~VDiskManager();

    /// The object paths of all block devices: internal disks' before removable ones', then by device path.
    /// @param options reserved by the interface; pass none
    [[nodiscard]] QStringList blockDevices(const QVariantMap& options = {}) const;

    /// The block device at an object path, or null when the daemon has none there.
    [[nodiscard]] std::unique_ptr<VBlockDevice> createBlockDevice(const QString& path) const;

    /// The partition at an object path, or null when there is no block device or it is no partition.
    [[nodiscard]] std::unique_ptr<VBlockPartition> createBlockPartition(const QString& path) const;

private:
    [[nodiscard]] const std::shared_ptr<const UDisksObjectTree>& tree() const;

    mutable std::shared_ptr<const UDisksObjectTree> m_tree;
};
