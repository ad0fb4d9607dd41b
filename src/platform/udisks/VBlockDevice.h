// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QString>
#include <QVariantMap>

#include <memory>

struct UDisksObjectTree;

/// One block device of UDisks2 (interface org.freedesktop.UDisks2.Block and, where there is one, .Filesystem).
///
/// Answers come from the object tree of the manager that made it, except as setWatchChanges() says. Made by
/// VDiskManager only; not for sharing between threads.
class VBlockDevice
{
public:
    VBlockDevice(const QString& path, std::shared_ptr<const UDisksObjectTree> tree);
    virtual ~VBlockDevice();
    VBlockDevice(const VBlockDevice&) = delete;
    VBlockDevice& operator=(const VBlockDevice&) = delete;

    /// The device node, for example "/dev/sda3".
    [[nodiscard]] QString device() const;

    /// The object path of the drive that holds the device; "/" or empty when it has none (a loop device).
    [[nodiscard]] QString drive() const;

    /// What the device holds: "ext4", "swap", "crypto_LUKS", …; empty when unknown.
    [[nodiscard]] QString idType() const;

    /// The UUID of the file system or container; empty for whole disks and unformatted partitions.
    [[nodiscard]] QString idUUID() const;

    /// Where the device is mounted, as bytes without the trailing NUL of the bus; empty when nowhere.
    [[nodiscard]] QByteArrayList mountPoints() const;

    /// Mounts the file system.
    /// @param options of the daemon's Mount call, for example {"options": "compress=zstd"}
    /// @return the mount path, or an error text, which always contains a blank
    QString mount(const QVariantMap& options);

    /// Unmounts the file system.
    /// @return true when the daemon did so
    bool unmount(const QVariantMap& options);

    /// With @p watch the mount points are asked from the daemon each time from now on; without, they stay as listed.
    void setWatchChanges(bool watch);

protected:
    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] const std::shared_ptr<const UDisksObjectTree>& tree() const { return m_tree; }

private:
    QString m_path;
    std::shared_ptr<const UDisksObjectTree> m_tree;
    bool m_watch = false;
};
