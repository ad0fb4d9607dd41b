// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

/// Runs a short external command and waits for its end, however long that takes.
///
/// The program is looked up through PATH and gets the arguments as they are, without a shell, and this program's
/// environment. Captured text is decoded as UTF-8 and *appended* to the caller's strings, after a failure too.
/// A program that cannot be started counts as failed. Nothing is logged here: the caller words its own failures.
///
/// @return true exactly when the command exited normally with exit code 0

/// Discards what the command prints.
bool SpawnCmd(const QString& program, const QStringList& args);

/// Appends standard output to @p output and discards standard error.
bool SpawnCmd(const QString& program, const QStringList& args, QString& output);

/// Appends standard output to @p output and standard error to @p error.
bool SpawnCmd(const QString& program, const QStringList& args, QString& output, QString& error);

/// Runs the command up to @p retryCount times until it succeeds, one second apart; below 1 it runs nothing and fails.
/// The output of all attempts is appended.
bool SpawnCmd(const QString& program, const QStringList& args, QString& output, QString& error, int retryCount);
