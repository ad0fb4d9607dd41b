// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

/// What command a job runs.
enum class JobType : qint32 {
    Clone = 0,      ///< the image tool, from a device to an image or back
    TarCreate = 1,  ///< a new archive `to` that holds the directory `from`
    TarExtract = 2, ///< the directory `to` out of the archive `from`
    TarAppend = 3,  ///< the directory `from` behind what the archive `to` already holds
};

/// A process that lives on when this object is deleted: what is being written to a disk is never cut off in the middle.
class JobProcess : public QProcess
{
    Q_OBJECT

public:
    explicit JobProcess(QObject* parent = nullptr);
    ~JobProcess() override;
};

/// One queued command of a task.
struct Job
{
    JobType type = JobType::Clone;
    QSharedPointer<QProcess> process; ///< the job's own process; also a child of its task
    QString to;                       ///< an archive to write, or a directory or device to restore to
    QString from;                     ///< a device, directory, image or archive to read
};

/// The environment of jobs: nothing but the plain locale.
[[nodiscard]] QProcessEnvironment jobEnvironment();

/// A short command that a task runs at once.
struct Command
{
    QString program;
    QStringList args;
};

/// The arguments of "sudo" for a job; empty for a value outside the enumeration, which runs nothing.
[[nodiscard]] QStringList jobArguments(JobType type, const QString& from, const QString& to);

/// "tar" with the options that every archive of this program is read and written with, then the operation
/// ("-cpf", "-rpf" or "-xpf") and the archive. What follows says which directory and member.
[[nodiscard]] QStringList tarArguments(const QString& operation, const QString& archive);

/// The last part of a path split at "/", its white space simplified; empty for a path that ends in "/".
[[nodiscard]] QString nameOfPath(const QString& path);

/// The path without *every* occurrence of its name: "/tmp/arx/root/opt" gives "/tmp/arx/root/".
[[nodiscard]] QString directoryOfPath(const QString& path);

/// Whether the path's name occurs at its end and nowhere else. Only then is directoryOfPath() the directory that it
/// lies in.
[[nodiscard]] bool isNameOnlyAtEnd(const QString& path);
