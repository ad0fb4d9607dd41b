// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/logging.h"

#include "platform/velk/ConsoleAppender.h"
#include "platform/velk/Logger.h"
#include "platform/velk/RollingFileAppender.h"
#include "utils/core/applicationproperties.h"

using namespace Qt::StringLiterals;
using namespace Velk::Core;

void startLogging()
{
    const QString format =
        u"[%{time}{yyyy-MM-dd, HH:mm:ss.zzz}] [%{type:-7}] [%{file}=>%{function}: %{line}] %{message}\n"_s;
    const QString path = u"/home/kestro/kestro-recovery-gui.log"_s;
    ApplicationProperties::setLogFile(path);

    auto* console = new ConsoleAppender;
    console->setFormat(format);
    auto* file = new RollingFileAppender(path);
    file->setFormat(format);
    file->setLogFilesLimit(5);
    file->setDatePattern(RollingFileAppender::DatePattern::DailyRollover);
    Logger::globalInstance()->registerAppender(console);
    Logger::globalInstance()->registerAppender(file);
}
