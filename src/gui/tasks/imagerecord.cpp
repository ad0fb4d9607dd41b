// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/imagerecord.h"

#include "utils/core/inifile.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

std::optional<ImageRecord::Line> ImageRecord::parseLine(const QString& description)
{
    for (const QString& line : description.split(u'\n')) {
        const bool isDiskDrive = line.contains("DiskDrive="_L1);
        if (isDiskDrive || line.contains("UUID="_L1)) {
            return Line{isDiskDrive, line.split(u'=').constLast().simplified()};
        }
    }
    return std::nullopt;
}

QStringList ImageRecord::readCommand(const QString& path)
{
    return {u"kestro-clone"_s, u"--read-custom-file"_s, u"kim://%1/%2"_s.arg(path, name), name};
}

std::optional<ImageRecord::Values> ImageRecord::parseFile(const QByteArray& text)
{
    // A list, a comment, an escape.
    if (std::ranges::any_of(text, [](char c) { return c == ',' || c == ';' || c == '\\'; })) {
        return std::nullopt;
    }
    const IniValues values = parseIni(text);
    return Values{values.value(u"DiskDrive"_s), values.value(u"UUID"_s), values.value(u"Version"_s)};
}
