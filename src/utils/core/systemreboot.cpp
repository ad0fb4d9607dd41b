// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/systemreboot.h"

#include "utils/core/command.h"

using namespace Qt::StringLiterals;

bool rebootSystem()
{
    return SpawnCmd(u"systemctl"_s, {u"reboot"_s});
}
