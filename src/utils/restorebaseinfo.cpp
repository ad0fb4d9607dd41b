// SPDX-License-Identifier: GPL-3.0-or-later
#include "restorebaseinfo.h"

#include "jsonfields.h"

using namespace Qt::StringLiterals;

namespace {

constexpr JsonField<RestoreBaseInfo> fields[] = {
    {"recoveryUUID"_L1, &RestoreBaseInfo::recoveryUUID},
    {"osType"_L1, &RestoreBaseInfo::osType},
    {"backupInfo"_L1, &RestoreBaseInfo::backupInfo},
    {"recoveryInfo"_L1, &RestoreBaseInfo::recoveryInfo},
    {"osVersion"_L1, &RestoreBaseInfo::osVersion},
    // Deliberate spelling: readers look for it under this key.
    {"isExitsInitBackup"_L1, &RestoreBaseInfo::isExitsInitBackup},
    {"isDeviceOS"_L1, &RestoreBaseInfo::isDeviceOS},
    {"isLvm"_L1, &RestoreBaseInfo::isLvm},
    {"isEncrypted"_L1, &RestoreBaseInfo::isEncrypted},
    {"isFileManagerEncrypted"_L1, &RestoreBaseInfo::isFileManagerEncrypted},
};

} // namespace

QJsonObject RestoreBaseInfo::toJson() const
{
    return writeJsonFields<RestoreBaseInfo>(*this, fields);
}

RestoreBaseInfo RestoreBaseInfo::fromJson(const QJsonObject& object)
{
    return readJsonFields<RestoreBaseInfo>(object, fields);
}
