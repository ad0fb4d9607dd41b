// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>

/// One recorded manual backup: when it was saved (decimal seconds since the epoch, as recorded) and its absolute
/// directory under the mount point of its partition.
using SavedBackup = QPair<QString, QString>;

/// The facts that start-up publishes for the whole program, as dynamic properties of the application object.
///
/// A getter gives the type's empty value (or false) for a property that was never set. GUI thread only.
namespace ApplicationProperties {

/// "logFile": the path of the log that this run writes.
[[nodiscard]] QString logFile();
void setLogFile(const QString& path);

/// "recoveryJson": the pending task, empty when there is none.
[[nodiscard]] QJsonObject recoveryJson();
void setRecoveryJson(const QJsonObject& task);

/// "savePathJson": the recorded manual backups, newest first.
[[nodiscard]] QList<SavedBackup> savePathJson();
void setSavePathJson(const QList<SavedBackup>& backups);

/// "isHaveInitBackup": the recovery partition holds an initial system image.
[[nodiscard]] bool isHaveInitBackup();
void setHaveInitBackup(bool have);

/// "isDeviceOS": the installed system is the "Device" edition.
[[nodiscard]] bool isDeviceOS();
void setDeviceOS(bool device);

/// "isAutoRestart": the pending task wants a restart without asking; never set without a pending task.
[[nodiscard]] bool isAutoRestart();
void setAutoRestart(bool restart);

} // namespace ApplicationProperties
