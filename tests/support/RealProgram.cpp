// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RealProgram.h"

#include <QCoreApplication>
#include <QProcess>

#include <csignal>

#include <sys/prctl.h>

namespace {

void setUp(QProcess& process)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), QStringLiteral("/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin"));
    process.setProcessEnvironment(environment);
}

} // namespace

void runRealProgram(const QString& path, const QStringList& args, const QByteArray& input)
{
    QProcess process;
    setUp(process);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(path, args);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(-1);
    if (process.error() == QProcess::FailedToStart || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        qFatal("%s failed: %s", qPrintable(path), process.readAll().constData());
    }
}

QByteArray realProgramOutput(const QString& path, const QStringList& args)
{
    QProcess process;
    setUp(process);
    process.start(path, args);
    process.closeWriteChannel();
    process.waitForFinished(-1);
    return process.readAllStandardOutput();
}

QProcess* startRealDaemon(const QString& path, const QStringList& args)
{
    auto* daemon = new QProcess(QCoreApplication::instance());
    setUp(*daemon);
    daemon->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    daemon->start(path, args);
    if (!daemon->waitForStarted()) {
        qFatal("%s does not start: %s", qPrintable(path), qPrintable(daemon->errorString()));
    }
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::destroyed, daemon, [daemon] {
        daemon->kill();
        daemon->waitForFinished();
    });
    return daemon;
}
