// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QString>

/// What the restore page needs to know about the machine.
struct RestoreBaseInfo
{
    QString recoveryUUID;                ///< of the recovery partition; empty when there is none
    QString osType;                      ///< the edition word of the installed system
    QString backupInfo;                  ///< JSON text of the list of backups (backuplistjson.h)
    QString recoveryInfo;                ///< JSON text of the pending task; empty when there is none
    int osVersion = 0;                   ///< minor version of the installed system
    bool isExitsInitBackup = false;      ///< the recovery partition holds an initial image
    bool isDeviceOS = false;             ///< the edition is "Device"
    bool isLvm = false;                  ///< the system's root lies on LVM
    bool isEncrypted = false;            ///< the system's disk is encrypted
    bool isFileManagerEncrypted = false; ///< an opened encrypted file system that is not LVM's is one of the system's

    /// All fields, under keys of the same names.
    [[nodiscard]] QJsonObject toJson() const;

    /// The facts that the object holds; a key that is absent leaves its field at the default.
    [[nodiscard]] static RestoreBaseInfo fromJson(const QJsonObject& object);
};
