// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/wholefiles.h"

#include "utils/core/command.h"

#include <QDebug>

using namespace Qt::StringLiterals;

namespace WholeFiles {

static bool isReadBy(const QStringList& words, const QString& path)
{
    QString output;
    QString error;
    const bool isWhole = SpawnCmd(u"sudo"_s, words, output, error);
    if (!isWhole) {
        qWarning() << "file is not whole:" << path << error;
    }
    return isWhole;
}

bool isImageWhole(const QString& path)
{
    return isReadBy({u"kestro-clone"_s, u"--verify"_s, path}, path);
}

bool isArchiveWhole(const QString& path)
{
    // The list itself is not wanted: that of a large folder would fill the memory.
    return isReadBy({u"tar"_s, u"--index-file=/dev/null"_s, u"-tf"_s, path}, path);
}

} // namespace WholeFiles
