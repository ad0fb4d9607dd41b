// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"

#include "utils/blkid.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Utils::BlkIdInfo;

namespace {

/// All fields in one line, in the order of the record.
QString textOf(const BlkIdInfo& info)
{
    return QStringList{info.devicePath, info.partUuid, info.partLabel, info.label, info.uuid, info.type,
        info.labelFatboot, info.ptUuid, info.ptType}
        .join(u'|');
}

QStringList parsedRecording(const QString& name)
{
    QStringList texts;
    for (const QString& line : recording(u"blkid/"_s + name).split(u'\n', Qt::SkipEmptyParts)) {
        texts.append(textOf(Utils::parseBlkIdLine(line)));
    }
    return texts;
}

BlkIdInfo device(const QString& path, const QString& type = {})
{
    BlkIdInfo info;
    info.devicePath = path;
    info.type = type;
    return info;
}

} // namespace

class BlkIdTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordings();
    void cutLines();
    void lvmMember();
    void unlistedVolumes();
};

void BlkIdTest::recordings()
{
    // Deliberate: the first occurrence of a key counts, even one inside a label: the second device has no UUID here.
    const QStringList expected{
        u"/dev/sdz1|e876265b-69f4-104f-89e9-4d0734a729cd|EFI|RECOVERY|2396-D0A1|vfat|RECOVERY||"_s,
        u"/dev/sdz2|f49261e2-d622-e645-a95e-6460e834f090|root|My \\||ext4|||"_s,
        u"/dev/sdz3|22f83ae2-2822-4a4e-a3a0-fa7475b6c58b|two words|a b|91dd1337-a420-4e69-aa62-2ca79778dfef|ext4|||"_s,
        u"/dev/sdz4|fee1be41-1ca2-4e42-92ab-2a26d679b74b|swap|swap|63bbc3c6-a9cf-417e-b44e-10bd81b66b31|swap|||"_s,
        u"/dev/sdz5|696ed92c-be5b-cd42-9ad0-0b266e6abf0c|blank||||||"_s,
    };
    QCOMPARE(parsedRecording(u"gpt-loop.txt"_s), expected);
    QCOMPARE(parsedRecording(u"whole-disk.txt"_s),
        (QStringList{u"/dev/sdz|||||||1a2f12cb-018c-514b-a1dc-edc3b610b3ff|gpt"_s}));
}

void BlkIdTest::cutLines()
{
    // Deliberate: no blank is asked for before this key.
    const QString labelLikeKey = uR"(/dev/sdb1: LABEL="aPARTLABEL=" PARTLABEL="x")"_s;
    QCOMPARE(textOf(Utils::parseBlkIdLine(labelLikeKey)), u"/dev/sdb1|| PARTLABEL=|aPARTLABEL=|||||"_s);
    const QString cutValue = uR"(/dev/sdb1: UUID="u" TYPE="ex)"_s;
    QCOMPARE(textOf(Utils::parseBlkIdLine(cutValue)), u"/dev/sdb1||||u|ex|||"_s);
    QCOMPARE(textOf(Utils::parseBlkIdLine(u"/dev/sdb1: TYPE="_s)), u"/dev/sdb1||||||||"_s);
}

void BlkIdTest::lvmMember()
{
    const BlkIdInfo other = device(u"/dev/sda1"_s, u"ext4"_s);
    QVERIFY(Utils::hasLvmMember({other, device(u"/dev/sda2"_s, u"lvm2_MEMBER"_s)}));
    QVERIFY(!Utils::hasLvmMember({other, device(u"/dev/sda2"_s, u"crypto_LUKS"_s)}));
}

void BlkIdTest::unlistedVolumes()
{
    const QList<BlkIdInfo> listed{
        device(u"/dev/sda2"_s, u"LVM2_member"_s), device(u"/dev/mapper/vg-root"_s), device(u"/dev/mapper/luks-1"_s)};
    const QString names = u"vg-root\n vg-swap \n\nvg-data\nluks-1\nluks-2\nmyluks\n"_s;
    QCOMPARE(Utils::unlistedMapperPaths(listed, names),
        (QStringList{u"/dev/mapper/vg-swap"_s, u"/dev/mapper/vg-data"_s, u"/dev/mapper/myluks"_s}));
}

QTEST_GUILESS_MAIN(BlkIdTest)
#include "tst_blkid.moc"
