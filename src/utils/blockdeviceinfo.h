// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QSharedPointer>
#include <QString>

struct BlockDeviceInfo;

/// A record that the list of devices and its relatives in the tree share.
using BlockDevicePtr = QSharedPointer<BlockDeviceInfo>;

/// Devices in the order in which lsblk(8) printed them. A volume over several devices is listed once under each.
using BlockDeviceList = QList<BlockDevicePtr>;

/// One block device as lsblk(8) lists it: disk, partition, opened LUKS mapping, logical volume, loop device, …
///
/// Texts are as printed ("\x22" stays) and trimmed; empty means that lsblk printed none.
struct BlockDeviceInfo
{
    QString path;       ///< the device node by kernel name, "/dev/dm-0" (not the "/dev/mapper/" link)
    QString name;       ///< NAME: the kernel name, or the mapping's name
    QString kname;      ///< KNAME: the kernel name, for example "dm-0" or "sda3"
    QString pkname;     ///< kernel name of the device this one is built on; dmsetup's answer wins over lsblk's PKNAME
    QString lsblkPath;  ///< PATH, for example "/dev/mapper/vg-root"
    QString mapperName; ///< name of the "/dev/mapper/" link to this device; empty when there is none
    QString uuid;
    QString label;
    QString partUuid;
    QString partLabel;
    QString type;       ///< "disk", "part", "crypt", "lvm", "loop", "rom", …
    QString fsType;     ///< lower case; "luks" for crypto_LUKS and "lvm2" for LVM2_member
    qint64 size = 0;    ///< bytes; of the file system once df(1) was asked. 0 when unknown, as the numbers below
    qint64 fsUsed = 0;  ///< bytes
    qint64 fsAvail = 0; ///< bytes
    qint64 logSec = 0;  ///< logical sector size in bytes
    qint64 phySec = 0;  ///< physical sector size in bytes
    QString usage;      ///< the "Use%" column of df(1), for example "42%"; empty until df was asked
    QString mountPoint; ///< empty when not mounted
    QString model;      ///< MODEL
    QString majMin;     ///< MAJ:MIN as printed
    qint32 major = -1;  ///< -1 when it is not a number, as the two below
    qint32 minor = -1;  ///< number of the device within its major number
    qint32 rota = -1;   ///< 1 for a rotating disk, 0 for others
    bool readOnly = false;
    bool hotplug = false; ///< removable or on a hot-plug bus
    QString vendor;
    QString serial;
    QString rev;
    QString byUuidPath;      ///< "/dev/disk/by-uuid/…" formed from the value, whether or not it exists; empty without
    QString byLabelPath;     ///< likewise "/dev/disk/by-label/…"
    QString byPartUuidPath;  ///< likewise "/dev/disk/by-partuuid/…"
    QString byPartLabelPath; ///< likewise "/dev/disk/by-partlabel/…"
    QString mapperPath;      ///< absolute path of the "/dev/mapper/" link
    BlockDevicePtr parent;   ///< the device this one is built on; null for a disk and until the tree is linked
    BlockDeviceList children; ///< the devices built on this one
};
