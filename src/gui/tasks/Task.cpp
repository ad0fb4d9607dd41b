// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/Task.h"

#include "gui/tasks/ondisk.h"
#include "gui/tasks/progress.h"

#include <QDebug>

#include <algorithm>

#include <unistd.h>

using namespace Qt::StringLiterals;

Task::Task(QObject* parent)
    : QObject(parent)
{
    getSystemUUID();
}

Task::~Task() = default;

void Task::addJob(const QString& from, const QString& to, JobType type)
{
    // The last reference is often dropped inside a signal of the process itself: only deleteLater is allowed there.
    const QSharedPointer<QProcess> process(new JobProcess(this), &QObject::deleteLater);
    m_jobs.append({type, process, to, from});
    m_taskCount += 1.0F;
}

void Task::setError(const QString& message)
{
    m_isError = true;
    m_errorMessage = message;
    Q_EMIT
    failed(message);
}

void Task::checkJobs()
{
    if (!m_isError && m_jobs.isEmpty()) {
        setError(tr("Failed to initialize the task"));
    } else {
        qDebug() << "task count:" << m_taskCount;
    }
}

void Task::start()
{
    m_isStarted = true;
    qDebug() << "is error:" << (m_isError ? "true" : "false");
    if (m_isError) {
        return;
    }
    if (m_jobs.isEmpty()) {
        sync();
        Q_EMIT
        taskFinished();
        return;
    }
    m_currentIndex = std::min(m_currentIndex + 1, m_taskCount);
    qDebug() << "currentIndex:" << m_currentIndex << "taskCount:" << m_taskCount;
    startJob(m_jobs.constFirst());
}

void Task::aboutToStart(const Job& /*job*/)
{ }

void Task::startJob(const Job& job)
{
    aboutToStart(job);
    m_process = job.process;
    m_process->setProcessEnvironment(jobEnvironment());
    if (job.type == JobType::Clone) {
        connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &Task::onCloneOutput);
    } else {
        Q_EMIT
        progressChanged(Progress::percentAtStart(fraction()));
    }
    connect(m_process.get(), &QProcess::finished, this, &Task::onJobFinished);
    connect(m_process.get(), &QProcess::errorOccurred, this, &Task::onJobError);
    connect(m_process.get(), &QProcess::readyReadStandardError, this, &Task::onJobErrorOutput);
    qDebug() << "job start:" << job.from << "to" << job.to;
    const QStringList arguments = jobArguments(job.type, job.from, job.to);
    if (!arguments.isEmpty()) {
        m_process->start(u"sudo"_s, arguments, QIODevice::ReadWrite);
    }
}

float Task::fraction() const
{
    const bool onlyClones = std::ranges::all_of(m_jobs, [](const Job& job) { return job.type == JobType::Clone; });
    return Progress::fraction(onlyClones, m_currentIndex, m_taskCount);
}

void Task::onJobFinished(int exitCode, QProcess::ExitStatus status)
{
    const Job& job = m_jobs.constFirst();
    const bool isDone = exitCode == 0 && status == QProcess::NormalExit;
    // The image tool itself sees to it that everything reaches the disk.
    if (!isDone || (job.type != JobType::Clone && !hasReachedDisk(job.to))) {
        // Where the log of this run will be kept: the end page tells the person to look there.
        setError(u"/recovery/kestro-recovery-gui.log"_s);
        return;
    }
    m_jobs.removeFirst();
    start();
}

void Task::onJobError(QProcess::ProcessError error)
{
    // A process that cannot be started never reports finished(); every other error does.
    if (error != QProcess::FailedToStart) {
        return;
    }
    qWarning() << "job cannot be started:" << m_process->errorString();
    onJobFinished(-1, QProcess::CrashExit);
}

void Task::onJobErrorOutput()
{
    qWarning() << QString::fromUtf8(m_process->readAllStandardError());
}

void Task::onCloneOutput()
{
    const float percent = Progress::clonePercent(m_process->readAllStandardOutput());
    Q_EMIT
    progressChanged(Progress::rounded(Progress::highest(fraction() * percent)));
}
