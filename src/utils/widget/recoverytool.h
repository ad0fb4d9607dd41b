// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// How a run of the recovery tool ended.
struct RecoveryToolResult
{
    QStringList args;  ///< the arguments after "pkexec"
    int exitCode = -1; ///< -1 when it did not end by itself or could not be started
    QString error;     ///< what it wrote to standard error
};

/// Runs the recovery tool with @p action ("cancel_restore" or "cancel_backup") through pkexec and waits for its end
/// without a time limit, because the person may be asked for a password.
[[nodiscard]] RecoveryToolResult runRecoveryTool(const QString& action);
