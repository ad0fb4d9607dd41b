// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/LoopDisk.h"
#include "sandbox/Sandbox.h"
#include "support/RealProgram.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cstring>

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned int loopMajor = 7;
constexpr unsigned int miscMajor = 10;
constexpr unsigned int loopControlMinor = 237;

[[noreturn]] void die(const QString& step)
{
    qFatal("test disk: %s: %s", qPrintable(step), std::strerror(errno));
}

void makeNode(const QString& path, mode_t type, unsigned int major, unsigned int minor)
{
    QFile::remove(path);
    if (mknod(qPrintable(path), type | 0660, makedev(major, minor)) != 0) {
        die(u"making "_s + path);
    }
}

QString systemFolder(const QString& node)
{
    return u"/sys/class/block/"_s + QFileInfo(node).fileName();
}

QString makeImage(const QList<LoopPartition>& partitions)
{
    const QString image = Sandbox::freshFolder() + u"/disk.img"_s;
    int size = 2;
    QStringList script{u"label: gpt"_s};
    for (const LoopPartition& partition : partitions) {
        script << u"size=%1MiB"_s.arg(partition.sizeMiB);
        size += partition.sizeMiB;
    }
    QFile file(image);
    if (!file.open(QIODevice::WriteOnly) || !file.resize(qint64(size) << 20)) {
        die(u"making "_s + image);
    }
    file.close();
    runRealProgram(u"/usr/sbin/sfdisk"_s, {u"--quiet"_s, image}, script.join(u'\n').toUtf8() + '\n');
    return image;
}

void format(const QString& node, const LoopPartition& partition)
{
    if (partition.fileSystem.isEmpty()) {
        return;
    }
    const bool swap = partition.fileSystem == "swap"_L1;
    runRealProgram(
        swap ? u"/usr/sbin/mkswap"_s : u"/usr/sbin/mkfs."_s + partition.fileSystem, {u"-L"_s, partition.label, node});
}

// An unused loop device, set up in one step, so that nobody else's can be met.
int attachToFree(int control, int image, QString* device)
{
    loop_config config = {};
    config.fd = static_cast<unsigned int>(image);
    // Goes by itself with the last user, and its partitions with it.
    config.info.lo_flags = LO_FLAGS_AUTOCLEAR | LO_FLAGS_PARTSCAN;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const int number = ioctl(control, LOOP_CTL_GET_FREE);
        if (number < 0) {
            break;
        }
        *device = u"/dev/loop%1"_s.arg(number);
        makeNode(*device, S_IFBLK, loopMajor, static_cast<unsigned int>(number));
        const int descriptor = open(qPrintable(*device), O_RDWR | O_CLOEXEC);
        if (descriptor >= 0 && ioctl(descriptor, LOOP_CONFIGURE, &config) == 0) {
            return descriptor;
        }
        close(descriptor);
        QFile::remove(*device);
    }
    return -1;
}

} // namespace

LoopDisk::LoopDisk(const QList<LoopPartition>& partitions)
    : m_partitions(partitions.size())
{
    Sandbox::requireInside();
    attach(makeImage(partitions));
    // Adds what a kernel without partition tables of this kind has not found by itself.
    runRealProgram(u"/usr/bin/partx"_s, {u"--update"_s, m_device});
    makeNodes();
    for (qsizetype i = 0; i < partitions.size(); ++i) {
        format(partition(i + 1), partitions[i]);
    }
}

LoopDisk::~LoopDisk()
{
    detach();
}

QString LoopDisk::partition(qsizetype number) const
{
    return m_device + u'p' + QString::number(number);
}

QString LoopDisk::uuid(qsizetype number) const
{
    const QStringList args{u"-p"_s, u"-o"_s, u"value"_s, u"-s"_s, u"UUID"_s, partition(number)};
    return QString::fromUtf8(realProgramOutput(u"/usr/sbin/blkid"_s, args)).trimmed();
}

QStringList LoopDisk::nodes() const
{
    QStringList nodes{m_device};
    for (qsizetype number = 1; number <= m_partitions; ++number) {
        nodes << partition(number);
    }
    return nodes;
}

QStringList LoopDisk::systemFolders() const
{
    QStringList folders;
    for (const QString& node : nodes()) {
        folders << systemFolder(node);
    }
    return folders;
}

bool LoopDisk::detach()
{
    if (m_descriptor < 0) {
        return true;
    }
    for (const QString& node : nodes()) {
        const QStringList mounts = QString::fromUtf8(Sandbox::readFile(u"/proc/self/mounts"_s)).split(u'\n');
        for (const QString& line : mounts.filter(node + u' ')) {
            umount2(line.section(u' ', 1, 1).replace("\\040"_L1, " "_L1).toUtf8().constData(), MNT_DETACH);
        }
    }
    close(m_descriptor);
    m_descriptor = -1;
    QElapsedTimer timer;
    timer.start();
    const QString attached = systemFolder(m_device) + u"/loop/backing_file"_s;
    while (QFile::exists(attached) && timer.elapsed() < 10000) {
        QThread::msleep(20);
    }
    return !QFile::exists(attached);
}

void LoopDisk::attach(const QString& image)
{
    makeNode(u"/dev/loop-control"_s, S_IFCHR, miscMajor, loopControlMinor);
    const int control = open("/dev/loop-control", O_RDWR | O_CLOEXEC);
    const int file = open(qPrintable(image), O_RDWR | O_CLOEXEC);
    m_descriptor = control < 0 || file < 0 ? -1 : attachToFree(control, file, &m_device);
    if (m_descriptor < 0) {
        die(u"attaching "_s + image);
    }
    close(file);
    close(control);
}

void LoopDisk::makeNodes()
{
    for (qsizetype number = 1; number <= m_partitions; ++number) {
        const QByteArray device = Sandbox::readFile(systemFolder(partition(number)) + u"/dev"_s).trimmed();
        const QList<QByteArray> numbers = device.split(':');
        if (numbers.size() != 2) {
            die(u"looking for "_s + partition(number));
        }
        makeNode(partition(number), S_IFBLK, numbers[0].toUInt(), numbers[1].toUInt());
    }
}
