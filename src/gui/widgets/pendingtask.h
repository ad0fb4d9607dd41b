// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/tasktype.h"

#include <QLatin1StringView>
#include <QString>

class QJsonArray;
class QObject;
class Task;

/// How a pending task is begun and shown.
struct PendingTask
{
    QLatin1StringView type; ///< as the task file names it
    TaskType number;
    /// Makes the task from its steps; it belongs to the parent and begins by itself.
    Task* (*create)(const QJsonArray& steps, const int& number, QObject* parent);
    const char* title; ///< of the working page, to be translated; null keeps the page's own
    const char* tip;   ///< of the working page, to be translated; null keeps the page's own
};

/// The pending task of a type, or null for an unknown type. The texts are in the context "MainWindow".
[[nodiscard]] const PendingTask* findPendingTask(const QString& type);
