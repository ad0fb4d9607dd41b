// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// One captured log line.
struct LogLine
{
    QtMsgType level = QtDebugMsg;
    QString function; ///< the full signature as the compiler gives it, for example "void Task::checkJobs()"
    QString file;     ///< for example "./src/utils/Device.cpp"
    int line = 0;
    QString message;
};

/// Captures what all threads log with qDebug and its kin as long as it lives; the former handler is restored then.
/// Nothing is printed meanwhile, except a fatal line. One at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    /// All lines so far, in order.
    [[nodiscard]] QList<LogLine> lines() const;

    /// The messages of all lines so far, in order.
    [[nodiscard]] QStringList messages() const;

    /// The messages of one level, in order.
    [[nodiscard]] QStringList messages(QtMsgType level) const;

    /// The first line with exactly this message; an empty one with line number 0 when there is none.
    [[nodiscard]] LogLine find(const QString& message) const;

    /// Forgets the lines so far.
    void clear();

private:
    QtMessageHandler m_former = nullptr;
};
