// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/job.h"

#include <QList>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

/// Reads images and archives from their first byte to their last, one after the other, while the event loop runs.
///
/// The job that restores a file would find out too that it is damaged, but by then the restore has made room for it, or
/// has put back the files before it.
class WholeFilesCheck : public QObject
{
    Q_OBJECT

public:
    explicit WholeFilesCheck(QObject* parent = nullptr);

    /// Every stored hash of the image is to be checked.
    void addImage(const QString& path);
    /// The archive is to be read to its end, and its end mark to be there; so is @p member, unless that is empty. A
    /// backup that was cut short leaves whole archives that hold their description and nothing else.
    void addArchive(const QString& path, const QString& member);

    /// Whether start() would read anything. One image alone is not read here: the image tool reads it whole before it
    /// writes anything.
    [[nodiscard]] bool isNeeded() const;

    /// Begins; finished() follows, never before this returns. To be called once.
    void start();

Q_SIGNALS:
    /// The end. After the first damaged file the others are not read; the reason is logged.
    void finished(bool areWhole);

private Q_SLOTS:
    void onRead(int exitCode, QProcess::ExitStatus status);
    void onError(QProcess::ProcessError error);

private:
    struct File
    {
        QString path;
        QStringList command; ///< of "sudo"
        bool isArchive = false;
    };

    void readNext();

    QList<File> m_files; ///< those still to read, the current one first
    JobProcess m_process;
};
