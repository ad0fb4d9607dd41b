// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/taskarguments.h"

#include <QStringList>

using namespace Qt::StringLiterals;

QString uuidOfArgument(const QString& argument)
{
    return argument.split(u':').constLast().simplified();
}

bool leadsUpwards(const QString& path)
{
    return path.split(u'/').contains(".."_L1);
}
