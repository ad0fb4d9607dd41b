// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/Task.h"

#include <QSignalSpy>
#include <QString>
#include <QTest>

/// A task that is watched from its construction to its end.
template <class SomeTask>
struct TaskRun
{
    template <class... Arguments>
    explicit TaskRun(const Arguments&... arguments)
        : task(arguments...)
    { }

    /// Waits for the end: "finished", the text of the failure, or "no end". More than one end is listed, too.
    QString outcome()
    {
        constexpr int patience = 20000; // ms
        const bool ended = QTest::qWaitFor([this] { return !finished.isEmpty() || task.isFailed(); }, patience);
        QString text = finished.isEmpty() ? QString() : QStringLiteral("finished");
        return ended ? text + task.errorMessage() : QStringLiteral("no end");
    }

    SomeTask task;
    QSignalSpy finished{&task, &Task::finished};
};
