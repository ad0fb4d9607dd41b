// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

/// The texts of an INI file by key; those of a group other than "General" are keyed "Group/Key". A value that is not
/// one plain text (it holds a comma) is empty.
using IniValues = QMap<QString, QString>;

/// Reads INI text with the rules of QSettings, but never from its cache: that goes by path, size and time, and so takes
/// one file for another when files follow each other at one path.
[[nodiscard]] IniValues parseIni(const QByteArray& text);

/// The same for a file; empty when it cannot be read.
[[nodiscard]] IniValues readIni(const QString& path);
