// SPDX-License-Identifier: GPL-3.0-or-later
// Task: the boot loader after a restore, and making room for restored directories.
#include "gui/tasks/Task.h"

#include "gui/tasks/fstablines.h"
#include "utils/core/command.h"
#include "utils/installedversion.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

// From this minor version on, and in every other edition, the installed system repairs its own boot entry.
constexpr int firstSelfRepairingVersion = 1040;
constexpr auto repairedEdition = "Professional"_L1;

QString resetEfiScript()
{
    return u"/lib/kestro-recovery-gui/scripts/resetEFI"_s;
}

} // namespace

QMap<QString, QString> Task::getUUIDFromFstab()
{
    m_osMinorVersion = 0;
    const QString root = mountDeviceFromUUID(m_rootUUID);
    QFile fstab(root + "/etc/fstab"_L1);
    // Without a mounted root "/etc/fstab" would be the one of this environment.
    if (root.isEmpty() || !fstab.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << "open file fail!";
        return {};
    }
    QMap<QString, QString> uuidMap = parseMountPointUuids(QString::fromUtf8(fstab.readAll()));
    m_osMinorVersion = installedMinorVersion(root);
    qDebug() << "uuidMap:" << uuidMap;
    return uuidMap;
}

void Task::resetGrub()
{
    const QMap<QString, QString> uuids = getUUIDFromFstab();
    const QString efiDevice = devicePathFromUUID(uuids.value(u"/boot/efi"_s));
    const QString bootDevice = devicePathFromUUID(uuids.value(u"/boot"_s));
    qDebug() << "Begin reset efi:" << efiDevice << "boot:" << bootDevice;
    SpawnCmd(u"sudo"_s, {u"/lib/kestro-recovery-gui/scripts/reset-grub"_s, efiDevice, bootDevice});
}

void Task::resetEFI()
{
    const QMap<QString, QString> uuids = getUUIDFromFstab();
    qInfo() << "Task::resetEFI , m_isUEFI = " << (m_isUEFI ? "true" : "false");
    if (m_isUEFI) {
        resetUEFIEntry(uuids);
    } else {
        resetLegacyBoot(uuids);
    }
}

void Task::resetUEFIEntry(const QMap<QString, QString>& uuids)
{
    if (m_osMinorVersion >= firstSelfRepairingVersion || m_edition != repairedEdition) {
        qDebug() << "os-version is:" << m_osMinorVersion << " or not professional, will not reset efi!";
        return;
    }
    const QString efiDevice = devicePathFromUUID(uuids.value(u"/boot/efi"_s));
    if (efiDevice.isEmpty()) {
        qDebug() << "not found efi partition!";
        return;
    }
    qDebug() << "Begin reset efi:" << efiDevice;
    SpawnCmd(u"sudo"_s, {resetEfiScript(), efiDevice});
}

void Task::resetLegacyBoot(const QMap<QString, QString>& uuids)
{
    const QString bootUuid = uuids.value(u"/boot"_s);
    const QString bootDevice = devicePathFromUUID(bootUuid);
    if (bootDevice.isEmpty()) {
        qDebug() << "Task::resetEFI not found boot partition!";
        return;
    }
    const QString disk = diskFromUUID(bootUuid).second;
    qDebug() << "legacy: Begin reset grub, bootDevicePath:" << bootDevice << ", bootPknamePath: " << disk;
    QString output;
    QString error;
    SpawnCmd(u"sudo"_s, {resetEfiScript(), bootDevice, u"legacy"_s, disk}, output, error);
    qDebug() << "legacy: reset grub end, output: " << output << ", error: " << error;
}

void Task::deleteOptAndVar(const QString& rootPath)
{
    if (rootPath.isEmpty()) {
        qDebug() << "rootPath is empty, 'opt' and 'var' stay!";
        return;
    }
    qDebug() << "start remove 'opt' and 'var' directory!";
    QStringList paths{u"%1/opt"_s.arg(rootPath), u"%1/var"_s.arg(rootPath)};
    // With the slash behind it, rm would empty what a link leads to.
    paths.removeIf([](const QString& path) { return QFileInfo(path).isSymLink(); });
    for (const QString& path : paths) {
        SpawnCmd(u"sudo"_s, {u"chattr"_s, u"-R"_s, u"-i"_s, path + u'/'});
    }
    for (const QString& path : paths) {
        SpawnCmd(u"sudo"_s, {u"rm"_s, u"-rf"_s, path + u'/'});
    }
}
