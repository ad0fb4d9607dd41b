// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/recoverytool.h"

#include <QProcess>

using namespace Qt::StringLiterals;

RecoveryToolResult runRecoveryTool(const QString& action)
{
    RecoveryToolResult result;
    result.args = {u"/bin/kestro-recovery-tool"_s, u"-a"_s, action};
    QProcess process;
    process.start(u"pkexec"_s, result.args);
    process.waitForFinished(-1);
    result.error = QString::fromUtf8(process.readAllStandardError());
    if (process.error() == QProcess::UnknownError && process.exitStatus() == QProcess::NormalExit) {
        result.exitCode = process.exitCode();
    }
    return result;
}
