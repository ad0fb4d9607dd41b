// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/FakeMachine.h"

/// A machine with a directory of images whose records are read with the custom-file call.
struct BackupToRestore
{
    /// Where the backup lies, on the partition TARGET in "/b".
    [[nodiscard]] static QString directory();

    explicit BackupToRestore(const QStringList& images);

    void readsRecord(const FakePrograms::Reply& reply);

    /// Adds an archive of "opt" and "var" with the given description, made with the real tar.
    void addArchive(const QString& name, const QByteArray& description, const QStringList& options = {});

    /// Restores these directories of the partition TARGET, up to the end. @return as TaskRun::outcome()
    [[nodiscard]] QString outcome(const QStringList& directories = {QStringLiteral("/b")});

    /// What was called that clears something or makes swap.
    [[nodiscard]] QStringList changes() const;

    FakeMachine machine;
};
