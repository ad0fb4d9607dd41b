// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/Logger.h"

#include <QDate>

namespace Velk::Core {

/// Appends log lines to a file, and begins a new one on each day on which the program is started.
///
/// A file whose last line was written on another day than this appender's first one is set aside under its name and
/// that day, as in "some.log.2026-01-31". A run is never divided: whoever looks for what went wrong has all of it in
/// one file, also when midnight, perhaps that of another time zone, passed meanwhile. The path is opened for each line:
/// a file that was replaced or removed meanwhile does not matter, and a line is out when it has been logged. While the
/// path cannot be written, lines are lost here and nowhere else.
class RollingFileAppender : public AbstractAppender
{
public:
    enum class DatePattern {
        None, ///< the file grows for ever
        DailyRollover
    };

    /// Nothing is touched before the first line.
    explicit RollingFileAppender(const QString& path);

    void setDatePattern(DatePattern pattern) { m_pattern = pattern; }

    /// How many files of former days are kept beside the current one; the oldest go. 0, as at first, keeps all.
    void setLogFilesLimit(int limit) { m_limit = limit; }

protected:
    void write(const QByteArray& line, const QDateTime& time) override;

private:
    void rollOver(const QDate& today) const;
    void setAside(const QDate& day) const;
    void removeOldest() const;

    QString m_path;
    DatePattern m_pattern = DatePattern::None;
    int m_limit = 0;
    bool m_isBegun = false;
};

} // namespace Velk::Core
