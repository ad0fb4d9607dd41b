// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/Task.h"

#include <QCoreApplication>
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

    /// Waits for the end: "finished", the text of the failure, or "no end"; of more than one end each, with blanks
    /// between them.
    QString outcome()
    {
        constexpr int patience = 20000; // ms
        if (!QTest::qWaitFor([this] { return !finished.isEmpty() || task.isFailed(); }, patience)) {
            return QStringLiteral("no end");
        }
        QCoreApplication::processEvents(); // a second end that is on its way
        QStringList ends(finished.size(), QStringLiteral("finished"));
        if (task.isFailed()) {
            ends.append(task.errorMessage());
        }
        return ends.join(QLatin1Char(' '));
    }

    SomeTask task;
    QSignalSpy finished{&task, &Task::finished};
};
