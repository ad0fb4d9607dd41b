// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QLatin1StringView>
#include <QString>
#include <QStringList>

#include <optional>

/// The record inside every image that says what it is an image of.
namespace ImageRecord {

/// The name of the record inside the image, and of the file that the image tool reads it from and writes it to.
inline constexpr QLatin1StringView name{"DiskInfo"};

/// The version of the record that this program writes, and the newest one that it restores.
inline constexpr QLatin1StringView version{"1.1"};

/// What a record says; a field is empty when the record does not have it.
struct Values
{
    QString diskDrive; ///< drive identifier: the image is of a whole disk
    QString uuid;      ///< file-system UUID: the image is of one partition
    QString version;
};

/// The line of the image tool's description ("--kim-info") that names the source; one field is set, perhaps to nothing.
struct Line
{
    bool isDiskDrive = false; ///< else a partition UUID
    QString value;
};

/// The first line that contains "DiskDrive=" or "UUID=", with what follows its last "="; nothing when there is none.
[[nodiscard]] std::optional<Line> parseLine(const QString& description);

/// The arguments of "sudo" that read the record of the image at @p path into the working directory.
[[nodiscard]] QStringList readCommand(const QString& path);

/// A record file. Nothing when it holds a character that has a meaning of its own in an INI value: no tool of ours
/// writes one, and the value would be read as another one than it says.
[[nodiscard]] std::optional<Values> parseFile(const QByteArray& text);

} // namespace ImageRecord
