// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"

#include "utils/devicesize.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DeviceSizeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sizes();
};

void DeviceSizeTest::sizes()
{
    const QString recorded = recording(u"lsblk/path-size.txt"_s);
    QCOMPARE(parseDeviceSize(recorded, u"/dev/loop0p4"_s), 20971520);
    QCOMPARE(parseDeviceSize(recorded, u"/dev/loop0"_s), 314572800);
    QCOMPARE(parseDeviceSize(recorded, u"/dev/zram0"_s), 0);
    QVERIFY(!parseDeviceSize(recorded, u"/dev/loop"_s));
    QVERIFY(!parseDeviceSize(recorded, {}));
    QVERIFY(!parseDeviceSize(u"PATH SIZE\n/dev/sda4\n"_s, u"/dev/sda4"_s));
    QVERIFY(!parseDeviceSize(u"/dev/sda4 4G\n"_s, u"/dev/sda4"_s));
}

QTEST_GUILESS_MAIN(DeviceSizeTest)
#include "tst_devicesize.moc"
