// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/FakeMachine.h"
#include "gui/tasks/SystemRestoreTask.h"
#include "gui/tasks/TaskRun.h"
#include "sandbox/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <array>
#include <filesystem>

#include <sys/mount.h>

using namespace Qt::StringLiterals;

namespace {

/// A machine with initial images and, on the data partition, the files of two people.
struct Reset
{
    Reset()
    {
        machine.allowFileCommands();
        machine.allowImages();
        machine.programs.reply({u"kestro-clone"_s, u"--tui"_s});
        addImage(u"system"_s, "ROOT\n");
        for (const QString& path : files()) {
            Sandbox::writeFile(data + path, path.toUtf8());
        }
        Sandbox::writeFile(u"/media/ROOT/opt/new"_s, "from the image");
        Sandbox::writeFile(u"/media/ROOT/var/new"_s, "from the image");
        QFile::link(u"/nowhere"_s, data + u"/home/alice/dangling"_s);
        QFile::link(u"/nowhere"_s, data + u"/home/dangling"_s);
        QFile::link(u"/nowhere"_s, data + u"/dangling"_s);
    }

    static void addImage(const QString& name, const QByteArray& info)
    {
        const QString base = u"/media/RECOVERY/backup/"_s + name;
        Sandbox::writeFile(base + u".kim"_s, "image");
        if (!info.isNull()) {
            Sandbox::writeFile(base + u".info"_s, info);
        }
    }

    static QStringList files()
    {
        return {u"/home/alice/Desktop/nox-trash.desktop"_s, u"/home/alice/Desktop/game.desktop"_s,
            u"/home/alice/Desktop/note.txt"_s, u"/home/alice/.hidden"_s, u"/home/bob/letter with\nbreak.txt"_s,
            u"/home/.stray"_s, u"/opt/app"_s, u"/var/state"_s, u"/root/kept"_s, u"/lost+found/kept"_s,
            u"/photos/1.jpg"_s, u"/.trash/x"_s};
    }

    [[nodiscard]] QStringList left() const
    {
        QStringList paths;
        for (const QString& path : files()) {
            if (QFile::exists(data + path)) {
                paths.append(path);
            }
        }
        return paths;
    }

    [[nodiscard]] QString outcome(bool wipe)
    {
        const QJsonArray tasks =
            wipe ? QJsonArray{taskElement(u"refresh-data-partition"_s)} : QJsonArray{taskElement(u"other"_s)};
        return TaskRun<SystemRestoreTask>(tasks).outcome();
    }

    FakeMachine machine;
    const QString data = u"/media/DATA"_s;
};

} // namespace

class SystemRestoreTaskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void imageList_data();
    void imageList();
    void badImage_data();
    void badImage();
    void unmountableRecoveryPartition();
    void keepFiles();
    void desktopLinksLeadNowhere();
    void fullReset();
    void homeThatIsAFile();
    void dataOnTheRootPartition();
    void dataPartitionNotThere_data();
    void dataPartitionNotThere();
    void unknownRootPartition();
    void namesThatNoCommandTakes();
    void sameNumberAsWhatStays();
    void homeThatIsALink();
    void imageWithoutOptAndVar();
    void stubbornEntries();
    void orderOfCompletion();
    void copyFails();
};

void SystemRestoreTaskTest::imageList_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("info");
    QTest::addColumn<QStringList>("jobs");
    const QString backup = u"/media/RECOVERY/backup/"_s;
    const QString system = backup + u"system.kim /dev/sda3"_s;
    QTest::newRow("two images") << u"Boot"_s << "BOOT"_ba << QStringList{backup + u"Boot.kim /dev/sda2"_s, system};
    QTest::newRow("info missing") << u"boot"_s << QByteArray() << QStringList{system};
    QTest::newRow("info empty") << u"boot"_s << ""_ba << QStringList{system};
    QTest::newRow("partition not here") << u"boot"_s << "GONE"_ba << QStringList{system};
    QTest::newRow("none for a partition here") << u"system"_s << "GONE"_ba << QStringList();
}

void SystemRestoreTaskTest::imageList()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, info);
    Reset reset;
    Reset::addImage(name, info);
    const QString outcome = reset.outcome(true);
    QTEST(reset.machine.jobs(), "jobs");
    const bool isRestored = !reset.machine.jobs().isEmpty();
    QCOMPARE(outcome, isRestored ? u"finished"_s : u"Failed to initialize the task"_s);
    // Without an image there is nothing to restore, and so nothing is wiped.
    QCOMPARE(reset.left() == Reset::files(), !isRestored);
}

void SystemRestoreTaskTest::badImage_data()
{
    QTest::addColumn<QString>("check");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("no image") << u"--kim-info"_s << 0;
    QTest::newRow("a bit flipped") << u"--verify"_s << 4;
}

void SystemRestoreTaskTest::badImage()
{
    QFETCH(const QString, check);
    QFETCH(const int, exitCode);
    Reset reset;
    Reset::addImage(u"boot"_s, "BOOT");
    reset.machine.programs.reply({u"kestro-clone"_s, check, u"/media/RECOVERY/backup/system.kim"_s},
        {.err = "invalid file\n", .exitCode = exitCode});
    QCOMPARE(reset.outcome(true), u"There is something wrong with your initial backup file"_s);
    QCOMPARE(reset.machine.jobs(), QStringList());
    QCOMPARE(reset.left(), Reset::files());
}

void SystemRestoreTaskTest::unmountableRecoveryPartition()
{
    Reset reset;
    reset.machine.refuseMount(u"sda4"_s);
    Sandbox::writeFile(u"/backup/system.kim"_s, "image");
    const SystemRestoreTask task(true);
    QTRY_VERIFY(reset.machine.log.find(u"recoveryMountPoint is empty"_s).line > 0);
    QVERIFY(!task.isStarted());
    QVERIFY(!task.isFailed());
    QCOMPARE(reset.machine.programs.callLines(), QStringList());
}

void SystemRestoreTaskTest::keepFiles()
{
    Reset reset;
    QCOMPARE(reset.outcome(false), u"finished"_s);
    QStringList expected = Reset::files();
    for (const QString& gone : {u"/home/alice/Desktop/game.desktop"_s, u"/opt/app"_s, u"/var/state"_s}) {
        expected.removeOne(gone);
    }
    QCOMPARE(reset.left(), expected);
    QCOMPARE(reset.machine.callsOf({u"rm"_s}).constFirst(), u"rm -f /media/DATA/home/alice/Desktop/game.desktop"_s);
    QVERIFY(QFileInfo(u"/media/DATA/home/alice/dangling"_s).isSymLink());
    QVERIFY(reset.machine.log.find(u"Deleted desktop file"_s).line > 0);
    QVERIFY(reset.machine.log.find(u"\"/media/DATA/home/bob/Desktop/\" don't exists!"_s).line > 0);
}

void SystemRestoreTaskTest::desktopLinksLeadNowhere()
{
    Reset reset;
    Sandbox::writeFile(u"/media/ROOT/usr/share/applications/tool.desktop"_s, "x");
    QFile::link(u"/media/ROOT/usr/share/applications"_s, u"/media/DATA/home/bob/Desktop"_s);
    QCOMPARE(reset.outcome(false), u"finished"_s);
    QVERIFY(QFile::exists(u"/media/ROOT/usr/share/applications/tool.desktop"_s));
}

void SystemRestoreTaskTest::fullReset()
{
    Reset reset;
    QCOMPARE(TaskRun<SystemRestoreTask>(true).outcome(), u"finished"_s);
    QCOMPARE(reset.left(), (QStringList{u"/root/kept"_s, u"/lost+found/kept"_s}));
    const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    QCOMPARE(QDir(reset.data).entryList(everything),
        (QStringList{u"home"_s, u"lost+found"_s, u"opt"_s, u"root"_s, u"var"_s}));
    QCOMPARE(QDir(reset.data + u"/home"_s).entryList(everything), QStringList());
    QVERIFY(QFile::exists(u"/media/DATA/opt/new"_s) && QFile::exists(u"/media/DATA/var/new"_s));
    QVERIFY(!QFile::exists(u"/media/ROOT/opt"_s) && !QFile::exists(u"/media/ROOT/var"_s));
}

void SystemRestoreTaskTest::homeThatIsAFile()
{
    Reset reset;
    QDir(u"/media/DATA/home"_s).removeRecursively();
    Sandbox::writeFile(u"/media/DATA/home"_s, "a file");
    QCOMPARE(reset.outcome(true), u"finished"_s);
    QVERIFY(!QFile::exists(u"/media/DATA/home"_s));
}

void SystemRestoreTaskTest::namesThatNoCommandTakes()
{
    // One cannot even be named in a QString, and sudo's rule refuses the others; but they are a person's files all the
    // same.
    Reset reset;
    reset.machine.programs.reply({u"find"_s}, {.snippet = R"(find "$@")"}); // with the real rm
    const std::array<std::filesystem::path, 3> names{"latin1-\xe9", "photos -2020", " lead"};
    const std::array<std::filesystem::path, 2> directories{"/media/DATA/home", "/media/DATA"};
    for (const auto& directory : directories) {
        for (const auto& name : names) {
            QVERIFY(std::filesystem::create_directories(directory / name / "below"));
            const QString path = QFile::decodeName((directory / name).c_str());
            reset.machine.programs.reply({u"rm"_s, u"-rf"_s, path}, {.exitCode = 1});
            reset.machine.programs.reply({u"chattr"_s, u"-i"_s, u"-R"_s, path}, {.exitCode = 1});
        }
    }
    QCOMPARE(reset.outcome(true), u"finished"_s);
    for (const auto& directory : directories) {
        for (const auto& name : names) {
            QVERIFY(!std::filesystem::exists(directory / name));
        }
    }
    QCOMPARE(reset.left(), (QStringList{u"/root/kept"_s, u"/lost+found/kept"_s}));
}

void SystemRestoreTaskTest::sameNumberAsWhatStays()
{
    // The roots of two mounts, like those of two subvolumes, have the same inode number.
    Reset reset;
    reset.machine.programs.reply({u"find"_s}, {.snippet = R"(find "$@")"});
    const QString stubborn = u"/media/DATA/ lead"_s;
    QVERIFY(QDir().mkpath(stubborn));
    for (const char* path : {"/media/DATA/root", "/media/DATA/ lead"}) {
        QCOMPARE(::mount("none", path, "tmpfs", 0, nullptr), 0);
    }
    Sandbox::writeFile(u"/media/DATA/root/kept"_s, "of the administrator");
    reset.machine.programs.reply({u"rm"_s, u"-rf"_s, stubborn}, {.exitCode = 1});
    const QString outcome = reset.outcome(true);
    const bool isKept = QFile::exists(u"/media/DATA/root/kept"_s);
    for (const char* path : {"/media/DATA/root", "/media/DATA/ lead"}) {
        ::umount2(path, MNT_DETACH);
    }
    QCOMPARE(outcome, u"finished"_s);
    QVERIFY(isKept);
}

void SystemRestoreTaskTest::homeThatIsALink()
{
    Reset reset;
    Sandbox::writeFile(u"/media/ROOT/home/alice/Desktop/game.desktop"_s, "of the other partition");
    QVERIFY(QDir(u"/media/DATA/home"_s).removeRecursively());
    QVERIFY(QFile::link(u"/media/ROOT/home"_s, u"/media/DATA/home"_s));
    QCOMPARE(reset.outcome(false), u"finished"_s);
    QVERIFY(QFile::exists(u"/media/ROOT/home/alice/Desktop/game.desktop"_s));
    QCOMPARE(reset.outcome(true), u"finished"_s);
    QVERIFY(QFile::exists(u"/media/ROOT/home/alice/Desktop/game.desktop"_s));
}

void SystemRestoreTaskTest::imageWithoutOptAndVar()
{
    // The last image by name need not be the system's.
    Reset reset;
    QVERIFY(QDir(u"/media/ROOT/opt"_s).removeRecursively() && QDir(u"/media/ROOT/var"_s).removeRecursively());
    QCOMPARE(reset.outcome(false), u"finished"_s);
    QVERIFY(reset.left().contains(u"/opt/app"_s) && reset.left().contains(u"/var/state"_s));
}

void SystemRestoreTaskTest::dataOnTheRootPartition()
{
    Reset reset;
    Sandbox::writeFile(u"/media/RECOVERY/backup/_nox_data.info"_s, "ROOT");
    Sandbox::writeFile(u"/media/ROOT/home/alice/x"_s, "x");
    QCOMPARE(reset.outcome(true), u"finished"_s);
    QVERIFY(!QFile::exists(u"/media/ROOT/home/alice"_s));
    QVERIFY(QFile::exists(u"/media/ROOT/etc/fstab"_s));
    QVERIFY(QFile::exists(u"/media/ROOT/opt/new"_s));
    QCOMPARE(reset.machine.callsOf({u"cp"_s, u"chattr"_s}), QStringList());
    QCOMPARE(reset.left(), Reset::files());
}

void SystemRestoreTaskTest::dataPartitionNotThere_data()
{
    QTest::addColumn<QByteArray>("uuid");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown") << ""_ba << u"can not found data parttition!"_s;
    QTest::newRow("cannot be mounted") << "GONE"_ba << u"can not found data mount point!"_s;
}

void SystemRestoreTaskTest::dataPartitionNotThere()
{
    QFETCH(const QByteArray, uuid);
    QFETCH(const QString, message);
    Reset reset;
    Sandbox::writeFile(u"/media/RECOVERY/backup/_nox_data.info"_s, uuid);
    QCOMPARE(reset.outcome(true), u"finished"_s);
    QCOMPARE(reset.left(), Reset::files());
    // Deliberate: misspelled.
    QVERIFY(reset.machine.log.find(message).line > 0);
    QVERIFY(reset.machine.log.find(u"system or data uuid is empty!"_s).line > 0);
}

void SystemRestoreTaskTest::unknownRootPartition()
{
    // Nobody knows whether the data partition is the root partition: only the homes may go.
    Reset reset;
    Sandbox::setKernelCommandLine("quiet\n");
    Sandbox::writeFile(u"/etc/kestro/system-recovery.conf"_s, "UUID=RECOVERY\n");
    QCOMPARE(reset.outcome(true), u"finished"_s);
    QVERIFY(!QFile::exists(u"/media/DATA/home/alice"_s));
    QVERIFY(QFile::exists(u"/media/DATA/photos/1.jpg"_s) && QFile::exists(u"/media/DATA/opt/app"_s));
}

void SystemRestoreTaskTest::stubbornEntries()
{
    Reset reset;
    for (const QString& path : {u"/media/DATA/home/bob"_s, u"/media/DATA/photos"_s}) {
        reset.machine.programs.reply({u"rm"_s, u"-rf"_s, path}, {.err = "immutable", .exitCode = 1});
        reset.machine.programs.reply({u"rm"_s, u"-rf"_s, path}, {.snippet = R"(rm -rf "$2")"});
    }
    QCOMPARE(reset.outcome(true), u"finished"_s);
    QVERIFY(!QFile::exists(u"/media/DATA/home/bob"_s) && !QFile::exists(u"/media/DATA/photos"_s));
    QCOMPARE(reset.machine.callsOf({u"chattr"_s}).mid(0, 2),
        (QStringList{u"chattr -i -R /media/DATA/home/bob"_s, u"chattr -i -R /media/DATA/photos"_s}));
    const LogCapture& log = reset.machine.log;
    QVERIFY(log.find(u"failed to rm dirPath =  \"/media/DATA/home/bob\" , err =  \"immutable\""_s).line > 0);
    QVERIFY(log.find(u"failed to rm filePath =  \"/media/DATA/photos\" , err =  \"\""_s).line > 0);
}

void SystemRestoreTaskTest::orderOfCompletion()
{
    Reset reset;
    QDir(u"/media/DATA/home"_s).removeRecursively();
    QCOMPARE(reset.outcome(false), u"finished"_s);
    const QStringList clear{
        u"chattr -R -i %1/opt/"_s, u"chattr -R -i %1/var/"_s, u"rm -rf %1/opt/"_s, u"rm -rf %1/var/"_s};
    QStringList expected = QStringList(clear).replaceInStrings(u"%1"_s, u"/media/DATA"_s);
    expected += {u"cp -a /media/ROOT/var /media/DATA/"_s, u"cp -a /media/ROOT/opt /media/DATA/"_s};
    expected += QStringList(clear).replaceInStrings(u"%1"_s, u"/media/ROOT"_s);
    expected += u"resetEFI /dev/sda2 legacy /dev/sda"_s;
    QCOMPARE(reset.machine.callsOf({u"chattr"_s, u"rm"_s, u"cp"_s, u"resetEFI"_s}), expected);
    QVERIFY(reset.machine.log.find(u"Remove desktop file: don't found home dir!"_s).line > 0);
    // Deliberate: without a home directory the data partition stays mounted.
    QVERIFY(!reset.machine.udisks.callLines().contains(u"Unmount sda5"_s));
}

void SystemRestoreTaskTest::copyFails()
{
    Reset reset;
    reset.machine.programs.reply({u"cp"_s, u"-a"_s, u"/media/ROOT/opt"_s}, {.exitCode = 1});
    QCOMPARE(reset.outcome(true), u"finished"_s);
    // The only copy must not be deleted.
    QVERIFY(QFile::exists(u"/media/ROOT/opt/new"_s));
}

int main(int argc, char** argv)
{
    return Sandbox::run<SystemRestoreTaskTest>(argc, argv);
}

#include "tst_systemrestoretask.moc"
