// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/logformat.h"

#include <QList>
#include <QString>

#include <mutex>

namespace Velk::Core {

/// Where log lines go. The logger never calls one from two threads at once.
class AbstractAppender
{
public:
    AbstractAppender() = default;
    virtual ~AbstractAppender() = default;
    AbstractAppender(const AbstractAppender&) = delete;
    AbstractAppender& operator=(const AbstractAppender&) = delete;

    /// How lines look, see formatLogMessage(). At first a line is the message and a line end.
    void setFormat(const QString& format) { m_format = format; }

    void append(const LogMessage& message) { write(formatLogMessage(m_format, message).toUtf8(), message.time); }

protected:
    /// Writes one line, which has its line end, so that it is out when this returns. Errors have nowhere to go and are
    /// ignored. Must not log.
    virtual void write(const QByteArray& line, const QDateTime& time) = 0;

private:
    QString m_format = QStringLiteral("%{message}\n");
};

/// Hands everything that the program logs through Qt, on any thread, to its appenders.
class Logger
{
public:
    /// The one logger. It becomes Qt's message handler on the first call and stays that until the process ends.
    static Logger* globalInstance();

    /// Adds an appender behind those that there are. It is used until the process ends and never freed.
    void registerAppender(AbstractAppender* appender);

private:
    Logger();
    static void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text);
    void dispatch(const LogMessage& message);

    std::mutex m_mutex;
    QList<AbstractAppender*> m_appenders;
};

} // namespace Velk::Core
