// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicesnapshot.h"

#include "utils/devicetree.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What a device is looked up by; neither `mapperPath` nor `lsblkPath`, deliberately.
constexpr QString BlockDeviceInfo::*names[] = {
    &BlockDeviceInfo::path,
    &BlockDeviceInfo::name,
    &BlockDeviceInfo::kname,
    &BlockDeviceInfo::mapperName,
    &BlockDeviceInfo::uuid,
    &BlockDeviceInfo::label,
    &BlockDeviceInfo::partUuid,
    &BlockDeviceInfo::partLabel,
    &BlockDeviceInfo::mountPoint,
    &BlockDeviceInfo::byUuidPath,
    &BlockDeviceInfo::byLabelPath,
    &BlockDeviceInfo::byPartUuidPath,
    &BlockDeviceInfo::byPartLabelPath,
};

} // namespace

DeviceSnapshot::DeviceSnapshot(BlockDeviceList devices)
    : m_devices(std::move(devices))
{
    rebuildIndex();
}

DeviceSnapshot::~DeviceSnapshot()
{
    unlinkDevices(m_devices);
}

BlockDevicePtr DeviceSnapshot::find(const QString& key) const
{
    return m_byName.value(key);
}

void DeviceSnapshot::rebuildIndex()
{
    m_byName.clear();
    m_byName.reserve(m_devices.size() * 4);
    for (const BlockDevicePtr& device : std::as_const(m_devices)) {
        if (device->path.startsWith("/dev/loop"_L1)) {
            continue;
        }
        for (const auto name : names) {
            const QString& key = (*device).*name;
            if (!key.isEmpty() && !m_byName.contains(key)) {
                m_byName.insert(key, device);
            }
        }
    }
}
