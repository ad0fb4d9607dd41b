// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/failuremessage.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace {

// Beside Arabic the slash before a path would else go to the path's other end (Unicode's first strong isolate).
QString isolated(const QString& text)
{
    return QGuiApplication::isRightToLeft() ? QChar(0x2068) + text + QChar(0x2069) : text;
}

} // namespace

QString failureMessage(bool isBackup, const QString& error)
{
    const QString message = isBackup ? QCoreApplication::translate("MainWindow", "Backup failed, error: %1")
                                     : QCoreApplication::translate("MainWindow", "Restore failed, error: %1");
    return message.arg(isolated(error));
}
