// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/startmarker.h"

#include <QDebug>
#include <QFile>

using namespace Qt::StringLiterals;

void writeStartMarker()
{
    const QString startedFlagPath = u"/home/kestro/kestro-recovery-gui.startedFlag"_s;
    QFile file(startedFlagPath);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Text)) {
        qWarning() << "failed to open startedFlagPath: " << startedFlagPath;
        return;
    }
    file.write("ok");
}
