// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/FakeUDisks.h"

#include <QDBusVirtualObject>
#include <QMutex>

/// Makes the types that the fake sends known to the bus.
void registerFakeUDisksTypes();

/// The object tree that FakeUDisks shows on the bus. Its public members may be called from any thread; the bus calls it
/// on the thread that it was moved to.
class FakeUDisksObjects : public QDBusVirtualObject
{
    Q_OBJECT

public:
    using Interfaces = QMap<QString, QVariantMap>;

    void addDrive(const QString& name);
    void addDevice(const FakeUDisks::Device& device);
    void setObjectsAnswer(const QVariant& answer);
    [[nodiscard]] QStringList mountPoints(const QString& device) const;
    [[nodiscard]] QList<FakeUDisks::Call> calls() const;
    void forgetCalls();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    [[nodiscard]] QDBusMessage answer(const QDBusMessage& message);
    [[nodiscard]] QDBusMessage answerMount(const QDBusMessage& message, FakeUDisks::Device& device);
    [[nodiscard]] QDBusMessage answerUnmount(const QDBusMessage& message, FakeUDisks::Device& device);
    [[nodiscard]] QVariant allObjects() const;
    [[nodiscard]] Interfaces interfacesAt(const QString& path) const;
    [[nodiscard]] FakeUDisks::Device* deviceAt(const QString& path);

    mutable QMutex m_mutex;
    QList<FakeUDisks::Device> m_devices;
    QStringList m_drives;
    QList<FakeUDisks::Call> m_calls;
    QVariant m_answer;
};
