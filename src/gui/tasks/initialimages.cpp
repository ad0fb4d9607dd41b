// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/initialimages.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array keptDesktopEntries{"nox-computer.desktop"_L1, "nox-trash.desktop"_L1, "nox-home.desktop"_L1};
constexpr std::array keptTopLevelEntries{"home"_L1, "lost+found"_L1, "opt"_L1, "root"_L1, "var"_L1};

} // namespace

InitialImage initialImageOf(const QString& directory, const QString& entry)
{
    const QString base = QFileInfo(entry).baseName();
    return {u"%1/%2.kim"_s.arg(directory, base), u"%1/%2.info"_s.arg(directory, base)};
}

bool isKeptDesktopEntry(const QString& name)
{
    return std::ranges::find(keptDesktopEntries, name) != keptDesktopEntries.end();
}

bool isKeptTopLevelEntry(const QFileInfo& entry)
{
    return entry.isDir() && !entry.isSymLink()
        && std::ranges::find(keptTopLevelEntries, entry.fileName()) != keptTopLevelEntries.end();
}
