// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// One mounted file system, as the system lists it.
struct MountedVolume
{
    QString rootPath; ///< absolute mount point
    QString device;   ///< for example "/dev/sdb1"
    QString name;     ///< label of the file system, may be empty
    QString fsType;
};

/// A place that a directory chooser offers.
struct MediaPlace
{
    QString path;  ///< absolute directory
    QString title; ///< label, else the last part of the path, else the path

    bool operator==(const MediaPlace&) const = default;
};

/// What is mounted now, in the system's order; pseudo file systems are among it.
[[nodiscard]] QList<MountedVolume> mountedVolumes();

/// The places to offer of @p volumes: media (under /media, /run/media and /mnt) first, then the other file systems
/// that lie on a block device; each directory once. Boot partitions are left out.
[[nodiscard]] QList<MediaPlace> placesOf(const QList<MountedVolume>& volumes);
