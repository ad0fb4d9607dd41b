// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QString>

class QLocale;
class QTranslator;

/// The locale of the interface: with a pending task the one that it names, even when it names none; otherwise the
/// installed system's, and where that is unknown the running one's.
[[nodiscard]] QString chooseLocale(
    const QJsonObject& pendingTask, const QString& installedLocale, const QString& runningLocale);

/// Loads the program's translation to that locale and installs it, with the writing of that language.
/// Without such a translation the interface stays English and runs from left to right.
/// @param translator must live as long as the interface
void installLanguage(QTranslator& translator, const QString& locale);

/// Shows numbers, the direction of writing and the letters as readers of that language are used to.
void useWritingOf(const QLocale& locale);
