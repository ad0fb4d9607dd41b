// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/devicesize.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class DeviceSizeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizes_data();
    void sizes();
};

void DeviceSizeTest::sizes_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("device");
    QTest::addColumn<qint64>("size"); // -1: none

    QFile file(QStringLiteral(KESTRO_TEST_DATA "/lsblk/path-size.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString recording = QString::fromUtf8(file.readAll());
    const auto recorded = [&recording](const QString& device, qint64 size) {
        QTest::newRow(qPrintable(u"recorded "_s + device)) << recording << device << size;
    };
    recorded(u"/dev/loop0p4"_s, 20971520);
    recorded(u"/dev/loop0"_s, 314572800);
    recorded(u"/dev/zram0"_s, 0);
    recorded(u"/dev/loop"_s, -1);
    recorded(QString(), -1);
    QTest::newRow("no size") << u"PATH SIZE\n/dev/sda4\n"_s << u"/dev/sda4"_s << qint64(-1);
    QTest::newRow("size is no number") << u"/dev/sda4 4G\n"_s << u"/dev/sda4"_s << qint64(-1);
}

void DeviceSizeTest::sizes()
{
    QFETCH(QString, output);
    QFETCH(QString, device);
    QTEST(parseDeviceSize(output, device).value_or(-1), "size");
}

QTEST_GUILESS_MAIN(DeviceSizeTest)
#include "tst_devicesize.moc"
