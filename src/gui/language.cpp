// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/language.h"

#include <QGuiApplication>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

QString chooseLocale(const QJsonObject& pendingTask, const QString& installedLocale, const QString& runningLocale)
{
    if (!pendingTask.isEmpty()) {
        return pendingTask["locale"_L1].toString();
    }
    return installedLocale.isEmpty() ? runningLocale : installedLocale;
}

void installLanguage(QTranslator& translator, const QString& locale)
{
    const bool loaded =
        translator.load(u"/usr/share/kestro-recovery-gui/translations/gui/kestro-recovery-gui_%1"_s.arg(locale));
    QCoreApplication::installTranslator(&translator);
    QGuiApplication::setLayoutDirection(loaded ? QLocale(locale).textDirection() : Qt::LeftToRight);
}
