// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/datainfo.h"

#include "gui/tasks/taskarguments.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString valueOf(const QStringList& lines, QLatin1StringView key)
{
    const auto line = std::ranges::find_if(lines, [key](const QString& text) { return text.contains(key); });
    return line == lines.end() ? QString() : line->split(u'=').constLast().simplified();
}

} // namespace

DataInfo parseDataInfo(const QString& text)
{
    const QStringList lines = text.split(u'\n');
    return {valueOf(lines, "UUID="_L1), valueOf(lines, "Directory="_L1)};
}

bool isSafeDirectory(const QString& directory)
{
    return !leadsUpwards(directory) && !directory.split(u'/').constLast().startsWith(u'-');
}
