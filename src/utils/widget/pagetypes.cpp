// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/pagetypes.h"

#include "utils/widget/BackupRestoreWidget.h"
#include "utils/widget/backuppage.h"
#include "utils/widget/errortype.h"

void Utils::registerPageTypes()
{
    qRegisterMetaType<Utils::ErrorType>("Utils::ErrorType");
    qRegisterMetaType<Qt::SortOrder>("SortOrder");
    qRegisterMetaType<Qt::SortOrder>("Qt::SortOrder");
    qRegisterMetaType<BackupPage>("BackupPage");
    qRegisterMetaType<BackupRestoreWidget>("BackupRestoreWidget");
}
