// SPDX-License-Identifier: GPL-3.0-or-later
#include "systemlocale.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> readLocaleValue(const QString& path, QLatin1StringView key)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? parseLocaleValue(file.readAll(), key) : std::nullopt;
}

QString installerConfiguration(const QString& rootDir)
{
    const QString path = rootDir + u"etc/kestro-installer/kestro-installer.conf"_s;
    return QFile::exists(path) ? path : rootDir + u"etc/kestro-installer.conf"_s;
}

} // namespace

std::optional<QString> parseLocaleValue(const QByteArray& content, QLatin1StringView key)
{
    for (const QString& line : QString::fromUtf8(content).split(u'\n', Qt::SkipEmptyParts)) {
        if (line.contains(key)) {
            return line.mid(line.indexOf(u'=') + 1);
        }
    }
    return std::nullopt;
}

std::optional<QString> readSystemLocale(const QString& rootDir)
{
    const auto locale = readLocaleValue(rootDir + u"etc/default/locale"_s, "LANGUAGE="_L1);
    return locale ? locale : readLocaleValue(installerConfiguration(rootDir), "KI_LOCALE="_L1);
}
