// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/Logger.h"

namespace Velk::Core {

Logger* Logger::globalInstance()
{
    // Left to the end of the process: static objects may log in their destructors.
    static auto* const instance = new Logger;
    return instance;
}

Logger::Logger()
{
    qInstallMessageHandler(&Logger::handleMessage);
}

void Logger::registerAppender(AbstractAppender* appender)
{
    const std::scoped_lock lock(m_mutex);
    m_appenders.append(appender);
}

void Logger::handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    globalInstance()->dispatch({type, context, text, QDateTime::currentDateTime()});
}

void Logger::dispatch(const LogMessage& message)
{
    const std::scoped_lock lock(m_mutex);
    for (AbstractAppender* appender : std::as_const(m_appenders)) {
        appender->append(message);
    }
}

} // namespace Velk::Core
