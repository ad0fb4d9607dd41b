// SPDX-License-Identifier: GPL-3.0-or-later
#include "partitioncheckitem.h"

#include "jsonfields.h"

using namespace Qt::StringLiterals;

namespace {

constexpr JsonField<PartitionCheckItem> fields[] = {
    {"devicePath"_L1, &PartitionCheckItem::devicePath},
    {"label"_L1, &PartitionCheckItem::label},
    {"uuid"_L1, &PartitionCheckItem::uuid},
    {"mountPoint"_L1, &PartitionCheckItem::mountPoint},
    {"fsType"_L1, &PartitionCheckItem::fsType},
    {"status"_L1, &PartitionCheckItem::status},
    {"deviceType"_L1, &PartitionCheckItem::deviceType},
};

} // namespace

QString PartitionCheckItem::toText() const
{
    return u"devicePath: %1, label: %2, uuid: %3, mountPoint: %4, fsType: %5, status: %6, deviceType: %7"_s.arg(
        devicePath, label, uuid, mountPoint, fsType, QString::number(status), QString::number(deviceType));
}

QJsonObject PartitionCheckItem::toJson() const
{
    return writeJsonFields<PartitionCheckItem>(*this, fields);
}

PartitionCheckItem PartitionCheckItem::fromJson(const QJsonObject& object)
{
    return readJsonFields<PartitionCheckItem>(object, fields);
}
