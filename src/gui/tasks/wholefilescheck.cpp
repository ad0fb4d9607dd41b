// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/wholefilescheck.h"

#include <QDebug>
#include <QFile>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// tar takes the end of the file for the end of the archive when it lies between two members.
bool hasEndMark(const QString& archive)
{
    constexpr qint64 endMark = 1024; // two blocks of zeros: GNU tar manual, "Basic Tar Format"
    QFile file(archive);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(std::max<qint64>(0, file.size() - endMark))) {
        return false;
    }
    return file.readAll() == QByteArray(endMark, '\0');
}

} // namespace

WholeFilesCheck::WholeFilesCheck(QObject* parent)
    : QObject(parent)
{
    m_process.setProcessEnvironment(jobEnvironment());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    connect(&m_process, &QProcess::finished, this, &WholeFilesCheck::onRead);
    connect(&m_process, &QProcess::errorOccurred, this, &WholeFilesCheck::onError);
}

void WholeFilesCheck::addImage(const QString& path)
{
    m_files.append({path, {u"kestro-clone"_s, u"--verify"_s, path}, false});
}

void WholeFilesCheck::addArchive(const QString& path, const QString& member)
{
    const QStringList members = member.isEmpty() ? QStringList() : QStringList(member);
    // Otherwise tar seeks over what the members hold: a block that cannot be read would show when all is cleared.
    m_files.append({path, QStringList{u"tar"_s, u"--no-seek"_s, u"-tf"_s, path} + members, true});
}

bool WholeFilesCheck::isNeeded() const
{
    return m_files.size() > 1 || (m_files.size() == 1 && m_files.constFirst().isArchive);
}

void WholeFilesCheck::start()
{
    QTimer::singleShot(0, this, &WholeFilesCheck::readNext);
}

void WholeFilesCheck::readNext()
{
    if (m_files.isEmpty()) {
        Q_EMIT
        finished(true);
        return;
    }
    qDebug() << "check file:" << m_files.constFirst().path;
    m_process.start(u"sudo"_s, m_files.constFirst().command, QIODevice::ReadOnly);
}

void WholeFilesCheck::onRead(int exitCode, QProcess::ExitStatus status)
{
    const File file = m_files.takeFirst();
    const bool isRead = exitCode == 0 && status == QProcess::NormalExit;
    if (isRead && (!file.isArchive || hasEndMark(file.path))) {
        readNext();
        return;
    }
    qWarning() << "file is not whole:" << file.path << QString::fromUtf8(m_process.readAllStandardError());
    Q_EMIT
    finished(false);
}

void WholeFilesCheck::onError(QProcess::ProcessError error)
{
    // A process that cannot be started never reports finished(); every other error does.
    if (error == QProcess::FailedToStart) {
        onRead(-1, QProcess::CrashExit);
    }
}
