// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/pendingtask.h"

#include "gui/tasks/BackupTask.h"
#include "gui/tasks/ManualRestoreTask.h"
#include "gui/tasks/SystemRestoreTask.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

Task* createBackup(const QJsonArray& steps, const int& number, QObject* parent)
{
    return new BackupTask(steps, number, parent);
}

template <class Restore>
Task* createRestore(const QJsonArray& steps, const int& /*number*/, QObject* parent)
{
    return new Restore(steps, parent);
}

constexpr auto backingUp = QT_TRANSLATE_NOOP("MainWindow", "Backing up, please wait...");
constexpr auto doNotPowerOff = QT_TRANSLATE_NOOP("MainWindow", "Do not power off or unplug your machine");

constexpr PendingTask pendingTasks[] = {
    {"ManualBackup"_L1, ManualBackup, createBackup, backingUp, nullptr},
    {"SystemBackup"_L1, SystemBackup, createBackup, backingUp, nullptr},
    {"ManualRestore"_L1, ManualRestore, createRestore<ManualRestoreTask>, nullptr, nullptr},
    {"SystemRestore"_L1, SystemRestore, createRestore<SystemRestoreTask>, nullptr, doNotPowerOff},
};

} // namespace

const PendingTask* findPendingTask(const QString& type)
{
    const auto* found =
        std::ranges::find_if(pendingTasks, [&type](const PendingTask& pending) { return pending.type == type; });
    return found == std::end(pendingTasks) ? nullptr : found;
}
