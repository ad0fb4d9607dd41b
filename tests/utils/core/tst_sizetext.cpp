// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/sizetext.h"

#include <QTest>

using namespace Qt::StringLiterals;

class SizeTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizes();
};

void SizeTextTest::sizes()
{
    QCOMPARE(bytesOfSizeText(u"1.5GiB"_s), 1610612736);
    QCOMPARE(bytesOfSizeText(u"512MiB"_s), 536870912);
    QCOMPARE(bytesOfSizeText(u"7.28GiB"_s), 7816840704); // single precision, deliberately: double gives 7816840478
    QCOMPARE(bytesOfSizeText(u"16.00KiB"_s), 16384);
    QCOMPARE(bytesOfSizeText(u"10TiB"_s), 10995116277760);
    QCOMPARE(bytesOfSizeText(u"10PiB"_s), 11258999068426240);
    QCOMPARE(bytesOfSizeText(u"144.00B"_s), 144);
    QCOMPARE(bytesOfSizeText(u"10MiBKiB"_s), 10240); // the first unit of the list wins
    QCOMPARE(bytesOfSizeText(u"5GiB"_s), 0);         // two digits at least, deliberately
    for (const QString& text : {u"1.GiB"_s, u" 10MiB"_s, u"-10MiB"_s, u"GiB"_s, QString()}) {
        QVERIFY2(bytesOfSizeText(text) == 0, qPrintable(text));
    }
    QCOMPARE(bytesOfSizeText(u"9000PiB"_s), -1);
    QCOMPARE(bytesOfSizeText(QString(60, u'9')), -1);
}

QTEST_GUILESS_MAIN(SizeTextTest)
#include "tst_sizetext.moc"
