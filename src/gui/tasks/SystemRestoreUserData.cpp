// SPDX-License-Identifier: GPL-3.0-or-later
// SystemRestoreTask: what happens to the users' files.
#include "gui/tasks/SystemRestoreTask.h"

#include "gui/tasks/initialimages.h"
#include "utils/core/command.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>

#include <filesystem>
#include <system_error>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

// Everything that rm can delete: also hidden entries, and links that lead nowhere ("System").
constexpr QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

bool isLinkedHome(const QString& dataMountPoint)
{
    return QFileInfo(u"%1/home"_s.arg(dataMountPoint)).isSymLink();
}

bool liesBelow(const QString& path, const QString& directory)
{
    const QString real = QFileInfo(directory).canonicalFilePath();
    return !real.isEmpty() && QFileInfo(path).canonicalFilePath().startsWith(real + u'/');
}

/// Inode numbers of the entries whose names are no UTF-8, which Qt leaves out of its listings.
QList<quint64> entriesWithoutReadableName(const QString& directory)
{
    QList<quint64> inodes;
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(QFile::encodeName(directory).constData(), ignored)) {
        const QByteArray name = QByteArray::fromStdString(entry.path().filename().native());
        struct stat status
        {
        };
        if (QString::fromUtf8(name).toUtf8() != name && ::lstat(entry.path().c_str(), &status) == 0) {
            inodes.append(status.st_ino);
        }
    }
    return inodes;
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
    // A link in the place of home would lead to files elsewhere.
    if (!home.exists() || isLinkedHome(dataMountPoint)) {
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
    const bool isLink = isLinkedHome(dataMountPoint);
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
    if (!isLink) {
        wipeUnreadableNames(home);
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
    wipeUnreadableNames(u"%1/"_s.arg(dataMountPoint));
}

void SystemRestoreTask::wipeUnreadableNames(const QString& directory)
{
    for (const quint64 inode : entriesWithoutReadableName(directory)) {
        qDebug() << "rm entry without a readable name in" << directory << "inode" << inode;
        const bool isRemoved = SpawnCmd(u"sudo"_s,
            {u"find"_s, directory, u"-mindepth"_s, u"1"_s, u"-maxdepth"_s, u"1"_s, u"-inum"_s, QString::number(inode),
                u"-exec"_s, u"rm"_s, u"-rf"_s, u"{}"_s, u"+"_s});
        if (!isRemoved) {
            qWarning() << "failed to rm the entry without a readable name";
        }
    }
}

bool SystemRestoreTask::forceRemove(const QString& path)
{
    SpawnCmd(u"sudo"_s, {u"chattr"_s, u"-i"_s, u"-R"_s, path});
    return SpawnCmd(u"sudo"_s, {u"rm"_s, u"-rf"_s, path});
}
