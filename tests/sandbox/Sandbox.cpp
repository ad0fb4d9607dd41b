// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "sandbox/SandboxRoot.h"
#include "support/files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Sandbox {

namespace {

constexpr int exitSkipped = 77;

// What would lead a test out of the sandbox again, or to folders that are not there.
void forgetHostEnvironment()
{
    for (const char* name : {"TMPDIR", "XDG_RUNTIME_DIR", "DBUS_SYSTEM_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"}) {
        unsetenv(name);
    }
}

void emptyFolder(const QString& path)
{
    const QDir folder(path);
    for (const QFileInfo& entry :
        folder.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        // The project's own folder may lie here, read-only: what cannot be removed stays.
        if (entry.isDir() && !entry.isSymLink()) {
            QDir(entry.filePath()).removeRecursively();
        } else {
            QFile::remove(entry.filePath());
        }
    }
}

} // namespace

void enter(char** argv)
{
    if (isInside()) {
        forgetHostEnvironment();
        reset();
        return;
    }
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    if (!SandboxRoot::unshareMounts()) {
        std::printf("SKIP: this host allows no mount namespace, neither as root nor with a user namespace\n");
        std::exit(exitSkipped);
    }
    SandboxRoot::build({KESTRO_SOURCE_DIR, program.parent_path()});
    execv(program.c_str(), argv);
    std::perror("sandbox: executing the test again");
    std::_Exit(EXIT_FAILURE);
}

bool isInside()
{
    struct statfs root = {};
    return statfs("/", &root) == 0 && (root.f_type == OVERLAYFS_SUPER_MAGIC || root.f_type == TMPFS_MAGIC)
        && QFile::exists(QLatin1StringView(SandboxRoot::ownFolder));
}

bool isPrivileged()
{
    return geteuid() == 0 && SandboxRoot::ownsInitialUserNamespace();
}

void requireInside()
{
    if (!isInside()) {
        qFatal("refused: this may only happen inside the sandbox");
    }
}

void reset()
{
    requireInside();
    for (const char* folder : SandboxRoot::privateFolders) {
        if (qstrcmp(folder, "/tmp") != 0) {
            emptyFolder(QLatin1StringView(folder));
        }
    }
    emptyFolder(u"/dev/mapper"_s);
    emptyFolder(u"/dev/disk/by-uuid"_s);
    setKernelCommandLine("quiet\n");
    setSwaps("Filename\t\t\t\tType\t\tSize\t\tUsed\t\tPriority\n");
}

QString freshFolder()
{
    requireInside();
    QTemporaryDir folder(u"/tmp/test-XXXXXX"_s);
    folder.setAutoRemove(false);
    return folder.path();
}

void writeFile(const QString& path, const QByteArray& content)
{
    requireInside();
    writeWholeFile(path, content);
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void setKernelCommandLine(const QByteArray& content)
{
    writeFile(u"/proc/cmdline"_s, content);
}

void setSwaps(const QByteArray& content)
{
    writeFile(u"/proc/swaps"_s, content);
}

void setUefi(bool uefi)
{
    requireInside();
    const QDir firmware(u"/sys/firmware"_s);
    if (!(uefi ? firmware.mkpath(u"efi"_s) : QDir(firmware.filePath(u"efi"_s)).removeRecursively())) {
        qFatal("cannot change /sys/firmware/efi");
    }
}

} // namespace Sandbox
