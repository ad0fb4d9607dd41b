// SPDX-License-Identifier: GPL-3.0-or-later
#include "applicationproperties.h"

#include <QCoreApplication>
#include <QVariant>

namespace ApplicationProperties {

namespace {

template <typename T>
T value(const char* name)
{
    return qApp->property(name).template value<T>();
}

template <typename T>
void set(const char* name, const T& value)
{
    qApp->setProperty(name, QVariant::fromValue(value));
}

} // namespace

QString logFile()
{
    return value<QString>("logFile");
}

void setLogFile(const QString& path)
{
    set("logFile", path);
}

QJsonObject recoveryJson()
{
    return value<QJsonObject>("recoveryJson");
}

void setRecoveryJson(const QJsonObject& task)
{
    set("recoveryJson", task);
}

QList<SavedBackup> savePathJson()
{
    return value<QList<SavedBackup>>("savePathJson");
}

void setSavePathJson(const QList<SavedBackup>& backups)
{
    set("savePathJson", backups);
}

bool isHaveInitBackup()
{
    return value<bool>("isHaveInitBackup");
}

void setHaveInitBackup(bool have)
{
    set("isHaveInitBackup", have);
}

bool isDeviceOS()
{
    return value<bool>("isDeviceOS");
}

void setDeviceOS(bool device)
{
    set("isDeviceOS", device);
}

bool isAutoRestart()
{
    return value<bool>("isAutoRestart");
}

void setAutoRestart(bool restart)
{
    set("isAutoRestart", restart);
}

} // namespace ApplicationProperties
