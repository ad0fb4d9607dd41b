// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/backupplan.h"
#include "gui/tasks/initialimages.h"
#include "gui/tasks/restorerules.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString toText(const BackupPlan& plan)
{
    QStringList lines;
    for (const Command& command : plan.preparations) {
        lines.append(command.program + u' ' + command.args.join(u' '));
    }
    lines.append(
        u"job %1: %2 -> %3"_s.arg(QString::number(static_cast<int>(plan.job.type)), plan.job.from, plan.job.to));
    return lines.join(u'\n');
}

} // namespace

class TaskPlansTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void imagePlan();
    void archivePlan();
    void targetDirectories();
    void elements_data();
    void elements();
    void acceptedDisks_data();
    void acceptedDisks();
    void systemImages();
    void lastDiskOfRoot();
    void misdirected_data();
    void misdirected();
    void initialImages_data();
    void initialImages();
    void keptTopLevelEntries();
    void keptDesktopEntries();
};

void TaskPlansTest::imagePlan()
{
    const BackupPlan plan = planImage({u"/dev/sda3"_s, u"UUID=1234-ABCD"_s}, u"/media/x/b/"_s, u"system.kim"_s);
    QCOMPARE(toText(plan),
        u"sudo mkdir -p /media/x/b/\n"
        "sudo setfacl -m o:rwx /media/x/b/\n"
        "sudo /lib/kestro-recovery-gui/scripts/write-file DiskInfo UUID=1234-ABCD\\nVersion=1.1\n"
        "sudo kestro-clone --write-custom-file kim:///media/x/b/system.kim/DiskInfo DiskInfo\n"
        "job 0: /dev/sda3 -> /media/x/b/system.kim"_s);
}

void TaskPlansTest::archivePlan()
{
    const BackupPlan plan = planArchive({u"/media/%2"_s, u"u-1"_s, u"opt"_s}, u"/media/x/b/"_s);
    QCOMPARE(toText(plan),
        u"sudo /lib/kestro-recovery-gui/scripts/create-data-info u-1 opt /media/%2/datainfo\n"
        "sudo tar --xattrs --xattrs-include=* -cpf /media/x/b//opt.tar -C /media/%2 datainfo\n"
        "sudo rm /media/%2/datainfo\n"
        "job 3: /media/%2/opt -> /media/x/b//opt.tar"_s);
}

void TaskPlansTest::targetDirectories()
{
    QCOMPARE(targetDirectory(u"/media/x"_s, u"/b"_s), u"/media/x/b/"_s);
    QCOMPARE(targetDirectory(u"/media/x"_s, u"backup"_s), u"/media/xbackup/"_s);
    QCOMPARE(targetDirectory(u"/media/%2"_s, u"/b"_s), u"/media/%2/b/"_s);
}

void TaskPlansTest::elements_data()
{
    QTest::addColumn<QJsonArray>("args");
    QTest::addColumn<QString>("expected");
    QTest::newRow("all") << QJsonArray{u"UUID:a"_s, u"UUID: b"_s, u"/c"_s, u"d.kim"_s} << u"a|b|/c|d.kim"_s;
    QTest::newRow("no name") << QJsonArray{u"a"_s, u"b"_s, u"/c"_s} << u"a|b|/c|"_s;
    QTest::newRow("two") << QJsonArray{u"a"_s, u"b"_s} << u"malformed"_s;
    QTest::newRow("none") << QJsonArray() << u"malformed"_s;
    QTest::newRow("other types") << QJsonArray{1, QJsonObject(), true} << u"|||"_s;
}

void TaskPlansTest::elements()
{
    QFETCH(const QJsonArray, args);
    const auto element = parseBackupElement(args);
    const QString result = element
        ? QStringList({element->sourceUuid, element->targetUuid, element->directory, element->imageName}).join(u'|')
        : u"malformed"_s;
    QTEST(result, "expected");
}

void TaskPlansTest::acceptedDisks_data()
{
    QTest::addColumn<QString>("rootDevice");
    QTest::addColumn<QString>("disk");
    QTest::addColumn<bool>("expected");
    QTest::newRow("root on the disk") << u"/dev/sda2"_s << u"/dev/sda"_s << true;
    QTest::newRow("no root to keep to") << QString() << u"/dev/sdb"_s << true;
    QTest::newRow("root on another disk") << u"/dev/sda2"_s << u"/dev/sdb"_s << false;
    QTest::newRow("disk not found") << u"/dev/sda2"_s << QString() << false;
    QTest::newRow("neither found") << QString() << QString() << false;
    // Deliberate: plain text comparison.
    QTest::newRow("longer name") << u"/dev/sdaa1"_s << u"/dev/sda"_s << true;
}

void TaskPlansTest::acceptedDisks()
{
    QFETCH(const QString, rootDevice);
    QFETCH(const QString, disk);
    QTEST(RestoreRules::isAccepted(rootDevice, disk), "expected");
}

void TaskPlansTest::systemImages()
{
    // Deliberate: the words count anywhere in the path, and their case does.
    QVERIFY(RestoreRules::isSystemImage(u"/media/x/system.kim.d/data.kim"_s));
    QVERIFY(RestoreRules::isSystemImage(u"/b/old-system.kim"_s));
    QVERIFY(!RestoreRules::isSystemImage(u"/b/System.kim"_s));
}

void TaskPlansTest::lastDiskOfRoot()
{
    const QStringList disks{u"/dev/sdb"_s, u"/dev/sda"_s, QString(), u"/dev/sd"_s, u"/dev/sdc"_s};
    QCOMPARE(RestoreRules::lastDiskOfRoot(u"/dev/sda2"_s, disks), u"/dev/sd"_s);
    QCOMPARE(RestoreRules::lastDiskOfRoot(u"/dev/vda2"_s, disks), QString());
}

void TaskPlansTest::misdirected_data()
{
    QTest::addColumn<QStringList>("target"); // image's UUID, device, root UUID, root disk
    QTest::addColumn<bool>("expected");
    QTest::newRow("root itself") << QStringList{u"r"_s, u"/dev/sdb2"_s, u"r"_s, u"/dev/sda"_s} << false;
    QTest::newRow("same disk") << QStringList{u"x"_s, u"/dev/sda3"_s, u"r"_s, u"/dev/sda"_s} << false;
    QTest::newRow("other disk") << QStringList{u"x"_s, u"/dev/sdb3"_s, u"r"_s, u"/dev/sda"_s} << true;
    QTest::newRow("longer name") << QStringList{u"x"_s, u"/dev/sdaa3"_s, u"r"_s, u"/dev/sda"_s} << false;
    QTest::newRow("root disk unknown") << QStringList{u"x"_s, u"/dev/sdb3"_s, u"r"_s, QString()} << false;
}

void TaskPlansTest::misdirected()
{
    QFETCH(const QStringList, target);
    QTEST(RestoreRules::isMisdirected({target[0], target[1], target[2], target[3]}), "expected");
}

void TaskPlansTest::initialImages_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << u"system.kim"_s << u"/r/backup/system.kim /r/backup/system.info"_s;
    // Deliberate: only the name up to the first dot counts.
    QTest::newRow("two dots") << u"a.b.kim"_s << u"/r/backup/a.kim /r/backup/a.info"_s;
    QTest::newRow("place marker") << u"%2.kim"_s << u"/r/backup/%2.kim /r/backup/%2.info"_s;
}

void TaskPlansTest::initialImages()
{
    QFETCH(const QString, entry);
    const InitialImage files = initialImageOf(u"/r/backup"_s, entry);
    QTEST(files.image + u' ' + files.info, "expected");
}

void TaskPlansTest::keptTopLevelEntries()
{
    const QTemporaryDir folder;
    const QDir directory(folder.path());
    for (const QString& name : {u"home"_s, u"opt"_s, u"lost+found"_s, u"root"_s, u"Var"_s, u"data"_s}) {
        QVERIFY(directory.mkdir(name));
    }
    QFile file(directory.filePath(u"x"_s));
    QVERIFY(
        file.open(QIODevice::WriteOnly) && QFile::link(directory.filePath(u"data"_s), directory.filePath(u"var"_s)));

    QStringList kept;
    for (const QFileInfo& entry : directory.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        if (isKeptTopLevelEntry(entry)) {
            kept.append(entry.fileName());
        }
    }
    QCOMPARE(kept, QStringList({u"home"_s, u"lost+found"_s, u"opt"_s, u"root"_s}));

    const QTemporaryDir other;
    QFile home(other.filePath(u"home"_s));
    QVERIFY(home.open(QIODevice::WriteOnly));
    QVERIFY(!isKeptTopLevelEntry(QFileInfo(home)));
}

void TaskPlansTest::keptDesktopEntries()
{
    QVERIFY(isKeptDesktopEntry(u"nox-trash.desktop"_s));
    QVERIFY(isKeptDesktopEntry(u"nox-home.desktop"_s));
    QVERIFY(isKeptDesktopEntry(u"nox-computer.desktop"_s));
    QVERIFY(!isKeptDesktopEntry(u"nox-trash.desktop.desktop"_s));
    QVERIFY(!isKeptDesktopEntry(u"NOX-home.desktop"_s));
}

QTEST_APPLESS_MAIN(TaskPlansTest)

#include "tst_taskplans.moc"
