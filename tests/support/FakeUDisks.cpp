// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FakeUDisks.h"
#include "support/FakeUDisksObjects.h"
#include "support/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusError>

using namespace Qt::StringLiterals;

namespace {

const QString connectionName = u"fake-udisks"_s;

} // namespace

FakeUDisks::FakeUDisks()
    : m_objects(std::make_unique<FakeUDisksObjects>())
{
    registerFakeUDisksTypes();
    QDBusConnection bus = QDBusConnection::connectToBus(PrivateBus::start(), connectionName);
    // Registered first: the bus gives the object children, which must move with it.
    const bool registered =
        bus.registerVirtualObject(u"/org/freedesktop/UDisks2"_s, m_objects.get(), QDBusConnection::SubPath);
    m_objects->moveToThread(&m_thread);
    m_thread.start();
    if (!registered || !bus.registerService(u"org.freedesktop.UDisks2"_s)) {
        qFatal("the fake UDisks2 cannot come onto the bus: %s", qPrintable(bus.lastError().message()));
    }
}

FakeUDisks::~FakeUDisks()
{
    QDBusConnection bus(connectionName);
    bus.unregisterService(u"org.freedesktop.UDisks2"_s);
    bus.unregisterObject(u"/org/freedesktop/UDisks2"_s, QDBusConnection::UnregisterTree);
    m_thread.quit();
    m_thread.wait();
    // Takes the lock under which that thread worked: the thread sanitizer does not see every wait().
    m_objects->forgetCalls();
    QDBusConnection::disconnectFromBus(connectionName);
}

QString FakeUDisks::objectPath(const QString& device)
{
    return u"/org/freedesktop/UDisks2/block_devices/"_s + device;
}

QString FakeUDisks::drivePath(const QString& drive)
{
    return u"/org/freedesktop/UDisks2/drives/"_s + drive;
}

FakeUDisks::Device FakeUDisks::partition(const QString& name, const QString& uuid, const QString& mountDirectory)
{
    const QString idType = uuid.isEmpty() ? QString() : u"ext4"_s;
    return {.name = name, .idUUID = uuid, .idType = idType, .mountDirectory = mountDirectory};
}

void FakeUDisks::addDrive(const QString& name)
{
    m_objects->addDrive(name);
}

void FakeUDisks::addDevice(const Device& device)
{
    m_objects->addDevice(device);
}

void FakeUDisks::setObjectsAnswer(const QVariant& answer)
{
    m_objects->setObjectsAnswer(answer);
}

QStringList FakeUDisks::mountPoints(const QString& device) const
{
    return m_objects->mountPoints(device);
}

QList<FakeUDisks::Call> FakeUDisks::calls() const
{
    return m_objects->calls();
}

QStringList FakeUDisks::callLines() const
{
    QStringList lines;
    for (const Call& call : calls()) {
        QStringList words{call.method, call.device};
        for (auto option = call.options.begin(); option != call.options.end(); ++option) {
            words << option.key() + u'=' + option->toString();
        }
        words.removeAll(QString());
        lines << words.join(u' ');
    }
    return lines;
}

QStringList FakeUDisks::mountCalls() const
{
    return callLines().filter(u"ount "_s);
}

void FakeUDisks::forgetCalls()
{
    m_objects->forgetCalls();
}
