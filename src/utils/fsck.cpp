// SPDX-License-Identifier: GPL-3.0-or-later
#include "fsck.h"

#include "utils/core/devicepath.h"

#include <QDebug>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// Exit codes of fsck(8) that matter here; the code is their sum with others, deliberately compared as a whole.
constexpr int noErrors = 0;
constexpr int errorsCorrected = 1;
constexpr int errorsLeft = 4;

struct FsckRun
{
    int exitCode = -1;
    QProcess::ExitStatus exitStatus = QProcess::CrashExit;
    QString output;
    QString error;

    [[nodiscard]] bool endedWith(int code) const { return exitStatus == QProcess::NormalExit && exitCode == code; }
};

/// Runs fsck as root on a device; a path of another form is no device, and nothing runs.
FsckRun runFsck(const QString& options, const QString& devicePath)
{
    FsckRun run;
    if (!isDevicePath(devicePath)) {
        run.error = u"fsck: not a device path: "_s + devicePath;
        return run;
    }
    QProcess process;
    process.start(u"/bin/bash"_s, {u"-c"_s, u"sudo fsck %1 %2"_s.arg(options, devicePath)});
    process.waitForFinished(-1);
    if (process.error() == QProcess::FailedToStart) {
        run.error = process.errorString();
        return run;
    }
    return {process.exitCode(), process.exitStatus(), QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError())};
}

QString outcomeText(const FsckRun& run)
{
    return u"fsck: exitCode: %1, exitStatus: %2"_s.arg(run.exitCode).arg(run.exitStatus);
}

} // namespace

bool Utils::checkPartitionErrorByFsck(const QString& devicePath)
{
    const FsckRun run = runFsck(u"-v -n"_s, devicePath);
    qDebug().noquote() << outcomeText(run) + u", devicePath: "_s + devicePath;
    return run.endedWith(errorsLeft);
}

bool Utils::fixPartitionByFsck(const QString& devicePath, QString& output, QString& error)
{
    const FsckRun run = runFsck(u"-y"_s, devicePath);
    output = run.output;
    error = run.error;
    qDebug().noquote() << outcomeText(run);
    return run.endedWith(noErrors) || run.endedWith(errorsCorrected);
}
