// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

QString recording(const QString& file)
{
    QFile recorded(QStringLiteral(KESTRO_SOURCE_DIR "/tests/utils/data/") + file);
    if (!recorded.open(QIODevice::ReadOnly)) {
        qFatal("there is no recording %s", qPrintable(file));
    }
    return QString::fromUtf8(recorded.readAll());
}

void writeWholeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size() || !file.flush()) {
        qFatal("cannot write %s: %s", qPrintable(path), qPrintable(file.errorString()));
    }
}
