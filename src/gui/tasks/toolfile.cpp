// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/toolfile.h"

#include <QFile>
#include <QFileInfo>

bool ToolFile::removeFormer(const QString& fileName)
{
    QFile::remove(fileName);
    return !QFileInfo::exists(fileName);
}

std::optional<QByteArray> ToolFile::take(const QString& fileName)
{
    const QFileInfo info(fileName);
    QFile file(fileName);
    const bool isOrdinary = info.isFile() && !info.isSymLink();
    if (!isOrdinary || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray content = file.readAll();
    file.remove();
    return content;
}
