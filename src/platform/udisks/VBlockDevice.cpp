// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/VBlockDevice.h"

#include "platform/udisks/UDisksBus.h"
#include "platform/udisks/UDisksObjectTree.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

// Callers tell a mount path from an error text by the blank, so an error text must hold one.
QString errorText(const QString& text)
{
    if (text.contains(u' ')) {
        return text;
    }
    return text.isEmpty() ? u"mount failed"_s : u"mount failed: "_s + text;
}

} // namespace

VBlockDevice::VBlockDevice(const QString& path, std::shared_ptr<const UDisksObjectTree> tree)
    : m_path(path)
    , m_tree(std::move(tree))
{ }

VBlockDevice::~VBlockDevice() = default;

QString VBlockDevice::device() const
{
    const UDisksBlock* block = m_tree->find(m_path);
    return block ? block->device : QString();
}

QString VBlockDevice::drive() const
{
    const UDisksBlock* block = m_tree->find(m_path);
    return block ? block->drive : QString();
}

QString VBlockDevice::idType() const
{
    const UDisksBlock* block = m_tree->find(m_path);
    return block ? block->idType : QString();
}

QString VBlockDevice::idUUID() const
{
    const UDisksBlock* block = m_tree->find(m_path);
    return block ? block->idUUID : QString();
}

QByteArrayList VBlockDevice::mountPoints() const
{
    if (m_watch) {
        return parseMountPoints(UDisksBus::mountPoints(m_path));
    }
    const UDisksBlock* block = m_tree->find(m_path);
    return block ? block->mountPoints : QByteArrayList();
}

QString VBlockDevice::mount(const QVariantMap& options)
{
    const auto [mounted, text] = UDisksBus::mount(m_path, options);
    return mounted && !text.isEmpty() ? text : errorText(text);
}

bool VBlockDevice::unmount(const QVariantMap& options)
{
    return UDisksBus::unmount(m_path, options).succeeded;
}

void VBlockDevice::setWatchChanges(bool watch)
{
    m_watch = watch;
}
