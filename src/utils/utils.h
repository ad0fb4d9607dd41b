// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/backuphistory.h"
#include "utils/blkid.h"
#include "utils/kernelcommandline.h"

#include <QJsonObject>
#include <QList>
#include <QString>

/// What the program learns about the machine through short commands and small files, and one-line system services.
///
/// Nothing throws; a failure is a false (or empty) result and a line in the log.
namespace Utils {

/// Lists what blkid(8) prints, and the device-mapper volumes that it left out when an LVM member is present.
/// @param list appended to
/// @param error what the tools printed on standard error is appended
/// @return whether blkid succeeded
bool getBlkIdInfoList(QList<BlkIdInfo>& list, QString& error);

/// Reads "/proc/cmdline". @return whether it could be read
bool getCmdLineInfo(CmdLineInfo& info);

/// The "root=" UUID and the "boot-from=" value of "/proc/cmdline", each empty when absent.
/// @return whether the file could be opened
bool getLiveRootUUIDAndBootTypeByCmdLine(QString& uuid, QString& bootType);

/// Which environment is running: 0 the installed system itself, 1 a system whose root is not "/" in the given fstab
/// (or a squashfs medium of that layout), 2 a generic live system, 3 the recovery live system, -1 unknown.
int getBootEnvironment(const QString& fstabFile);

/// The installed system's language from its locale or installer configuration, quotes included.
/// @return false, and @p locale untouched, when neither names one
bool getSystemLocale(const QString& rootDir, QString& locale);

/// The recorded backups that are really there, newest first, appended to @p list.
/// Mounts the partitions that the record names; with @p umountAfter those that this call mounted are unmounted again.
void getHistoryBackup(QList<BackupFileInfo>& list, const QString& recordFile, bool umountAfter);

/// Reads the pending task once and deletes its file, also when it does not parse.
/// @return false when the file does not exist or cannot be opened
bool getRecoveryJsonInfo(QJsonObject& object, const QString& recoveryJsonPath);

/// The mount point of the partition with that file-system UUID, mounting it when needed; empty on failure and for an
/// empty UUID.
QString mountDeviceByUUID(const QString& uuid);

/// Unmounts the partition with that file-system UUID; an empty UUID names none.
void umountDeviceByUUID(const QString& uuid);

/// The size in bytes of the device; @p size is untouched on failure.
bool getSwapPartitionSize(const QString& devicePath, qint64& size);

/// The recovery partition's UUID from the installed system's configuration; empty when there is none.
QString getRecoveryUUID(const QString& rootDir);

/// Whether a file can be created in the directory, tried with a probe file.
bool isWritable(const QString& path);

/// Whether the image tool finds nothing wrong with the image.
bool checkImageFile(const QString& path);

/// Whether the partition with that UUID, mounted as the running system's fstab says, holds initial images.
bool hasBackupImages(const QString& uuid);

/// Whether the directory holds at least one entry matching "*.kim"; false for an empty path.
bool hasImages(const QString& directory);

/// Deletes the path and everything under it as root. @return whether the command succeeded
bool removePath(const QString& path);

/// The present time in UTC, as 2026-01-31T23:59:59Z; empty when the command fails.
QString getUtcTime();

/// The Debian name of the machine's architecture, for example "amd64"; empty when the command fails.
QString getArchitecture();

/// The command name of a process; empty when there is none with that id or the id is not a number.
QString getProcessName(const QString& pid);

} // namespace Utils
