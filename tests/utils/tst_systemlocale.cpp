// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/systemlocale.h"

#include "support/files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using Files = QMap<QString, QByteArray>;

class SystemLocaleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values();
    void files_data();
    void files();
};

void SystemLocaleTest::values()
{
    const auto value = [](const QByteArray& content) {
        return parseLocaleValue(content, "LANGUAGE="_L1).value_or(u"-"_s);
    };
    QCOMPARE(value("LANG=C\nLANGUAGE=\"en_US\"\n"), u"\"en_US\""_s);
    QCOMPARE(value("\nLANGUAGE=de_DE\nLANGUAGE=en_US"), u"de_DE"_s);
    QCOMPARE(value("# LANGUAGE=de_DE\nLANGUAGE=en_US\n"), u"de_DE"_s); // deliberate: a comment counts
    QCOMPARE(value("X=1 LANGUAGE=en=US\n"), u"1 LANGUAGE=en=US"_s);
    QCOMPARE(value("LANG=en_US.UTF-8\n"), u"-"_s);
}

void SystemLocaleTest::files_data()
{
    QTest::addColumn<Files>("content");
    QTest::addColumn<QString>("locale"); // "-": none

    const QString own = u"etc/default/locale"_s;
    const QString installer = u"etc/kestro-installer/kestro-installer.conf"_s;
    const QString oldInstaller = u"etc/kestro-installer.conf"_s;
    QTest::newRow("the system's own goes first")
        << Files{{own, "LANGUAGE=a"}, {installer, "KI_LOCALE=b"}, {oldInstaller, "KI_LOCALE=c"}} << u"a"_s;
    QTest::newRow("then the installer's")
        << Files{{own, "LANG=a"}, {installer, "x\nKI_LOCALE=b\n"}, {oldInstaller, "KI_LOCALE=c"}} << u"b"_s;
    QTest::newRow("then its old place") << Files{{oldInstaller, "KI_LOCALE=c"}} << u"c"_s;
    QTest::newRow("which does not help a newer file out")
        << Files{{installer, "LANGUAGE=b"}, {oldInstaller, "KI_LOCALE=c"}} << u"-"_s;
    QTest::newRow("no file") << Files{} << u"-"_s;
}

void SystemLocaleTest::files()
{
    QFETCH(Files, content);
    const QTemporaryDir root;
    for (auto it = content.begin(); it != content.end(); ++it) {
        writeWholeFile(root.filePath(it.key()), it.value());
    }
    QTEST(readSystemLocale(root.path() + u'/').value_or(u"-"_s), "locale");
}

QTEST_GUILESS_MAIN(SystemLocaleTest)
#include "tst_systemlocale.moc"
