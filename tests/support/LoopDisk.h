// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// What a partition of a test disk is to be.
struct LoopPartition
{
    int sizeMiB = 16;        ///< size; 16 is enough for a small ext4
    QString fileSystem = {}; ///< "ext4", "btrfs", "xfs" or "swap"; empty leaves it unformatted
    QString label = {};      ///< label of the file system; may hold blanks
};

/// A disk of a test: a GPT in a file of the sandbox's memory, attached as a loop device.
///
/// Only this disk's nodes are made in the sandbox's "/dev", so nothing in there can reach a device that no test made.
/// The kernel detaches it with the last user, so it is gone with the process whatever happens. As root only; every
/// failing step ends the process with a message.
class LoopDisk
{
public:
    explicit LoopDisk(const QList<LoopPartition>& partitions);
    ~LoopDisk();
    LoopDisk(const LoopDisk&) = delete;
    LoopDisk& operator=(const LoopDisk&) = delete;

    /// The disk's node, for example "/dev/loop3".
    [[nodiscard]] QString device() const { return m_device; }

    /// The node of a partition, for example "/dev/loop3p1".
    /// @param number counts from 1
    [[nodiscard]] QString partition(qsizetype number) const;

    /// The UUID of what a partition holds, read from the device itself; empty when it is unformatted.
    [[nodiscard]] QString uuid(qsizetype number) const;

    /// The nodes of the disk and its partitions.
    [[nodiscard]] QStringList nodes() const;

    /// The folders of "/sys" that stand for nodes().
    [[nodiscard]] QStringList systemFolders() const;

    /// Unmounts the disk's partitions wherever they are mounted in this namespace and detaches it.
    /// @return whether the kernel has let it go
    bool detach();

private:
    void attach(const QString& image);
    void makeNodes();

    QString m_device;
    int m_descriptor = -1;
    qsizetype m_partitions = 0;
};
