// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/inifile.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

IniValues parseIni(const QByteArray& text)
{
    const QTemporaryDir folder;
    QFile copy(folder.filePath(u"copy.ini"_s));
    if (!folder.isValid() || !copy.open(QIODevice::WriteOnly) || copy.write(text) != text.size()) {
        return {};
    }
    copy.close();
    const QSettings settings(copy.fileName(), QSettings::IniFormat);
    IniValues values;
    for (const QString& key : settings.allKeys()) {
        values.insert(key, settings.value(key).toString());
    }
    return values;
}

IniValues readIni(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? parseIni(file.readAll()) : IniValues();
}
