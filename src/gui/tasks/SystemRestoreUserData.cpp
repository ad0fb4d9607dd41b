// SPDX-License-Identifier: GPL-3.0-or-later
// SystemRestoreTask: what happens to the users' files.
#include "gui/tasks/SystemRestoreTask.h"

#include "gui/tasks/initialimages.h"
#include "utils/core/command.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

// Everything that rm can delete: also hidden entries, and links that lead nowhere ("System").
constexpr QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

bool liesBelow(const QString& path, const QString& directory)
{
    const QString real = QFileInfo(directory).canonicalFilePath();
    return !real.isEmpty() && QFileInfo(path).canonicalFilePath().startsWith(real + u'/');
}

} // namespace

void SystemRestoreTask::removeUserData()
{
    if (m_dataUUID.isEmpty()) {
        qDebug() << "can not found data parttition!";
        return;
    }
    const QString data = mountDeviceFromUUID(m_dataUUID);
    if (data.isEmpty()) {
        qDebug() << "can not found data mount point!";
        return;
    }
    if (m_refreshDataPartition) {
        wipeUserData(data);
    } else {
        cleanDesktops(data);
    }
}

void SystemRestoreTask::cleanDesktops(const QString& dataMountPoint)
{
    qDebug() << "do not remove user data!";
    const QDir home(u"%1/home/"_s.arg(dataMountPoint));
    if (!home.exists()) {
        // Deliberately without unmounting.
        qDebug() << "Remove desktop file: don't found home dir!";
        return;
    }
    for (const QString& user : home.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString desktop = u"%1/%2/Desktop/"_s.arg(home.absolutePath(), user);
        qDebug() << "current desktop:" << desktop;
        // A person's link must not lead root to files elsewhere.
        if (liesBelow(desktop, home.absolutePath())) {
            cleanDesktop(desktop);
        } else {
            qDebug() << desktop << "don't exists!";
        }
    }
    unmountDeviceFromUUID(m_dataUUID);
    qDebug() << "Deleted desktop file";
}

void SystemRestoreTask::cleanDesktop(const QString& desktop)
{
    for (const QFileInfo& file : QDir(desktop).entryInfoList({u"*.desktop"_s}, QDir::Files)) {
        const QString path = file.absoluteFilePath();
        qDebug() << "current desktop file:" << path;
        if (isKeptDesktopEntry(file.fileName())) {
            continue;
        }
        qDebug() << "remove:" << path;
        SpawnCmd(u"sudo"_s, {u"rm"_s, u"-f"_s, path});
    }
}

void SystemRestoreTask::wipeUserData(const QString& dataMountPoint)
{
    wipeHome(dataMountPoint);
    if (hasSeparateDataPartition()) {
        wipeTopLevel(dataMountPoint);
    }
    unmountDeviceFromUUID(m_dataUUID);
    qDebug() << "Deleted user data";
}

void SystemRestoreTask::wipeHome(const QString& dataMountPoint)
{
    const QString home = u"%1/home/"_s.arg(dataMountPoint);
    // A link in the place of home would lead to files elsewhere.
    const bool isLink = QFileInfo(u"%1/home"_s.arg(dataMountPoint)).isSymLink();
    const QStringList entries = isLink ? QStringList() : QDir(home).entryList(everything);
    qDebug() << "home dir entry:" << entries;
    for (const QString& entry : entries) {
        const QString path = u"%1/home/%2"_s.arg(dataMountPoint, entry);
        qDebug() << "start rm:" << path;
        QString output;
        QString error;
        if (SpawnCmd(u"sudo"_s, {u"rm"_s, u"-rf"_s, path}, output, error)) {
            continue;
        }
        qDebug() << "failed to rm dirPath = " << path << ", err = " << error;
        qDebug() << "try rm force ...";
        forceRemove(path);
    }
}

void SystemRestoreTask::wipeTopLevel(const QString& dataMountPoint)
{
    for (const QFileInfo& entry : QDir(u"%1/"_s.arg(dataMountPoint)).entryInfoList(everything)) {
        if (isKeptTopLevelEntry(entry)) {
            continue;
        }
        const QString path = u"%1/%2"_s.arg(dataMountPoint, entry.fileName());
        qDebug() << "rm filePath = " << path;
        if (SpawnCmd(u"sudo"_s, {u"rm"_s, u"-rf"_s, path})) {
            continue;
        }
        // Deliberately empty: this rm runs without its error text.
        qDebug() << "failed to rm filePath = " << path << ", err = " << QString();
        qDebug() << "try rm force ...";
        forceRemove(path);
    }
}

bool SystemRestoreTask::forceRemove(const QString& path)
{
    SpawnCmd(u"sudo"_s, {u"chattr"_s, u"-i"_s, u"-R"_s, path});
    return SpawnCmd(u"sudo"_s, {u"rm"_s, u"-rf"_s, path});
}
