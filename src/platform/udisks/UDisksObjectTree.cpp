// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/UDisksObjectTree.h"

#include <QDBusArgument>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

using Interfaces = QMap<QString, QVariantMap>;

constexpr auto blockInterface = "org.freedesktop.UDisks2.Block"_L1;
constexpr auto driveInterface = "org.freedesktop.UDisks2.Drive"_L1;
constexpr auto filesystemInterface = "org.freedesktop.UDisks2.Filesystem"_L1;
constexpr auto partitionInterface = "org.freedesktop.UDisks2.Partition"_L1;

// No conversions: a property of another type than the interface says is a malformed answer and counts as missing.
template <typename T>
T property(const QVariantMap& properties, QLatin1StringView name)
{
    const QVariant value = properties.value(name);
    return value.userType() == qMetaTypeId<T>() ? value.value<T>() : T();
}

// A type that the bus library does not take apart by itself arrives as a marshalled argument.
QByteArrayList byteStrings(const QVariant& value)
{
    if (value.userType() != qMetaTypeId<QDBusArgument>()) {
        return value.userType() == qMetaTypeId<QByteArrayList>() ? value.value<QByteArrayList>() : QByteArrayList();
    }
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == "aay"_L1 ? qdbus_cast<QByteArrayList>(argument) : QByteArrayList();
}

QString objectPath(const QVariantMap& properties, QLatin1StringView name)
{
    return property<QDBusObjectPath>(properties, name).path();
}

QByteArray withoutNul(const QByteArray& value)
{
    const qsizetype end = value.indexOf('\0');
    return end < 0 ? value : value.first(end);
}

UDisksBlock parseBlock(const QString& path, const Interfaces& interfaces)
{
    const QVariantMap block = interfaces.value(blockInterface);
    UDisksBlock result;
    result.path = path;
    result.device = QString::fromUtf8(withoutNul(property<QByteArray>(block, "Device"_L1)));
    result.drive = objectPath(block, "Drive"_L1);
    result.idType = property<QString>(block, "IdType"_L1);
    result.idUUID = property<QString>(block, "IdUUID"_L1);
    result.mountPoints = parseMountPoints(interfaces.value(filesystemInterface).value("MountPoints"_L1));
    result.isPartition = interfaces.contains(partitionInterface);
    result.table = objectPath(interfaces.value(partitionInterface), "Table"_L1);
    return result;
}

bool isRemovableDrive(const UDisksManagedObjects& objects, const QString& drive)
{
    // An empty path is no valid object path, so it must not become one.
    return !drive.isEmpty()
        && property<bool>(objects.value(QDBusObjectPath(drive)).value(driveInterface), "Removable"_L1);
}

} // namespace

const UDisksBlock* UDisksObjectTree::find(const QString& path) const
{
    const auto found =
        std::find_if(blocks.begin(), blocks.end(), [&path](const UDisksBlock& block) { return block.path == path; });
    return found == blocks.end() ? nullptr : &*found;
}

UDisksObjectTree parseObjectTree(const UDisksManagedObjects& objects)
{
    UDisksObjectTree tree;
    for (auto object = objects.begin(); object != objects.end(); ++object) {
        if (object->contains(blockInterface)) {
            tree.blocks << parseBlock(object.key().path(), *object);
            tree.blocks.last().isRemovable = isRemovableDrive(objects, tree.blocks.last().drive);
        }
    }
    std::sort(tree.blocks.begin(), tree.blocks.end(), [](const UDisksBlock& a, const UDisksBlock& b) {
        return std::tie(a.isRemovable, a.device, a.path) < std::tie(b.isRemovable, b.device, b.path);
    });
    return tree;
}

QByteArrayList parseMountPoints(const QVariant& value)
{
    QByteArrayList mountPoints;
    for (const QByteArray& bytes : byteStrings(value)) {
        if (const QByteArray mountPoint = withoutNul(bytes); !mountPoint.isEmpty()) {
            mountPoints << mountPoint;
        }
    }
    return mountPoints;
}
