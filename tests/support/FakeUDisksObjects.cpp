// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakeUDisksObjects.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDir>
#include <QMutexLocker>
#include <QThread>

#include <algorithm>

using namespace Qt::StringLiterals;

using Interfaces = FakeUDisksObjects::Interfaces;

/// The objects in the order in which they go on the bus; a map would sort them.
struct ListedObjects
{
    QList<std::pair<QString, Interfaces>> objects;
};
Q_DECLARE_METATYPE(ListedObjects)

static QDBusArgument& operator<<(QDBusArgument& argument, const ListedObjects& listed)
{
    argument.beginMap(QMetaType::fromType<QDBusObjectPath>(), QMetaType::fromType<Interfaces>());
    for (const auto& [path, interfaces] : listed.objects) {
        argument.beginMapEntry();
        argument << QDBusObjectPath(path) << interfaces;
        argument.endMapEntry();
    }
    argument.endMap();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, ListedObjects&)
{
    return argument;
}

namespace {

const QString blockInterface = u"org.freedesktop.UDisks2.Block"_s;
const QString driveInterface = u"org.freedesktop.UDisks2.Drive"_s;
const QString filesystemInterface = u"org.freedesktop.UDisks2.Filesystem"_s;
const QString partitionInterface = u"org.freedesktop.UDisks2.Partition"_s;
const QString tableInterface = u"org.freedesktop.UDisks2.PartitionTable"_s;

QByteArray withNul(const QByteArray& text)
{
    return text + '\0';
}

QVariant pathValue(const QString& path)
{
    return QVariant::fromValue(QDBusObjectPath(path));
}

QByteArrayList withNul(const QByteArrayList& texts)
{
    QByteArrayList values;
    for (const QByteArray& text : texts) {
        values << withNul(text);
    }
    return values;
}

QString nodeOf(const FakeUDisks::Device& device)
{
    return u"/dev/"_s + device.name;
}

bool hasFilesystem(const FakeUDisks::Device& device)
{
    return device.filesystem && !device.idType.isEmpty() && device.idType != "swap"_L1
        && !device.idType.startsWith("crypto_"_L1) && !device.idType.endsWith("_member"_L1);
}

Interfaces interfacesOf(const FakeUDisks::Device& device)
{
    Interfaces interfaces;
    interfaces[blockInterface] = {{u"Device"_s, withNul(nodeOf(device).toUtf8())},
        {u"PreferredDevice"_s, withNul(nodeOf(device).toUtf8())},
        {u"Drive"_s, pathValue(device.drive.isEmpty() ? u"/"_s : FakeUDisks::drivePath(device.drive))},
        {u"IdType"_s, device.idType}, {u"IdUUID"_s, device.idUUID}, {u"Size"_s, qulonglong(1) << 30},
        {u"ReadOnly"_s, false}};
    if (!device.table.isEmpty()) {
        interfaces[partitionInterface] = {{u"Table"_s, pathValue(FakeUDisks::objectPath(device.table))}};
    }
    if (hasFilesystem(device)) {
        interfaces[filesystemInterface] = {{u"MountPoints"_s, QVariant::fromValue(withNul(device.mountPoints))}};
    }
    return interfaces;
}

} // namespace

void registerFakeUDisksTypes()
{
    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<ListedObjects>();
    qDBusRegisterMetaType<QByteArrayList>();
}

void FakeUDisksObjects::addDrive(const QString& name)
{
    const QMutexLocker lock(&m_mutex);
    m_drives << name;
}

void FakeUDisksObjects::addDevice(const FakeUDisks::Device& device)
{
    const QMutexLocker lock(&m_mutex);
    m_devices.removeIf([&device](const FakeUDisks::Device& other) { return other.name == device.name; });
    m_devices << device;
}

void FakeUDisksObjects::setObjectsAnswer(const QVariant& answer)
{
    const QMutexLocker lock(&m_mutex);
    m_answer = answer;
}

QStringList FakeUDisksObjects::mountPoints(const QString& device) const
{
    const QMutexLocker lock(&m_mutex);
    QStringList points;
    for (const FakeUDisks::Device& one : m_devices) {
        for (const QByteArray& point : one.name == device ? one.mountPoints : QByteArrayList()) {
            points << QString::fromUtf8(point);
        }
    }
    return points;
}

QList<FakeUDisks::Call> FakeUDisksObjects::calls() const
{
    const QMutexLocker lock(&m_mutex);
    // The caller's own from the beginning: this one goes on growing while the caller reads.
    QList<FakeUDisks::Call> own = m_calls;
    own.detach();
    return own;
}

void FakeUDisksObjects::forgetCalls()
{
    const QMutexLocker lock(&m_mutex);
    m_calls.clear();
}

QString FakeUDisksObjects::introspect(const QString& path) const
{
    Q_UNUSED(path)
    return {};
}

bool FakeUDisksObjects::handleMessage(const QDBusMessage& message, const QDBusConnection& connection)
{
    return connection.send(answer(message));
}

QDBusMessage FakeUDisksObjects::answer(const QDBusMessage& message)
{
    const QMutexLocker lock(&m_mutex);
    const QString method = message.member();
    FakeUDisks::Device* const device = deviceAt(message.path());
    FakeUDisks::Call call{method, device ? device->name : QString(), {}};
    if (method == "Mount"_L1 || method == "Unmount"_L1) {
        call.options = qdbus_cast<QVariantMap>(message.arguments().value(0));
    }
    m_calls << call;
    const Interfaces interfaces = interfacesAt(message.path());
    const QString interface = message.arguments().value(0).toString();
    if (method == "GetManagedObjects"_L1) {
        return message.createReply(m_answer.isValid() ? m_answer : allObjects());
    }
    if (method == "Get"_L1 && interfaces.value(interface).contains(message.arguments().value(1).toString())) {
        const QVariant value = interfaces[interface][message.arguments().at(1).toString()];
        return message.createReply(QVariant::fromValue(QDBusVariant(value)));
    }
    if (method == "GetAll"_L1 && interfaces.contains(interface)) {
        return message.createReply(interfaces[interface]);
    }
    if (device && interfaces.contains(filesystemInterface) && message.interface() == filesystemInterface) {
        return method == "Mount"_L1 ? answerMount(message, *device) : answerUnmount(message, *device);
    }
    return message.createErrorReply(QDBusError::UnknownMethod,
        u"No such interface “%1” on object at path %2"_s.arg(message.interface(), message.path()));
}

QDBusMessage FakeUDisksObjects::answerMount(const QDBusMessage& message, FakeUDisks::Device& device)
{
    QThread::msleep(static_cast<unsigned long>(device.mountDelayMs));
    if (!device.mountError.isNull()) {
        return message.createErrorReply(u"org.freedesktop.UDisks2.Error.Failed"_s, device.mountError);
    }
    if (!device.mountPoints.isEmpty()) {
        return message.createErrorReply(u"org.freedesktop.UDisks2.Error.AlreadyMounted"_s,
            u"Device %1 is already mounted at `%2'.\n"_s.arg(
                nodeOf(device), QString::fromUtf8(device.mountPoints.constFirst())));
    }
    const QString directory =
        device.mountDirectory.isEmpty() ? u"/media/root/"_s + device.idUUID : device.mountDirectory;
    QDir().mkpath(directory);
    device.mountPoints << directory.toUtf8();
    return message.createReply(directory);
}

QDBusMessage FakeUDisksObjects::answerUnmount(const QDBusMessage& message, FakeUDisks::Device& device)
{
    if (!device.unmountError.isNull()) {
        return message.createErrorReply(u"org.freedesktop.UDisks2.Error.DeviceBusy"_s, device.unmountError);
    }
    if (device.mountPoints.isEmpty()) {
        return message.createErrorReply(
            u"org.freedesktop.UDisks2.Error.NotMounted"_s, u"Device `%1' is not mounted.\n"_s.arg(nodeOf(device)));
    }
    device.mountPoints.removeLast();
    return message.createReply();
}

QVariant FakeUDisksObjects::allObjects() const
{
    ListedObjects listed;
    QList<FakeUDisks::Device> devices = m_devices;
    // Against the order in which a product would like to meet them: the last first, and those without content before
    // all.
    std::reverse(devices.begin(), devices.end());
    std::stable_partition(
        devices.begin(), devices.end(), [](const FakeUDisks::Device& device) { return device.idType.isEmpty(); });
    listed.objects << std::pair(u"/org/freedesktop/UDisks2/Manager"_s,
        Interfaces{{u"org.freedesktop.UDisks2.Manager"_s, {{u"Version"_s, u"2.9.4"_s}}}});
    for (const FakeUDisks::Device& device : std::as_const(devices)) {
        const QString path = FakeUDisks::objectPath(device.name);
        listed.objects << std::pair(path, interfacesAt(path));
    }
    for (const QString& drive : m_drives) {
        listed.objects << std::pair(FakeUDisks::drivePath(drive), interfacesAt(FakeUDisks::drivePath(drive)));
    }
    return QVariant::fromValue(listed);
}

Interfaces FakeUDisksObjects::interfacesAt(const QString& path) const
{
    for (const FakeUDisks::Device& device : m_devices) {
        if (FakeUDisks::objectPath(device.name) == path) {
            Interfaces interfaces = interfacesOf(device);
            const bool isDisk = std::any_of(m_devices.begin(), m_devices.end(),
                [&device](const FakeUDisks::Device& other) { return other.table == device.name; });
            if (isDisk) {
                interfaces[tableInterface].insert(u"Type"_s, u"gpt"_s);
            }
            return interfaces;
        }
    }
    for (const QString& drive : m_drives) {
        if (FakeUDisks::drivePath(drive) == path) {
            return {{driveInterface, {{u"Id"_s, drive}}}};
        }
    }
    return {};
}

FakeUDisks::Device* FakeUDisksObjects::deviceAt(const QString& path)
{
    const auto found = std::find_if(m_devices.begin(), m_devices.end(),
        [&path](const FakeUDisks::Device& device) { return FakeUDisks::objectPath(device.name) == path; });
    return found == m_devices.end() ? nullptr : &*found;
}
