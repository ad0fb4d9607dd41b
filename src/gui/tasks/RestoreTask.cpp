// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/RestoreTask.h"

#include <unistd.h>

RestoreTask::RestoreTask(QObject* parent)
    : Task(parent)
{
    connect(&m_check, &WholeFilesCheck::finished, this, &RestoreTask::onFilesChecked);
}

void RestoreTask::addImageJob(const QString& image, const QString& device)
{
    m_check.addImage(image);
    addJob(image, device, JobType::Clone);
}

void RestoreTask::addArchiveJob(const QString& archive, const QString& directory)
{
    m_check.addArchive(archive, nameOfPath(directory));
    addJob(archive, directory, JobType::TarExtract);
}

void RestoreTask::addArchiveToCheck(const QString& archive)
{
    m_check.addArchive(archive, {});
}

void RestoreTask::beginWhenWhole()
{
    if (isFailed() || !m_check.isNeeded()) {
        begin();
        return;
    }
    setStarted();
    m_check.start();
}

void RestoreTask::onFilesChecked(bool areWhole)
{
    if (areWhole) {
        begin();
    } else {
        refuseBrokenFile();
    }
}

void RestoreTask::reportFinished()
{
    sync();
    Q_EMIT
    finished();
}
