// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/language.h"
#include "sandbox/SandboxWidgets.h"

#include <QDir>
#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

class LanguageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void choice_data();
    void choice();
    void installed_data();
    void installed();
};

void LanguageTest::initTestCase()
{
    const QString folder = u"/usr/share/kestro-recovery-gui/translations/gui"_s;
    QVERIFY(QDir().mkpath(folder));
    const QDir built(QStringLiteral(KESTRO_TRANSLATIONS));
    const QStringList files = built.entryList({u"*.qm"_s});
    for (const QString& file : files) {
        QVERIFY(QFile::copy(built.filePath(file), folder + u'/' + file));
    }
}

void LanguageTest::choice_data()
{
    const QJsonObject chinese{{u"type"_s, u"SystemBackup"_s}, {u"locale"_s, u"zh_CN"_s}};
    const QJsonObject silent{{u"type"_s, u"SystemBackup"_s}};
    const QJsonObject number{{u"locale"_s, 7}};
    QTest::addColumn<QJsonObject>("task");
    QTest::addColumn<QString>("installed");
    QTest::addColumn<QString>("locale");
    QTest::newRow("of the task") << chinese << u"de_DE"_s << u"zh_CN"_s;
    // A pending task decides, even when it says nothing: deliberate.
    QTest::newRow("task without one") << silent << u"de_DE"_s << QString();
    QTest::newRow("task with a number") << number << u"de_DE"_s << QString();
    QTest::newRow("of the installed system") << QJsonObject() << u"\"de_DE\""_s << u"\"de_DE\""_s;
    QTest::newRow("of the running system") << QJsonObject() << QString() << u"en_US"_s;
}

void LanguageTest::choice()
{
    QFETCH(QJsonObject, task);
    QFETCH(QString, installed);
    QTEST(chooseLocale(task, installed, u"en_US"_s), "locale");
}

void LanguageTest::installed_data()
{
    QTest::addColumn<QString>("cancel");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<QString>("font"); // the last family
    const QString latin = u"Noto Sans"_s;
    QTest::newRow("de") << u"Abbrechen"_s << Qt::LeftToRight << latin;
    QTest::newRow("de_AT") << u"Abbrechen"_s << Qt::LeftToRight << latin;
    QTest::newRow("zh_TW") << u"取消"_s << Qt::LeftToRight << u"Noto Sans CJK TC"_s;
    QTest::newRow("zh_CN.UTF-8") << u"取消"_s << Qt::LeftToRight << u"Noto Sans CJK SC"_s;
    QTest::newRow("pt_BR") << u"Cancelar"_s << Qt::LeftToRight << latin;
    QTest::newRow("ar") << u"إلغاء"_s << Qt::RightToLeft << u"Noto Sans Arabic"_s;
    QTest::newRow("ar_EG") << u"إلغاء"_s << Qt::RightToLeft << u"Noto Sans Arabic"_s;
    QTest::newRow("en_US") << u"Cancel"_s << Qt::LeftToRight << latin;
    // No translation: then nothing runs from right to left, either.
    QTest::newRow("he_IL") << u"Cancel"_s << Qt::LeftToRight << latin;
    QTest::newRow("\"de\"") << u"Cancel"_s << Qt::LeftToRight << latin;
    QTest::newRow("") << u"Cancel"_s << Qt::LeftToRight << latin;
}

void LanguageTest::installed()
{
    QTranslator translator;
    useWritingOf(QLocale(u"en"_s));
    installLanguage(translator, QString::fromUtf8(QTest::currentDataTag()));
    QTEST(QCoreApplication::translate("button", "Cancel"), "cancel");
    QTEST(QGuiApplication::layoutDirection(), "direction");
    QTEST(QGuiApplication::font().families().constLast(), "font");
}

int main(int argc, char** argv)
{
    return Sandbox::runWidgets<LanguageTest>(argc, argv);
}

#include "tst_language.moc"
