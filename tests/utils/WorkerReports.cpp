// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/WorkerReports.h"

#include <QCoreApplication>
#include <QThread>

#include <atomic>

using namespace Qt::StringLiterals;

QStringList reportsOf(AsyncTask& task, const std::function<void()>& meanwhile)
{
    QStringList reports;
    std::atomic_bool isDone = false;
    QObject receiver;
    const auto note = [&reports](const QString& name) {
        return [&reports, name](const QString& argument) { reports.append(name + u' ' + argument); };
    };
    const auto noteAlone = [&reports](const QString& name) { return [&reports, name] { reports.append(name); }; };
    QObject::connect(&task, &AsyncTask::fixPartitionSuccess, &receiver, noteAlone(u"fixed"_s));
    QObject::connect(&task, &AsyncTask::fixPartitionFailed, &receiver, note(u"not fixed"_s));
    QObject::connect(&task, &AsyncTask::showSystemRestoreFinish, &receiver, noteAlone(u"started"_s));
    QObject::connect(&task, &AsyncTask::getPartitionCheckItemFinish, &receiver, note(u"items"_s));
    QObject::connect(&task, &AsyncTask::initLiveRestorePageFinish, &receiver, note(u"page"_s));
    QObject::connect(&task, &AsyncTask::initSystemRepairToolPageFinish, &receiver, noteAlone(u"repaired"_s));
    QObject::connect(&task, &AsyncTask::initSystemRepairToolPageFailed, &receiver, note(u"not repaired"_s));
    QObject::connect(
        &task, &QThread::finished, &receiver, [&isDone] { isDone = true; }, Qt::DirectConnection);
    task.start();
    meanwhile();
    while (!isDone) {
        QThread::msleep(5);
    }
    task.wait();
    if (!reports.isEmpty()) {
        return {u"reported in the worker's thread"_s};
    }
    QCoreApplication::sendPostedEvents(&receiver);
    return reports;
}
