// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/backuphistory.h"

#include <QJsonObject>
#include <QList>

/// The list as it crosses between threads: an array of objects under "BackupFileInfoList", in list order.
[[nodiscard]] QJsonObject backupListToJson(const QList<BackupFileInfo>& list);

/// The list that such an object holds; empty when it holds none.
[[nodiscard]] QList<BackupFileInfo> backupListFromJson(const QJsonObject& object);
