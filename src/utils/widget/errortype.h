// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMetaType>

class QString;

namespace Utils {

/// Why the restore page or the backup page cannot go on; registered as a meta type under this name.
enum ErrorType : int {
    NoError = 0,
    InsufficientSpace = 1,
    UnsupportedFileSystem = 2,
    InvalidPath = 3,
    PathInSourceDisk = 4,
    InvalidBackup = 5,
    ReadOnlyDevice = 6,
    UnusableDirectory = 7,
    EncryptedSystem = 8
};

/// The translated text of @p type; that of InvalidBackup is the one for a chosen backup. Empty for NoError and for
/// values outside the enumeration.
[[nodiscard]] QString errorText(ErrorType type);

} // namespace Utils

Q_DECLARE_METATYPE(Utils::ErrorType)
