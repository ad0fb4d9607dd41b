// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>

#include <optional>

/// The text after the first "=" of the first line that contains the key (such as "LANGUAGE="), as it stands there:
/// quotes stay, and a line that is commented out counts too. None when no line contains the key.
[[nodiscard]] std::optional<QString> parseLocaleValue(const QByteArray& content, QLatin1StringView key);

/// The locale that the installed system under the directory is set to, or else was installed with.
/// @param rootDir with a trailing "/"
[[nodiscard]] std::optional<QString> readSystemLocale(const QString& rootDir);
