// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/VDiskManager.h"

#include "platform/udisks/UDisksBus.h"
#include "platform/udisks/UDisksObjectTree.h"
#include "platform/udisks/VBlockDevice.h"
#include "platform/udisks/VBlockPartition.h"

VDiskManager::VDiskManager() = default;

VDiskManager::~VDiskManager() = default;

QStringList VDiskManager::blockDevices(const QVariantMap& options) const
{
    Q_UNUSED(options)
    QStringList paths;
    for (const UDisksBlock& block : tree()->blocks) {
        paths << block.path;
    }
    return paths;
}

std::unique_ptr<VBlockDevice> VDiskManager::createBlockDevice(const QString& path) const
{
    return tree()->find(path) ? std::make_unique<VBlockDevice>(path, tree()) : nullptr;
}

std::unique_ptr<VBlockPartition> VDiskManager::createBlockPartition(const QString& path) const
{
    const UDisksBlock* block = tree()->find(path);
    return block && block->isPartition ? std::make_unique<VBlockPartition>(path, tree()) : nullptr;
}

const std::shared_ptr<const UDisksObjectTree>& VDiskManager::tree() const
{
    if (!m_tree) {
        m_tree = std::make_shared<const UDisksObjectTree>(parseObjectTree(UDisksBus::managedObjects()));
    }
    return m_tree;
}
