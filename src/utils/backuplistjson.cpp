// SPDX-License-Identifier: GPL-3.0-or-later
#include "backuplistjson.h"

#include "jsonfields.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace {

constexpr auto listKey = "BackupFileInfoList"_L1;

constexpr JsonField<BackupFileInfo> fields[] = {
    {"backupUUID"_L1, &BackupFileInfo::backupUUID},
    {"backupPath"_L1, &BackupFileInfo::backupPath},
    {"backupTime"_L1, &BackupFileInfo::backupTime},
    {"createTime"_L1, &BackupFileInfo::createTime},
};

} // namespace

QJsonObject backupListToJson(const QList<BackupFileInfo>& list)
{
    QJsonArray array;
    for (const BackupFileInfo& info : list) {
        array.append(writeJsonFields<BackupFileInfo>(info, fields));
    }
    return {{listKey, array}};
}

QList<BackupFileInfo> backupListFromJson(const QJsonObject& object)
{
    QList<BackupFileInfo> list;
    for (const auto& value : object.value(listKey).toArray()) {
        list.append(readJsonFields<BackupFileInfo>(value.toObject(), fields));
    }
    return list;
}
