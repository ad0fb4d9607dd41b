// SPDX-License-Identifier: GPL-3.0-or-later
#include "command.h"

#include <QDebug>
#include <QProcess>
#include <QThread>

namespace {

bool runToEnd(QProcess& process, const QString& program, const QStringList& args)
{
    process.start(program, args, QIODevice::ReadWrite);
    process.waitForFinished(-1);
    // Qt 6.4 reports a normal exit with code 0 for a program that has no name.
    return process.error() != QProcess::FailedToStart && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

} // namespace

bool SpawnCmd(const QString& program, const QStringList& args)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    return runToEnd(process, program, args);
}

bool SpawnCmd(const QString& program, const QStringList& args, QString& output)
{
    QString discardedError;
    return SpawnCmd(program, args, output, discardedError);
}

bool SpawnCmd(const QString& program, const QStringList& args, QString& output, QString& error)
{
    QProcess process;
    const bool succeeded = runToEnd(process, program, args);
    output += QString::fromUtf8(process.readAllStandardOutput());
    error += QString::fromUtf8(process.readAllStandardError());
    return succeeded;
}

bool SpawnCmd(const QString& program, const QStringList& args, QString& output, QString& error, int retryCount)
{
    for (int attempt = 1; attempt <= retryCount; ++attempt) {
        if (SpawnCmd(program, args, output, error)) {
            return true;
        }
        qDebug() << error;
        qDebug() << "try again!!!!!";
        // After the last attempt too: deliberate.
        QThread::sleep(1);
    }
    return false;
}
