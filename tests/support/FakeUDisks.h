// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QVariantMap>

#include <memory>

class FakeUDisksObjects;

/// A stand-in for the UDisks2 daemon on the private system bus, which it starts.
///
/// It lists its objects unsorted, devices without a file system first, and its byte strings end with a NUL, as the real
/// one does. Nothing is ever mounted: a mount is recorded and shows the prepared folder as the mount point. It answers
/// on a thread of its own, so the product may block on it. Several fakes may follow one another in one process.
class FakeUDisks
{
public:
    /// One block device. Devices are named by their last path element, for example "sda3".
    struct Device
    {
        QString name = {};               ///< of the node "/dev/NAME", and last in the object path
        QString idUUID = {};             ///< empty for whole disks and unformatted partitions
        QString idType = {};             ///< "ext4", "crypto_LUKS", …; empty when unformatted
        QString drive = {};              ///< a drive's name given to addDrive(); empty gives "/" (no drive)
        QString table = {};              ///< for a partition: the name of its whole disk
        QString mountDirectory = {};     ///< the folder that Mount answers with; empty means "/media/root/UUID"
        QByteArrayList mountPoints = {}; ///< where it is mounted at first
        QString mountError = {};         ///< when not null, Mount fails with this text (which may be empty)
        QString unmountError = {};       ///< when not null, Unmount fails with this text
        int mountDelayMs = 0;            ///< how long Mount takes
        bool filesystem = true;          ///< whether the device has the Filesystem interface; never without an idType
    };

    /// One recorded call.
    struct Call
    {
        QString method = {};      ///< "GetManagedObjects", "Mount", "Unmount", "Get" or "GetAll"
        QString device = {};      ///< the device's name; empty for GetManagedObjects
        QVariantMap options = {}; ///< of Mount and Unmount
    };

    FakeUDisks();
    ~FakeUDisks();
    FakeUDisks(const FakeUDisks&) = delete;
    FakeUDisks& operator=(const FakeUDisks&) = delete;

    /// The object path of a device, for example "/org/freedesktop/UDisks2/block_devices/sda3".
    [[nodiscard]] static QString objectPath(const QString& device);

    /// The object path of a drive, for example "/org/freedesktop/UDisks2/drives/DISK".
    [[nodiscard]] static QString drivePath(const QString& drive);

    /// A partition with a file system, or an unformatted one without a UUID.
    [[nodiscard]] static Device partition(
        const QString& name, const QString& uuid = {}, const QString& mountDirectory = {});

    void addDrive(const QString& name);

    /// Adds the device or, when there is one of that name, replaces it.
    void addDevice(const Device& device);

    /// Answers GetManagedObjects with this value, whatever it is, instead of the listed objects; an invalid value lists
    /// the objects again.
    void setObjectsAnswer(const QVariant& answer);

    /// Where a device is "mounted" now.
    [[nodiscard]] QStringList mountPoints(const QString& device) const;

    [[nodiscard]] QList<Call> calls() const;

    /// The calls as text: "GetManagedObjects", "Mount sda3", with options "Mount sda3 options=compress=zstd".
    [[nodiscard]] QStringList callLines() const;

    /// Those of callLines() that mount or unmount.
    [[nodiscard]] QStringList mountCalls() const;

    void forgetCalls();

private:
    QThread m_thread;
    std::unique_ptr<FakeUDisksObjects> m_objects;
};
