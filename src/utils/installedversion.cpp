// SPDX-License-Identifier: GPL-3.0-or-later
#include "installedversion.h"

#include <QFile>
#include <QSettings>

#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

/// QFileInfo would resolve the target on the running system, so the raw one is read.
QString osVersionFile(const QString& rootDir)
{
    QString link = rootDir + u"/etc/os-version"_s;
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(QFile::encodeName(link).constData(), error);
    if (error) {
        return link;
    }
    // An absolute target replaces "/etc", and ".." cannot climb above "/".
    const std::filesystem::path inside = (std::filesystem::path("/etc") / target).lexically_normal();
    return rootDir + QFile::decodeName(inside.c_str());
}

} // namespace

QString installedEdition(const QString& rootDir)
{
    const QSettings settings(u"%1/usr/lib/kestro/desktop-version"_s.arg(rootDir), QSettings::IniFormat);
    return settings.value("Release/Type", u"Professional"_s).toString();
}

int installedMinorVersion(const QString& rootDir)
{
    return QSettings(osVersionFile(rootDir), QSettings::IniFormat).value("Version/MinorVersion").toInt();
}
