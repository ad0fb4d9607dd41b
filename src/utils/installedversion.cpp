// SPDX-License-Identifier: GPL-3.0-or-later
#include "installedversion.h"

#include "utils/core/inifile.h"

#include <QFile>

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
    const IniValues values = readIni(u"%1/usr/lib/kestro/desktop-version"_s.arg(rootDir));
    return values.value(u"Release/Type"_s, u"Professional"_s);
}

int installedMinorVersion(const QString& rootDir)
{
    return readIni(osVersionFile(rootDir)).value(u"Version/MinorVersion"_s).toInt();
}
