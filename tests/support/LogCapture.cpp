// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/LogCapture.h"

#include <QMutex>
#include <QMutexLocker>

#include <cstdio>

namespace {

// A message handler has no context argument, so what it writes to cannot belong to an object.
QMutex mutex;
QList<LogLine> captured;

void capture(QtMsgType level, const QMessageLogContext& context, const QString& message)
{
    if (level == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
    const QMutexLocker lock(&mutex);
    captured << LogLine{
        level, QString::fromUtf8(context.function), QString::fromUtf8(context.file), context.line, message};
}

} // namespace

LogCapture::LogCapture()
{
    clear();
    m_former = qInstallMessageHandler(capture);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_former);
}

QList<LogLine> LogCapture::lines() const
{
    const QMutexLocker lock(&mutex);
    return captured;
}

QStringList LogCapture::messages() const
{
    QStringList messages;
    for (const LogLine& line : lines()) {
        messages << line.message;
    }
    return messages;
}

QStringList LogCapture::messages(QtMsgType level) const
{
    QStringList messages;
    for (const LogLine& line : lines()) {
        if (line.level == level) {
            messages << line.message;
        }
    }
    return messages;
}

LogLine LogCapture::find(const QString& message) const
{
    for (const LogLine& line : lines()) {
        if (line.message == message) {
            return line;
        }
    }
    return {};
}

void LogCapture::clear()
{
    const QMutexLocker lock(&mutex);
    captured.clear();
}
