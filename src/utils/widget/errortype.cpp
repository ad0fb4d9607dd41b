// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/errortype.h"

#include <QCoreApplication>

#include <array>

namespace {

// In the order of Utils::ErrorType.
constexpr std::array texts = {
    "",
    QT_TRANSLATE_NOOP("ErrorType", "Insufficient disk space"),
    QT_TRANSLATE_NOOP("ErrorType",
        "The file system is not supported for backup. Please select one in ext4, btrfs, xfs, reiserfs "
        "format."),
    QT_TRANSLATE_NOOP("ErrorType", "Invalid path"),
    QT_TRANSLATE_NOOP("ErrorType", "The storage location cannot be in source disk, please reselect"),
    QT_TRANSLATE_NOOP("ErrorType", "Backup file is invalid"),
    QT_TRANSLATE_NOOP("ErrorType", "Cannot back up data to the read-only device"),
    QT_TRANSLATE_NOOP(
        "ErrorType", "This directory cannot be used to store backup files, please select a different directory."),
    QT_TRANSLATE_NOOP("ErrorType",
        "The system contains encrypted partition, please decrypt it before using the backup and restore "
        "function."),
};

} // namespace

QString Utils::errorText(ErrorType type)
{
    const auto index = static_cast<size_t>(type);
    return index == 0 || index >= texts.size() ? QString() : QCoreApplication::translate("ErrorType", texts.at(index));
}
