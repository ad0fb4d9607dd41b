// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/backuplist.h"

#include "utils/backuphistory.h"
#include "utils/core/applicationproperties.h"
#include "utils/mountedpartition.h"
#include "utils/utils.h"
#include "utils/widget/TreeViewModel.h"

#include <QDir>
#include <QStandardItem>

using namespace Qt::StringLiterals;

namespace {

bool holdsBackup(const QString& directory)
{
    return Utils::hasImages(directory) && !QDir(directory).entryList({u"*.tar"_s}).isEmpty();
}

QList<QStandardItem*> rowFor(const SavedBackup& backup, const QList<MountedPartition>& partitions)
{
    auto* directory = new QStandardItem(backup.second);
    directory->setData(backup.second, TreeViewModel::DirectoryRole);
    directory->setData(partitionUuidOf(backup.second, partitions), TreeViewModel::BackupUuidRole);
    return {directory, new QStandardItem(backupDay(backup.first))};
}

} // namespace

void fillBackupList(TreeViewModel* model)
{
    model->removeRows(0, model->rowCount());
    const QList<MountedPartition> partitions = mountedPartitions();
    const QList<SavedBackup> backups = ApplicationProperties::savePathJson();
    for (const SavedBackup& backup : backups) {
        if (holdsBackup(backup.second)) {
            model->appendRow(rowFor(backup, partitions));
        }
    }
    Q_EMIT
    model->itemsIsReady();
}
