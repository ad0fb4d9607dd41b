// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/rootparameter.h"

#include <QList>

RootParameter parseRootParameter(const QByteArray& commandLine)
{
    for (const QByteArray& token : commandLine.split(' ')) {
        if (!token.startsWith("root=")) {
            continue;
        }
        const QString value = QString::fromUtf8(token.mid(token.lastIndexOf('=') + 1)).simplified();
        return token.contains("UUID=") ? RootParameter{value, {}} : RootParameter{{}, value};
    }
    return {};
}
