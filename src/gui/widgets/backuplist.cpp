// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/backuplist.h"

#include "utils/core/applicationproperties.h"
#include "utils/mountedpartition.h"
#include "utils/utils.h"
#include "utils/widget/TreeViewModel.h"

#include <QDateTime>
#include <QDir>
#include <QStandardItem>

using namespace Qt::StringLiterals;

namespace {

bool holdsBackup(const QString& directory)
{
    return Utils::hasImages(directory) && !QDir(directory).entryList({u"*.tar"_s}).isEmpty();
}

/// What is no time, or one beyond 32 bits, counts as the first second of 1970.
QString dayOf(const QString& seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds.toUInt()).toString(u"yyyy/MM/dd"_s);
}

QList<QStandardItem*> rowFor(const SavedBackup& backup, const QList<MountedPartition>& partitions)
{
    auto* directory = new QStandardItem(backup.second);
    directory->setData(backup.second, TreeViewModel::DirectoryRole);
    directory->setData(partitionUuidOf(backup.second, partitions), TreeViewModel::BackupUuidRole);
    return {directory, new QStandardItem(dayOf(backup.first))};
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
