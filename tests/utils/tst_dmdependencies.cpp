// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"

#include "utils/dmdependencies.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DmDependenciesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lines();
    void mapperLinks();
    void parents();
};

namespace {

QStringList parsed(const QString& text)
{
    QStringList found;
    const QList<DmDependency> dependencies = parseDmDependencies(text);
    for (const DmDependency& line : dependencies) {
        found.append(line.mapping + u" on "_s + line.dependency);
    }
    return found;
}

BlockDevicePtr device(const QString& kname, const QString& pkname = {})
{
    const auto info = BlockDevicePtr::create();
    info->kname = kname;
    info->path = u"/dev/"_s + kname;
    info->pkname = pkname;
    return info;
}

} // namespace

void DmDependenciesTest::lines()
{
    QCOMPARE(parsed(recording(u"dmsetup/composed-luks-lvm.txt"_s)),
        (QStringList{u"luks_crypt0 on sda3"_s, u"vg0-home on dm-0"_s, u"vg0-root on dm-0"_s, u"vg0-swap on dm-0"_s}));
    // Only the last of several, deliberately.
    QCOMPARE(parsed(recording(u"dmsetup/composed-two-pvs.txt"_s)), QStringList{u"vg-root on sda5"_s});
    QCOMPARE(parsed(u"\n  luks-abc: 1 dependencies : ( sda3 ) \n\n"_s), QStringList{u"luks-abc on sda3"_s});
    QCOMPARE(parsed(u"a:b: 1 dependencies : (sda3)"_s), QStringList{u"a on sda3"_s});
    QCOMPARE(parsed(u"vg-root: 1 dependencies : (sd"_s), QStringList());
    QCOMPARE(parsed(u"$(reboot)\n:\n()\n:()"_s), QStringList{u" on "_s});
    QCOMPARE(parsed(u"a: "_s + QString(1 << 20, u'(')), QStringList());
}

void DmDependenciesTest::mapperLinks()
{
    const BlockDevicePtr first = device(u"dm-0"_s);
    const BlockDevicePtr again = device(u"dm-0"_s);
    const BlockDevicePtr other = device(u"dm-1"_s);
    applyMapperLinks({first, again, other},
        {{u"vg-root"_s, u"/dev/mapper/vg-root"_s, u"/dev/dm-0"_s}, {u"gone"_s, u"/dev/mapper/gone"_s, u"/dev/dm-7"_s}});
    QCOMPARE(first->mapperName + u' ' + first->mapperPath, u"vg-root /dev/mapper/vg-root"_s);
    QCOMPARE(again->mapperName + other->mapperName, QString());
}

void DmDependenciesTest::parents()
{
    const BlockDevicePtr disk = device(u"sda3"_s, u"sda"_s);
    const BlockDevicePtr mapping = device(u"dm-0"_s, u"from lsblk"_s);
    mapping->mapperName = u"luks"_s;
    applyDmDependencies({disk, mapping}, {{u"luks"_s, u"sdz9"_s}, {u"none"_s, u"sda3"_s}, {QString(), u"sda3"_s}});
    QCOMPARE(disk->pkname + u' ' + mapping->pkname, u"sda from lsblk"_s);
    applyDmDependencies({disk, mapping}, {{u"luks"_s, u"sda3"_s}});
    QCOMPARE(disk->pkname + u' ' + mapping->pkname, u"sda sda3"_s);
}

QTEST_GUILESS_MAIN(DmDependenciesTest)
#include "tst_dmdependencies.moc"
