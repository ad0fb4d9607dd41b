// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/UDisksBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace UDisksBus {

namespace {

constexpr auto service = "org.freedesktop.UDisks2"_L1;
constexpr auto filesystemInterface = "org.freedesktop.UDisks2.Filesystem"_L1;

// A journal replay or a write-back to a slow stick takes longer than the 25 seconds that the bus grants by itself.
constexpr std::chrono::milliseconds mountLimit = 10min;
constexpr std::chrono::milliseconds queryLimit = 15s;

QDBusMessage call(const QString& path, QLatin1StringView interface, QLatin1StringView method,
    const QVariantList& arguments, std::chrono::milliseconds limit)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return QDBusConnection::systemBus().call(message, QDBus::Block, static_cast<int>(limit.count()));
}

Outcome callFilesystem(const QString& path, QLatin1StringView method, const QVariantMap& options)
{
    const QDBusMessage answer = call(path, filesystemInterface, method, {options}, mountLimit);
    if (answer.type() != QDBusMessage::ReplyMessage) {
        return {false, answer.errorMessage()};
    }
    return {true, answer.arguments().isEmpty() ? QString() : answer.arguments().constFirst().toString()};
}

} // namespace

UDisksManagedObjects managedObjects()
{
    const QDBusMessage answer = call(
        u"/org/freedesktop/UDisks2"_s, "org.freedesktop.DBus.ObjectManager"_L1, "GetManagedObjects"_L1, {}, queryLimit);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != "a{oa{sa{sv}}}"_L1) {
        return {};
    }
    return qdbus_cast<UDisksManagedObjects>(answer.arguments().constFirst());
}

QVariant mountPoints(const QString& path)
{
    const QDBusMessage answer = call(path, "org.freedesktop.DBus.Properties"_L1, "Get"_L1,
        {QString(filesystemInterface), u"MountPoints"_s}, queryLimit);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != "v"_L1) {
        return {};
    }
    return answer.arguments().constFirst().value<QDBusVariant>().variant();
}

Outcome mount(const QString& path, const QVariantMap& options)
{
    return callFilesystem(path, "Mount"_L1, options);
}

Outcome unmount(const QString& path, const QVariantMap& options)
{
    return callFilesystem(path, "Unmount"_L1, options);
}

} // namespace UDisksBus
