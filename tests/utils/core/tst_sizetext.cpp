// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/sizetext.h"

#include <QTest>

using namespace Qt::StringLiterals;

class SizeTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizes_data();
    void sizes();
};

void SizeTextTest::sizes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("bytes");
    const auto row = [](const QString& text, qint64 bytes) {
        QTest::newRow(qPrintable(text.left(40))) << text << bytes;
    };
    row(u"1.5GiB"_s, 1610612736);
    row(u"512MiB"_s, 536870912);
    row(u"7.28GiB"_s, 7816840704); // single precision, deliberately: double would give 7816840478
    row(u"16.00KiB"_s, 16384);
    row(u"10TiB"_s, 10995116277760);
    row(u"10PiB"_s, 11258999068426240);
    row(u"144.00B"_s, 144);
    row(u"5GiB"_s, 0); // two digits at least, deliberately
    row(u"1.GiB"_s, 0);
    row(u"10MiBKiB"_s, 10240); // the first unit of the list wins
    row(u" 10MiB"_s, 0);
    row(u"-10MiB"_s, 0);
    row(u"GiB"_s, 0);
    row({}, 0);
    row(u"9000PiB"_s, -1);
    row(QString(60, u'9'), -1);
}

void SizeTextTest::sizes()
{
    QFETCH(QString, text);
    QFETCH(qint64, bytes);
    QCOMPARE(bytesOfSizeText(text), bytes);
}

QTEST_GUILESS_MAIN(SizeTextTest)
#include "tst_sizetext.moc"
