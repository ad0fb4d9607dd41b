// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/language.h"
#include "gui/logging.h"
#include "gui/startmarker.h"
#include "gui/tasks/Task.h"
#include "gui/widgets/MainWindow.h"
#include "platform/velk/VApplication.h"
#include "utils/core/applicationproperties.h"

#include <QDebug>
#include <QDir>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>

using namespace Qt::StringLiterals;

int main(int argc, char** argv)
{
    VApplication application(argc, argv);
    startLogging();

    // The tasks write some files by a relative name: nobody else can have put files of these names here.
    const QTemporaryDir workingDirectory;
    if (!workingDirectory.isValid() || !QDir::setCurrent(workingDirectory.path())) {
        qWarning() << "no working directory of its own: " << workingDirectory.errorString();
    }

    Task task;
    task.getRecoveryJson();
    ApplicationProperties::setDeviceOS(task.edition() == "Device"_L1);
    const QJsonObject pendingTask = ApplicationProperties::recoveryJson();
    const QString locale = chooseLocale(pendingTask, task.locale(), QLocale::system().name());
    if (!pendingTask.isEmpty()) {
        ApplicationProperties::setAutoRestart(pendingTask["auto_reboot"_L1].toBool());
    }
    qInfo() << "gui locale: " << locale;
    QTranslator translator;
    installLanguage(translator, locale);

    MainWindow window;
    window.setFstabEntries(task.fstabEntries());
    window.initUI();
    window.show();
    if (!pendingTask.isEmpty()) {
        window.setRecovery(pendingTask);
    }
    if (const QScreen* screen = VApplication::primaryScreen()) {
        window.centreAtStartUp(screen->geometry());
    }
    QTimer screenDetection;
    QObject::connect(&screenDetection, &QTimer::timeout, &window, &MainWindow::onDetectScreen);
    screenDetection.start(5000);
    writeStartMarker();
    return VApplication::exec();
}
