// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"

#include <QHash>
#include <QString>

/// The devices of one look at the machine, with the look-up by any of their names.
///
/// Owns the links of the tree: when it goes, `parent` and `children` of its devices are emptied.
class DeviceSnapshot
{
public:
    explicit DeviceSnapshot(BlockDeviceList devices);
    ~DeviceSnapshot();
    DeviceSnapshot(const DeviceSnapshot&) = delete;
    DeviceSnapshot& operator=(const DeviceSnapshot&) = delete;

    [[nodiscard]] const BlockDeviceList& devices() const { return m_devices; }

    /// The first device, in list order, that has the key as one of its names; null when none has, and for an empty key.
    /// Loop devices are never found.
    [[nodiscard]] BlockDevicePtr find(const QString& key) const;

    /// Takes up changed names (the mount point); needed after each change.
    void rebuildIndex();

private:
    BlockDeviceList m_devices;
    QHash<QString, BlockDevicePtr> m_byName;
};
