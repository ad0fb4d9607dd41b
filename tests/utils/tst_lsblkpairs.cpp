// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"

#include "utils/lsblkpairs.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

class LsblkPairsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyColumn();
    void recordedLines();
    void values();
    void hostileLines_data();
    void hostileLines();
};

namespace {

/// A line whose columns have the given values where the map names them.
QString lineWith(const QMap<QString, QString>& values)
{
    const QStringList columns = lsblkPairsArguments().last().split(u',');
    const QMap<QString, QString> defaults = {{u"RO"_s, u"0"_s}, {u"HOTPLUG"_s, u"0"_s}, {u"MAJ:MIN"_s, u"8:3"_s}};
    QStringList pairs;
    for (const QString& column : columns) {
        const QString value = values.value(column, defaults.value(column));
        pairs.append(u"%1=\"%2\""_s.arg(column, value));
    }
    return pairs.join(u' ');
}

BlockDevicePtr parsed(const QMap<QString, QString>& values)
{
    const BlockDeviceList devices = parseLsblkPairs(lineWith(values));
    return devices.size() == 1 ? devices.first() : BlockDevicePtr::create();
}

QString textOf(const BlockDeviceInfo& device)
{
    return QStringList{device.path, device.type, device.fsType, device.pkname, device.uuid, device.mountPoint,
        QString::number(device.size)}
        .join(u'|');
}

} // namespace

void LsblkPairsTest::everyColumn()
{
    const QString line =
        uR"(NAME="vg-root" KNAME="dm-1" LABEL=" l " UUID="u" TYPE="lvm" FSTYPE="Ext4" SIZE="1" FSUSED="2" )"
        uR"(FSAVAIL="3" LOG-SEC="512" PHY-SEC="4096" MOUNTPOINT="/" MODEL="mo" RO="1" HOTPLUG="1" MAJ:MIN="253:1" )"
        uR"(PARTLABEL="pl" PARTUUID="pu" PKNAME="dm-0" PATH="/dev/mapper/vg-root" VENDOR="ve" SERIAL="se" REV="re" )"
        uR"(ROTA="1")"_s;
    const BlockDeviceList devices = parseLsblkPairs(line);
    QCOMPARE(devices.size(), 1);
    const BlockDeviceInfo& d = *devices.first();
    const QStringList texts{d.path, d.name, d.kname, d.pkname, d.lsblkPath, d.mapperName, d.uuid, d.label, d.partUuid,
        d.partLabel, d.type, d.fsType, d.usage, d.mountPoint, d.model, d.majMin, d.vendor, d.serial, d.rev,
        d.byUuidPath, d.byLabelPath, d.byPartUuidPath, d.byPartLabelPath, d.mapperPath};
    QCOMPARE(texts.join(u'|'),
        u"/dev/dm-1|vg-root|dm-1|dm-0|/dev/mapper/vg-root||u|l|pu|pl|lvm|ext4||/|mo|253:1|ve|se|re|"
        u"/dev/disk/by-uuid/u|/dev/disk/by-label/l|/dev/disk/by-partuuid/pu|/dev/disk/by-partlabel/pl|"_s);
    const QList<qint64> numbers{
        d.size, d.fsUsed, d.fsAvail, d.logSec, d.phySec, d.major, d.minor, d.rota, d.readOnly, d.hotplug};
    QCOMPARE(numbers, (QList<qint64>{1, 2, 3, 512, 4096, 253, 1, 1, 1, 1}));
}

void LsblkPairsTest::recordedLines()
{
    QStringList texts;
    const BlockDeviceList devices = parseLsblkPairs(recording(u"lsblk/pairs-loop.txt"_s));
    for (const BlockDevicePtr& device : devices) {
        texts.append(textOf(*device));
    }
    QCOMPARE(texts,
        (QStringList{u"/dev/sdz|loop|||||67108864"_s, u"/dev/sdz1|part||sdz||/tmp/with blank|16777216"_s,
            u"/dev/sdz2|part||sdz|||16777216"_s, u"/dev/sdz3|part||sdz|||16777216"_s}));
}

void LsblkPairsTest::values()
{
    const auto fsType = [](const QString& printed) { return parsed({{u"FSTYPE"_s, printed}})->fsType; };
    QCOMPARE(fsType(u" CRYPTO_luks "_s), u"luks"_s);
    QCOMPARE(fsType(u"LVM2_member"_s), u"lvm2"_s);
    QCOMPARE(fsType(u"crypto_LUKS2"_s), u"crypto_luks2"_s);

    const auto size = [](const QString& printed) { return parsed({{u"SIZE"_s, printed}})->size; };
    QCOMPARE(size(u"9223372036854775807"_s), 9223372036854775807);
    QCOMPARE(size(u"9223372036854775808"_s), 0);
    QCOMPARE(size(u"0x10"_s), 0);

    const auto majorMinor = [](const QString& printed) {
        const BlockDevicePtr device = parsed({{u"MAJ:MIN"_s, printed}});
        return u"%1 %2"_s.arg(device->major).arg(device->minor);
    };
    QCOMPARE(majorMinor(u"8"_s), u"8 -1"_s);
    QCOMPARE(majorMinor(u":3"_s), u"-1 3"_s);
    QCOMPARE(majorMinor(u"1:2:3"_s), u"1 -1"_s);

    const BlockDevicePtr plain = parsed({{u"RO"_s, u"2"_s}});
    QCOMPARE(plain->rota, -1);
    QVERIFY(!plain->readOnly);
    QCOMPARE(plain->byUuidPath + plain->byPartUuidPath + plain->byPartLabelPath, QString());

    // Quotes and escapes in a value stay as they are.
    const QString mountPoint = uR"(/media/a b" UUID="x)"_s;
    QCOMPARE(parsed({{u"MOUNTPOINT"_s, mountPoint}})->mountPoint, mountPoint);
    QCOMPARE(parsed({{u"LABEL"_s, u"a\\x22b"_s}})->label, u"a\\x22b"_s);
}

void LsblkPairsTest::hostileLines_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("devices");
    const QString good = lineWith({{u"KNAME"_s, u"sda"_s}});
    const QString megabyte(1 << 20, u'x');
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("underscore") << QString(good).replace("MAJ:MIN"_L1, "MAJ_MIN"_L1) << 1;
    QTest::newRow("other spelling of a column") << QString(good).replace("LOG-SEC"_L1, "LOG_SEC"_L1) << 0;
    QTest::newRow("cut") << good + u'\n' + good.chopped(1) << 1;
    QTest::newRow("blank lines and a message") << u"\n\nlsblk: failed\n"_s + good + u'\n' << 1;
    QTest::newRow("1 MiB in a value") << lineWith({{u"LABEL"_s, megabyte}}) << 1;
    QTest::newRow("1 MiB without a form") << megabyte << 0;
    QTest::newRow("1 MiB of beginnings") << u"NAME=\"\" KNAME=\"\" LABEL=\""_s.repeated(40000) << 0;
    QTest::newRow("1 MiB of quotes") << u"NAME=\""_s + QString(1 << 20, u'"') << 0;
    QTest::newRow("NUL") << lineWith({{u"LABEL"_s, QString(QChar(0))}}) << 1;
}

void LsblkPairsTest::hostileLines()
{
    QFETCH(QString, text);
    QFETCH(int, devices);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(parseLsblkPairs(text).size(), devices);
    QVERIFY2(timer.elapsed() < 10000, "a hostile line holds the program up");
}

QTEST_GUILESS_MAIN(LsblkPairsTest)
#include "tst_lsblkpairs.moc"
