// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"

#include <QList>
#include <QString>

/// A symbolic link in "/dev/mapper".
struct MapperLink
{
    QString name;   ///< file name, which is the mapping's name
    QString path;   ///< absolute path of the link
    QString target; ///< absolute path that it points at, for example "/dev/dm-0"
};

/// One line of "dmsetup deps -o blkdevname": a mapping and a device that it is built on.
struct DmDependency
{
    QString mapping;    ///< name of the mapping
    QString dependency; ///< kernel name of the device; the last one where the mapping has several
};

/// Gives the device that each link points at its mapper name and path: the first in the list with that path.
void applyMapperLinks(const BlockDeviceList& devices, const QList<MapperLink>& links);

/// The dependencies that dmsetup(8) printed; lines of another form ("No devices found") are left out.
[[nodiscard]] QList<DmDependency> parseDmDependencies(const QString& output);

/// Sets the `pkname` of each mapping whose device and dependency are both in the list.
void applyDmDependencies(const BlockDeviceList& devices, const QList<DmDependency>& dependencies);
