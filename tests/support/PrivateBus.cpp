// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/PrivateBus.h"
#include "sandbox/Sandbox.h"
#include "support/RealProgram.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace PrivateBus {

namespace {

constexpr const char* configuration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:tmpdir=/tmp</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_type="*" send_destination="*"/>
    <allow receive_type="*"/>
  </policy>
</busconfig>
)";

QString startDaemon()
{
    const QString file = Sandbox::freshFolder() + u"/bus.conf"_s;
    Sandbox::writeFile(file, configuration);
    QProcess* const daemon =
        startRealDaemon(u"/usr/bin/dbus-daemon"_s, {u"--nofork"_s, u"--print-address=1"_s, u"--config-file="_s + file});
    while (!daemon->canReadLine()) {
        if (!daemon->waitForReadyRead(10000)) {
            qFatal("the private bus does not start: %s", daemon->readAllStandardError().constData());
        }
    }
    return QString::fromUtf8(daemon->readLine().trimmed());
}

} // namespace

QString start()
{
    static const QString address = [] {
        QString started = startDaemon();
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", started.toUtf8());
        return started;
    }();
    return address;
}

} // namespace PrivateBus
