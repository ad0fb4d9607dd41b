// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/RollingFileAppender.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Velk::Core {

namespace {

/// Appends to the file, which it makes when there is none. The log names people and their files: only its owner reads
/// it. Plain calls, because QFile may log on an error.
bool appendToFile(const QString& path, const QByteArray& bytes)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0) {
        return false;
    }
    qsizetype done = 0;
    while (done < bytes.size()) {
        const auto count = ::write(file, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (count < 0 && errno != EINTR) {
            break;
        }
        done += std::max<qsizetype>(count, 0);
    }
    ::close(file);
    return done == bytes.size();
}

/// A clock that was set back brings a day twice: the file of that day grows.
void moveBehind(const QString& source, const QString& target)
{
    QFile file(source);
    if (!QFile::exists(target)) {
        file.rename(target);
    } else if (file.open(QIODevice::ReadOnly) && appendToFile(target, file.readAll())) {
        file.remove();
    }
}

} // namespace

RollingFileAppender::RollingFileAppender(const QString& path)
    : m_path(path)
{ }

void RollingFileAppender::write(const QByteArray& line, const QDateTime& time)
{
    if (m_pattern == DatePattern::DailyRollover && !m_isBegun) {
        rollOver(time.date());
    }
    m_isBegun = true;
    appendToFile(m_path, line);
}

void RollingFileAppender::rollOver(const QDate& today) const
{
    const QFileInfo file(m_path);
    if (file.size() > 0 && file.lastModified().date() != today) {
        setAside(file.lastModified().date());
        removeOldest();
    }
}

void RollingFileAppender::setAside(const QDate& day) const
{
    moveBehind(m_path, m_path + day.toString(u".yyyy-MM-dd"_s));
}

void RollingFileAppender::removeOldest() const
{
    const QFileInfo file(m_path);
    // Names that end with a day sort by that day.
    const QStringList kept = file.dir().entryList(
        {file.fileName() + u".[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]"_s}, QDir::Files, QDir::Name);
    for (qsizetype i = 0; m_limit > 0 && i < kept.size() - m_limit; ++i) {
        QFile::remove(file.dir().filePath(kept[i]));
    }
}

} // namespace Velk::Core
