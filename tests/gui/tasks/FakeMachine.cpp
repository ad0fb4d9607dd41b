// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/FakeMachine.h"

#include "sandbox/Sandbox.h"

#include <QDir>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString scripts = u"/lib/kestro-recovery-gui/scripts/"_s;

struct DeviceRow
{
    QLatin1StringView name;
    QLatin1StringView uuid;
    QLatin1StringView type;
    QLatin1StringView drive;
    QLatin1StringView table;
};

constexpr std::array devices{
    DeviceRow{"sda"_L1, {}, {}, "DISK_A"_L1, {}},
    DeviceRow{"sda1"_L1, "EFI"_L1, "vfat"_L1, "DISK_A"_L1, "sda"_L1},
    DeviceRow{"sda2"_L1, "BOOT"_L1, "ext4"_L1, "DISK_A"_L1, "sda"_L1},
    DeviceRow{"sda3"_L1, "ROOT"_L1, "ext4"_L1, "DISK_A"_L1, "sda"_L1},
    DeviceRow{"sda4"_L1, "RECOVERY"_L1, "ext4"_L1, "DISK_A"_L1, "sda"_L1},
    DeviceRow{"sda5"_L1, "DATA"_L1, "ext4"_L1, "DISK_A"_L1, "sda"_L1},
    DeviceRow{"sda6"_L1, "SWAP"_L1, "swap"_L1, "DISK_A"_L1, "sda"_L1},
    DeviceRow{"sdb"_L1, {}, {}, "DISK_B"_L1, {}},
    DeviceRow{"sdb1"_L1, "TARGET"_L1, "ext4"_L1, "DISK_B"_L1, "sdb"_L1},
    DeviceRow{"sdc"_L1, {}, {}, "DISK_C"_L1, {}},
};

/// The product runs without root's rights. Looking at an image is the one call that needs none of them.
void keepRightsOfRoot(FakePrograms& programs)
{
    for (const QString& program : {u"blkid"_s, u"chattr"_s, u"cp"_s, u"find"_s, u"fsck"_s, u"mkdir"_s, u"mkswap"_s,
             u"poweroff"_s, u"reboot"_s, u"rm"_s, u"sed"_s, u"setfacl"_s, u"tar"_s}) {
        programs.needsRoot({program});
    }
    for (const QString& option : {u"--tui"_s, u"--verify"_s, u"--read-custom-file"_s, u"--write-custom-file"_s}) {
        programs.needsRoot({u"kestro-clone"_s, option});
    }
}

/// What the product looks for in the running system's own folders, which are not among the sandbox's private ones.
void emptyRunningSystem()
{
    Sandbox::requireInside();
    for (const QString& path : {u"/backup"_s, u"/etc/kestro"_s, u"/usr/lib/kestro"_s}) {
        if (!QDir(path).removeRecursively()) {
            qFatal("cannot remove %s", qPrintable(path));
        }
    }
}

void writeInstalledSystem()
{
    Sandbox::setKernelCommandLine("BOOT_IMAGE=/boot/vmlinuz root=UUID=ROOT quiet\n");
    Sandbox::writeFile(u"/media/ROOT/etc/fstab"_s,
        "# made by the installer\n"
        "UUID=ROOT / ext4 defaults 0 1\n"
        "UUID=BOOT /boot ext4 defaults 0 2\n"
        "UUID=EFI /boot/efi vfat umask=0077 0 1\n"
        "UUID=OLD-SWAP none swap sw 0 0\n");
    Sandbox::writeFile(u"/media/ROOT/etc/os-version"_s, "[Version]\nMinorVersion=1030\n");
    Sandbox::writeFile(u"/media/ROOT/etc/kestro/system-recovery.conf"_s, "UUID=RECOVERY\n");
    Sandbox::writeFile(u"/media/ROOT/etc/default/locale"_s, "LANG=en_US.UTF-8\nLANGUAGE=en_US\n");
    Sandbox::writeFile(u"/media/ROOT/usr/lib/kestro/desktop-version"_s, "[Release]\nType=Professional\n");
    Sandbox::writeFile(u"/media/RECOVERY/backup/_nox_data.info"_s, " DATA\n");
    for (const QString& name : {u"EFI"_s, u"BOOT"_s, u"DATA"_s, u"TARGET"_s}) {
        QDir().mkpath(u"/media/"_s + name);
    }
}

} // namespace

FakeMachine::FakeMachine()
    : m_formerDirectory(QDir::currentPath())
{
    Sandbox::reset();
    emptyRunningSystem();
    for (const QString& drive : {u"DISK_A"_s, u"DISK_B"_s, u"DISK_C"_s}) {
        udisks.addDrive(drive);
    }
    for (const DeviceRow& row : devices) {
        udisks.addDevice(device(row.name));
    }
    writeInstalledSystem();
    keepRightsOfRoot(programs);
    for (const QString& script : {u"resetEFI"_s, u"reset-grub"_s}) {
        programs.reply({scripts + script});
    }
    programs.reply({scripts + u"write-file"_s}, {.snippet = R"(printf '%b' "$2" >"$1")"});
    programs.reply(
        {scripts + u"create-data-info"_s}, {.snippet = R"(printf 'UUID=%s\nDirectory=%s\n' "$1" "$2" >"$3")"});
    QDir::setCurrent(m_workingDirectory.path());
}

FakeMachine::~FakeMachine()
{
    QDir::setCurrent(m_formerDirectory);
}

FakeUDisks::Device FakeMachine::device(const QString& name)
{
    const auto* const row = std::ranges::find(devices, name, &DeviceRow::name);
    FakeUDisks::Device device;
    device.name = name;
    device.idUUID = row->uuid;
    device.idType = row->type;
    device.drive = row->drive;
    device.table = row->table;
    device.filesystem = !row->type.isEmpty() && row->type != "swap"_L1;
    if (device.filesystem) {
        device.mountDirectory = u"/media/"_s + row->uuid;
    }
    return device;
}

void FakeMachine::refuseMount(const QString& name)
{
    FakeUDisks::Device refusing = device(name);
    refusing.mountError = u"wrong fs type, bad superblock"_s;
    udisks.addDevice(refusing);
}

void FakeMachine::allowFileCommands()
{
    for (const QString& program : {u"cp"_s, u"rm"_s, u"sed"_s, u"tar"_s, u"mkdir"_s}) {
        programs.passThrough({program});
    }
    programs.reply({u"chattr"_s});
    programs.reply({u"setfacl"_s});
}

void FakeMachine::allowImages()
{
    // Beside the image it is not lost when the image is written.
    programs.reply(
        {u"kestro-clone"_s, u"--write-custom-file"_s}, {.snippet = R"(f=${2#kim://}; cp "$3" "${f%/*}.info")"});
    programs.reply(
        {u"kestro-clone"_s, u"--read-custom-file"_s}, {.snippet = R"(f=${2#kim://}; cp "${f%/*}.info" "$3")"});
    programs.reply({u"kestro-clone"_s, u"--tui"_s}, {.snippet = R"([ -b "$3" ] || printf image >"$3")"});
    programs.reply({u"kestro-clone"_s, u"--kim-info"_s});
    programs.reply({u"kestro-clone"_s, u"--verify"_s});
}

QStringList FakeMachine::callsOf(const QStringList& programNames) const
{
    QStringList lines;
    for (QStringList call : programs.calls()) {
        if (call.value(0) == "sudo"_L1) {
            call.removeFirst();
        }
        call[0].remove(scripts);
        if (programNames.contains(call.constFirst())) {
            lines.append(call.join(u' ').remove(u" --xattrs --xattrs-include=*"_s));
        }
    }
    return lines;
}

QStringList FakeMachine::jobs() const
{
    return callsOf({u"kestro-clone"_s}).filter(u"--tui"_s).replaceInStrings(u"kestro-clone --tui "_s, QString());
}

QJsonObject taskElement(const QString& command, const QStringList& args)
{
    return {{u"command"_s, command}, {u"args"_s, QJsonArray::fromStringList(args)}};
}
