// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"
#include "utils/deviceclasses.h"

#include <QList>
#include <QString>
#include <QStringList>

/// The program's picture of the machine's block devices.
///
/// The static functions work on one list for the whole process. It is filled when first asked and rebuilt by
/// refreshDevices(); a mutex guards it, so every function may be called from any thread. An object is a handle on one
/// device, with which it is mounted and unmounted. Nothing throws. Without lsblk the list is empty; a dmsetup or df
/// that fails leaves it as lsblk gave it.
class Device
{
public:
    explicit Device(BlockDevicePtr info);

    /// Mounts a partition (mount(8), as the running user) and records the mount point.
    /// @return false for anything but a partition, for one that is mounted elsewhere, and when mount fails
    bool mount(const QString& target);

    /// Unmounts a partition and clears its mount point; one that is not mounted is a success.
    /// @return false for anything but a partition, and when umount fails
    bool umount();

    /// Rebuilds the process's list; empty when lsblk fails.
    static void refreshDevices();

    /// Appends what lsblk(8) lists, with the names of "/dev/mapper/" and the parents that dmsetup(8) knows.
    static void collectDevices(BlockDeviceList& list);

    /// The devices of the output of collectDevices()'s lsblk command; lines of another form are left out.
    [[nodiscard]] static BlockDeviceList parseLsblkPairs(const QString& output);

    /// Replaces the `pkname` of mapped devices by what "dmsetup deps" says; nothing changes when that fails.
    static void applyDmDependencies(BlockDeviceList& list);

    /// Asks df(1) for size, used and available bytes of the process's list. Devices that df lists under another path
    /// than `path` ("/dev/mapper/…"), and mount points with blanks, keep lsblk's.
    /// Changes devices that look-ups have given out: no other thread may be reading them.
    static void updateUsageFromDf();

    /// The kinds of the devices of a list.
    [[nodiscard]] static DeviceClasses classifyDevices(const BlockDeviceList& devices);

    /// Sets `parent` and `children` among the classified devices. See linkDeviceTree() for how to let go of them.
    static void linkDeviceTree(const DeviceClasses& classes);

    /// The first device, in list order, that the key names exactly: by path, name, kernel name, mapper name, UUID,
    /// label, PARTUUID, PARTLABEL, mount point or one of the "/dev/disk/by-…" paths.
    /// @return null when there is none; loop devices are never returned, and an empty key names nothing
    [[nodiscard]] static BlockDevicePtr lookupDevice(const QString& key);

    /// Rebuilds the process's list and decides whether the installed system lies on LVM.
    /// @param uuids of the installed system's mounts (collectFstabUUIDs()); duplicates count
    /// @param isEncrypted set to whether one of them lies in a LUKS container
    /// @param flag set to whether one of them is on an encrypted file system that is not LVM's
    /// @return whether one of them is on a logical volume
    static bool isLvm(const QStringList& uuids, bool& isEncrypted, bool& flag);

    /// Appends the mount points whose lsblk line contains "/media/". @return whether there was one
    static bool getAllMediaMountPoint(QList<QString>& mountPoints);

    /// Finds where the file system with that UUID is mounted.
    /// A UUID that is the beginning of another one finds the first listed.
    /// @param uuid anything but letters, digits, "-" and ":" fails without a command
    /// @param mountPoint untouched on failure
    static bool getMountPointByUUID(const QString& uuid, QString& mountPoint);

private:
    BlockDevicePtr m_info;
};
