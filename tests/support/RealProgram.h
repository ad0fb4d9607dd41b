// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

class QProcess;

/// Runs a real program by its absolute path, past any fakes, and ends the process with its messages when it fails.
void runRealProgram(const QString& path, const QStringList& args, const QByteArray& input = {});

/// Standard output of a real program, whatever its exit code.
[[nodiscard]] QByteArray realProgramOutput(const QString& path, const QStringList& args);

/// Starts a daemon that ends with the application object, at the latest with this process. Ends the process when it
/// cannot be started. Owned by the application object.
QProcess* startRealDaemon(const QString& path, const QStringList& args);
