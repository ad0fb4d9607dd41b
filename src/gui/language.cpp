// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/language.h"

#include "platform/velk/VApplication.h"
#include "platform/velk/interfacefont.h"

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
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    if (loaded) {
        useWritingOf(QLocale(locale));
    }
}

void useWritingOf(const QLocale& locale)
{
    QLocale::setDefault(locale);
    QGuiApplication::setLayoutDirection(locale.textDirection());
    VApplication::setFont(interfaceFont(locale));
}
