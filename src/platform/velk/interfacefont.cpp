// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/interfacefont.h"

#include "platform/velk/VFontSizeManager.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace {

QStringList familiesOf(QLocale::Script script)
{
    switch (script) {
    case QLocale::SimplifiedHanScript:
        return {u"Noto Sans CJK SC"_s};
    case QLocale::TraditionalHanScript:
        return {u"Noto Sans CJK TC"_s};
    case QLocale::JapaneseScript:
        return {u"Noto Sans CJK JP"_s};
    case QLocale::KoreanScript:
        return {u"Noto Sans CJK KR"_s};
    case QLocale::ArabicScript:
        return {u"Noto Sans Arabic"_s};
    default:
        return {};
    }
}

} // namespace

QFont interfaceFont(const QLocale& locale)
{
    QStringList families = QStringList{u"Noto Sans"_s, u"DejaVu Sans"_s} + familiesOf(locale.script());
    families.removeIf([](const QString& family) { return !QFontDatabase::hasFamily(family); });
    // One of the first two is enough, and the second covers scripts that have a better family.
    if (families.contains(u"Noto Sans"_s)) {
        families.removeAll(u"DejaVu Sans"_s);
    }
    QFont font = QGuiApplication::font();
    if (!families.isEmpty()) {
        font.setFamilies(families);
    }
    return VFontSizeManager::get(VFontSizeManager::T6, font);
}
