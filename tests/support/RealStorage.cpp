// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/RealStorage.h"
#include "sandbox/Sandbox.h"
#include "support/PrivateBus.h"
#include "support/RealProgram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <sys/mount.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int exitSkipped = 77;
const QString connectionName = u"real-storage"_s;

constexpr auto service = "org.freedesktop.UDisks2"_L1;

// A property of an object of the daemon; invalid while the object is not listed.
QVariant propertyOf(const QString& object, const QString& interface, const QString& name)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, u"/org/freedesktop/UDisks2/"_s + object, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message.setArguments({service + u'.' + interface, name});
    const QDBusMessage answer = QDBusConnection(connectionName).call(message);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).value<QDBusVariant>().variant()
                                                       : QVariant();
}

bool isListed(const LoopDisk& disk, qsizetype number)
{
    const QString object = u"block_devices/"_s + QFileInfo(disk.partition(number)).fileName();
    const QVariant uuid = propertyOf(object, u"Block"_s, u"IdUUID"_s);
    return uuid.isValid() && uuid.toString() == disk.uuid(number);
}

template <typename Condition>
bool waitFor(Condition condition)
{
    const QDeadlineTimer deadline(20s);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QThread::msleep(20);
    }
    return true;
}

} // namespace

void RealStorage::skipUnlessPossible()
{
    Sandbox::requireInside();
    if (!Sandbox::isPrivileged()) {
        std::printf("SKIP: loop devices can be made by root only\n");
        std::exit(exitSkipped);
    }
}

RealStorage::RealStorage()
{
    Sandbox::requireInside();
    // Replayed device events are written to "/sys", for the disks of this object only.
    if (mount("none", "/sys", nullptr, MS_BIND | MS_REMOUNT, nullptr) != 0) {
        qFatal("cannot make /sys writable in the sandbox");
    }
    m_deviceDaemon = startRealDaemon(u"/lib/systemd/systemd-udevd"_s, {});
    QDBusConnection::connectToBus(PrivateBus::start(), connectionName);
    m_storageDaemon = startRealDaemon(u"/usr/libexec/udisks2/udisksd"_s, {});
    if (!waitFor([] { return propertyOf(u"Manager"_s, u"Manager"_s, u"Version"_s).isValid(); })) {
        qFatal("udisksd does not answer: %s", m_storageDaemon->readAllStandardError().constData());
    }
}

RealStorage::~RealStorage()
{
    if (!close()) {
        QTest::qFail("a loop device of the test is still attached", __FILE__, __LINE__);
    }
    QDBusConnection::disconnectFromBus(connectionName);
}

LoopDisk& RealStorage::addDisk(const QList<LoopPartition>& partitions)
{
    const LoopDisk& disk = *m_disks.emplace_back(std::make_unique<LoopDisk>(partitions));
    runRealProgram(
        u"/usr/bin/udevadm"_s, QStringList{u"trigger"_s, u"--action=change"_s, u"--settle"_s} + disk.systemFolders());
    for (qsizetype number = 1; number <= partitions.size(); ++number) {
        if (!waitFor([&disk, number] { return isListed(disk, number); })) {
            qFatal("udisksd does not list %s", qPrintable(disk.partition(number)));
        }
    }
    return *m_disks.back();
}

bool RealStorage::owns(const QString& node) const
{
    for (const auto& disk : m_disks) {
        if (disk->nodes().contains(node)) {
            return true;
        }
    }
    return false;
}

bool RealStorage::close()
{
    for (QProcess* daemon : {m_storageDaemon, m_deviceDaemon}) {
        daemon->terminate();
        if (!daemon->waitForFinished(5000)) {
            daemon->kill();
            daemon->waitForFinished();
        }
    }
    bool detached = true;
    for (const auto& disk : m_disks) {
        detached = disk->detach() && detached;
    }
    m_disks.clear();
    return detached;
}
