// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/LoopDisk.h"

#include <memory>
#include <vector>

class QProcess;

/// The real UDisks2 daemon on the private system bus, with a device daemon of its own, over disks that the test made.
///
/// Everything happens inside the sandbox: the daemons see the host's other devices in "/sys", but have no node to open
/// them with. One object per process, as root only; a test's main function begins like this:
/// @code
/// Sandbox::enter(argv);
/// RealStorage::skipUnlessPossible();
/// return Sandbox::run<SomeTest>(argc, argv);
/// @endcode
class RealStorage
{
public:
    /// Ends the process with exit code 77 and the reason where no loop device can be made (not root).
    static void skipUnlessPossible();

    RealStorage();
    ~RealStorage();
    RealStorage(const RealStorage&) = delete;
    RealStorage& operator=(const RealStorage&) = delete;

    /// Makes a disk and waits until the daemon has listed it. Owned by this object.
    LoopDisk& addDisk(const QList<LoopPartition>& partitions);

    /// Whether a node belongs to a disk made here. A test asks before it acts on a device that somebody listed.
    [[nodiscard]] bool owns(const QString& node) const;

    /// Ends the daemons, unmounts and detaches all disks.
    /// @return whether nothing is left; the destructor fails the running test otherwise
    bool close();

private:
    QProcess* m_deviceDaemon = nullptr;
    QProcess* m_storageDaemon = nullptr;
    std::vector<std::unique_ptr<LoopDisk>> m_disks;
};
