// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/BackupToRestore.h"

#include "gui/tasks/ManualRestoreTask.h"
#include "gui/tasks/TaskRun.h"
#include "sandbox/Sandbox.h"

#include <QDir>
#include <QProcess>

using namespace Qt::StringLiterals;

QString BackupToRestore::directory()
{
    return u"/media/TARGET/b"_s;
}

BackupToRestore::BackupToRestore(const QStringList& images)
{
    machine.allowFileCommands();
    machine.programs.reply({u"mkswap"_s});
    machine.programs.reply({u"kestro-clone"_s, u"--tui"_s});
    machine.programs.reply({u"kestro-clone"_s, u"--kim-info"_s}, "image of 3 blocks\n");
    machine.programs.reply({u"kestro-clone"_s, u"--verify"_s});
    QDir().mkpath(directory());
    for (const QString& image : images) {
        Sandbox::writeFile(directory() + u'/' + image, "image");
    }
}

void BackupToRestore::readsRecord(const FakePrograms::Reply& reply)
{
    machine.programs.reply({u"kestro-clone"_s, u"--read-custom-file"_s}, reply);
}

void BackupToRestore::addArchive(const QString& name, const QByteArray& description, const QStringList& options)
{
    const QString source = Sandbox::freshFolder();
    Sandbox::writeFile(source + u"/datainfo"_s, description);
    Sandbox::writeFile(source + u"/opt/file"_s, "restored");
    Sandbox::writeFile(source + u"/var/file"_s, "restored");
    const QStringList members{u"datainfo"_s, u"opt"_s, u"var"_s};
    const QStringList arguments{u"tar"_s, u"-cf"_s, directory() + u'/' + name, u"-C"_s, source};
    QCOMPARE(QProcess::execute(u"sudo"_s, arguments + options + members), 0);
    machine.programs.forgetCalls();
}

QString BackupToRestore::outcome(const QStringList& directories)
{
    QJsonArray tasks;
    for (const QString& path : directories) {
        tasks.append(taskElement(u"restore-partitions"_s, {u"UUID:TARGET"_s, path, u"ROOT"_s}));
    }
    return TaskRun<ManualRestoreTask>(tasks).outcome();
}

QStringList BackupToRestore::changes() const
{
    return machine.callsOf({u"chattr"_s, u"rm"_s, u"mkswap"_s});
}
