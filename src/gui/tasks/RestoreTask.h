// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/Task.h"
#include "gui/tasks/wholefilescheck.h"

#include <QString>

/// What both restores have in common: nothing is written before every file that is there to be restored has been read
/// to its end, and success is reported when everything has reached the disks.
class RestoreTask : public Task
{
    Q_OBJECT

protected:
    explicit RestoreTask(QObject* parent);

    /// Appends the job that puts an image back to a device.
    void addImageJob(const QString& image, const QString& device);
    /// Appends the job that extracts an archive to a directory.
    void addArchiveJob(const QString& archive, const QString& directory);

    /// Has an archive read to its end although nothing will be extracted from it: what leaves it out may be damage.
    void addArchiveToCheck(const QString& archive);

    /// Reads all these files to their ends and then calls begin(), or refuseBrokenFile() when one is damaged. For a
    /// task that has failed already, begin() is called at once.
    void beginWhenWhole();

    /// Everything is known to be whole: starts.
    virtual void begin() = 0;
    /// Fails the task with its own sentence for a damaged file.
    virtual void refuseBrokenFile() = 0;

    /// Emits finished(), when what the completion has written is on the disks.
    void reportFinished();

private Q_SLOTS:
    void onFilesChecked(bool areWhole);

private:
    WholeFilesCheck m_check;
};
