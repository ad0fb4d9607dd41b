// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/backupplan.h"

#include "gui/tasks/imagerecord.h"
#include "gui/tasks/taskarguments.h"

using namespace Qt::StringLiterals;

namespace {

Command asRoot(const QStringList& args)
{
    return {u"sudo"_s, args};
}

} // namespace

std::optional<BackupElement> parseBackupElement(const QJsonArray& args)
{
    constexpr qsizetype fewestArguments = 3;
    if (args.size() < fewestArguments) {
        return std::nullopt;
    }
    return BackupElement{
        uuidOfArgument(args[0].toString()), uuidOfArgument(args[1].toString()), args[2].toString(), args[3].toString()};
}

QString targetDirectory(const QString& targetMountPoint, const QString& directory)
{
    return u"%1%2/"_s.arg(targetMountPoint, directory);
}

BackupPlan planImage(const ImageSource& source, const QString& directory, const QString& imageName)
{
    const QString image = directory + imageName;
    // Deliberate: a backslash and an "n", not a line break; the script that writes the file makes it one.
    const QString record = source.record + "\\nVersion="_L1 + ImageRecord::version;
    const QString customFile = u"kim://%1/%2"_s.arg(image, ImageRecord::name);
    return {{asRoot({u"mkdir"_s, u"-p"_s, directory}), asRoot({u"setfacl"_s, u"-m"_s, u"o:rwx"_s, directory}),
                asRoot({u"/lib/kestro-recovery-gui/scripts/write-file"_s, ImageRecord::name, record}),
                asRoot({u"kestro-clone"_s, u"--write-custom-file"_s, customFile, ImageRecord::name})},
        {JobType::Clone, source.device, image}, QString(record).replace("\\n"_L1, "\n"_L1)};
}

BackupPlan planArchive(const DirectorySource& source, const QString& directory)
{
    const QString info = u"%1/datainfo"_s.arg(source.mountPoint);
    // Deliberate: the directory ends in "/" already, and the doubled one stays.
    const QString archive = u"%1/%2.tar"_s.arg(directory, source.name);
    return {{asRoot({u"/lib/kestro-recovery-gui/scripts/create-data-info"_s, source.uuid, source.name, info}),
                asRoot(tarArguments(u"-cpf"_s, archive) + QStringList{u"-C"_s, source.mountPoint, u"datainfo"_s}),
                asRoot({u"rm"_s, info})},
        {JobType::TarAppend, u"%1/%2"_s.arg(source.mountPoint, source.name), archive},
        u"UUID=%1\nDirectory=%2"_s.arg(source.uuid, source.name)};
}
