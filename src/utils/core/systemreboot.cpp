// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/systemreboot.h"

#include "utils/core/command.h"

#include <QDebug>

using namespace Qt::StringLiterals;

namespace {

QStringList rebootArguments(Utils::RebootMode mode)
{
    switch (mode) {
    case Utils::RebootMode::IgnoreInhibitors:
        return {u"reboot"_s, u"-i"_s};
    case Utils::RebootMode::Force:
        return {u"reboot"_s, u"-f"_s};
    case Utils::RebootMode::Plain:
        break;
    }
    return {u"reboot"_s};
}

} // namespace

bool Utils::rebootSystem(RebootMode mode)
{
    QString output;
    QString error;
    const bool isAccepted = SpawnCmd(u"systemctl"_s, rebootArguments(mode), output, error);
    if (!isAccepted) {
        qWarning() << "no reboot:" << error;
    }
    return isAccepted;
}

bool Utils::forceReboot()
{
    return SpawnCmd(u"sudo"_s, {u"reboot"_s, u"-f"_s});
}
