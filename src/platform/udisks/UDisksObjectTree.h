// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QDBusObjectPath>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariantMap>

/// The daemon's answer to org.freedesktop.DBus.ObjectManager.GetManagedObjects, D-Bus type a{oa{sa{sv}}}: object path →
/// interface → property → value.
using UDisksManagedObjects = QMap<QDBusObjectPath, QMap<QString, QVariantMap>>;

/// What one block device of the daemon is. A property that is missing or of the wrong type is empty.
struct UDisksBlock
{
    QString path;               ///< object path
    QString device;             ///< device node, for example "/dev/sda3"
    QString drive;              ///< object path of the drive, "/" when there is none
    QString idType;             ///< what the device holds
    QString idUUID;             ///< UUID of what the device holds
    QString table;              ///< object path of the whole disk's block device; empty unless a partition
    QByteArrayList mountPoints; ///< where it is mounted, without the trailing NUL of the bus
    bool isPartition = false;   ///< has the Partition interface
    bool isRemovable = false;   ///< its drive is one that people take out
};

/// The block devices that the daemon knew at one moment.
struct UDisksObjectTree
{
    QList<UDisksBlock> blocks; ///< internal disks' before removable ones', then by device node

    /// The block device at an object path, or null. Valid as long as the tree.
    [[nodiscard]] const UDisksBlock* find(const QString& path) const;
};

/// Sorts out the daemon's answer. Objects that are no block devices count only as drives of others.
[[nodiscard]] UDisksObjectTree parseObjectTree(const UDisksManagedObjects& objects);

/// The value of the Filesystem interface's property "MountPoints" (D-Bus type aay), each without its trailing NUL;
/// empty for a value of another type.
[[nodiscard]] QByteArrayList parseMountPoints(const QVariant& value);
