// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/ondisk.h"

#include <QDebug>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Some file systems refuse to be asked (EINVAL, ENOSYS); these say that data was lost.
bool isLoss(int error)
{
    return error == EIO || error == ENOSPC || error == EDQUOT || error == EROFS;
}

} // namespace

bool liesWithin(const QString& path, const QString& directory)
{
    std::error_code error;
    const std::filesystem::path target(QFile::encodeName(directory).constData());
    std::filesystem::path part =
        std::filesystem::weakly_canonical(std::filesystem::path(QFile::encodeName(path).constData()), error);
    while (!part.empty() && !std::filesystem::equivalent(part, target, error)) {
        part = part.has_relative_path() ? part.parent_path() : std::filesystem::path();
    }
    return !part.empty();
}

bool hasReachedDisk(const QString& path)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return true;
    }
    int error = ::fsync(file) == 0 ? 0 : errno;
    if (error == 0 || !isLoss(error)) {
        error = ::syncfs(file) == 0 ? 0 : errno;
    }
    ::close(file);
    if (isLoss(error)) {
        qWarning() << "not written to the disk:" << path << std::strerror(error);
    }
    return !isLoss(error);
}
