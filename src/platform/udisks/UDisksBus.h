// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/udisks/UDisksObjectTree.h"

#include <QString>
#include <QVariantMap>

/// The calls that the binding makes to the UDisks2 daemon on the system bus. Each blocks until the answer or its time
/// limit; without a bus or a daemon they fail at once.
namespace UDisksBus {

/// The outcome of a call that can fail with a text.
struct Outcome
{
    bool succeeded = false;
    QString text; ///< the call's text on success; else the daemon's or the bus's error text, possibly empty
};

/// All objects of the daemon; empty when it cannot be asked or its answer has another type than expected.
[[nodiscard]] UDisksManagedObjects managedObjects();

/// The current property "MountPoints" of the file system at an object path, as it comes; invalid when it cannot be
/// asked.
[[nodiscard]] QVariant mountPoints(const QString& path);

/// Mounts the file system at an object path. The text of a success is the mount path.
[[nodiscard]] Outcome mount(const QString& path, const QVariantMap& options);

/// Unmounts the file system at an object path. A success has no text.
[[nodiscard]] Outcome unmount(const QString& path, const QVariantMap& options);

} // namespace UDisksBus
