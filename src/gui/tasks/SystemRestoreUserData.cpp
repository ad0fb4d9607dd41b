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

#include <algorithm>
#include <filesystem>
#include <optional>
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

/// The inode number of what the path names, not of what a link leads to; nothing when it is not there.
std::optional<quint64> inodeOf(const QByteArray& path)
{
    struct stat status
    {
    };
    return ::lstat(path.constData(), &status) == 0 ? std::optional<quint64>(status.st_ino) : std::nullopt;
}

/// Inode numbers of the entries whose names are no UTF-8, which Qt leaves out of its listings.
QList<quint64> entriesWithoutReadableName(const QString& directory)
{
    QList<quint64> inodes;
    std::error_code error;
    std::filesystem::directory_iterator entry(QFile::encodeName(directory).constData(), error);
    // Not a range-for: reading on from a damaged directory would throw.
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const QByteArray name = QByteArray::fromStdString(entry->path().filename().native());
        const std::optional<quint64> inode = inodeOf(QByteArray::fromStdString(entry->path().native()));
        if (QString::fromUtf8(name).toUtf8() != name && inode) {
            inodes.append(*inode);
        }
    }
    if (error) {
        qWarning() << "cannot read all of" << directory << QString::fromStdString(error.message());
    }
    return inodes;
}

} // namespace

// The misspellings in the messages below are deliberate: logs are searched for them.
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
        removeStubborn(path);
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
        removeStubborn(path);
    }
    wipeUnreadableNames(u"%1/"_s.arg(dataMountPoint));
}

void SystemRestoreTask::wipeUnreadableNames(const QString& directory)
{
    for (const quint64 inode : entriesWithoutReadableName(directory)) {
        removeInode(directory, inode);
    }
}

bool SystemRestoreTask::forceRemove(const QString& path)
{
    SpawnCmd(u"sudo"_s, {u"chattr"_s, u"-i"_s, u"-R"_s, path});
    return SpawnCmd(u"sudo"_s, {u"rm"_s, u"-rf"_s, path});
}

// The rule for sudo lets no name through that could be taken for two arguments ("photos -2020").
void SystemRestoreTask::removeStubborn(const QString& path)
{
    qDebug() << "try rm force ...";
    if (forceRemove(path)) {
        return;
    }
    if (const std::optional<quint64> inode = inodeOf(QFile::encodeName(path))) {
        removeInode(path.first(path.lastIndexOf(u'/') + 1), *inode);
    }
}

void SystemRestoreTask::removeInode(const QString& directory, quint64 inode)
{
    // All subvolumes of a btrfs have the same number, those that stay too.
    const QFileInfoList entries = QDir(directory).entryInfoList(everything);
    const bool wouldTakeKept = std::ranges::any_of(entries, [inode](const QFileInfo& entry) {
        return isKeptTopLevelEntry(entry) && inodeOf(QFile::encodeName(entry.filePath())) == inode;
    });
    if (wouldTakeKept) {
        qWarning() << "entry stays in" << directory << "inode" << inode;
        return;
    }
    qDebug() << "rm entry in" << directory << "inode" << inode;
    const bool isRemoved = SpawnCmd(u"sudo"_s,
        {u"find"_s, directory, u"-mindepth"_s, u"1"_s, u"-maxdepth"_s, u"1"_s, u"-inum"_s, QString::number(inode),
            u"-exec"_s, u"rm"_s, u"-rf"_s, u"{}"_s, u"+"_s});
    if (!isRemoved) {
        qWarning() << "failed to rm by inode in" << directory << "inode" << inode;
    }
}
