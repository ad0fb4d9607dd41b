// SPDX-License-Identifier: GPL-3.0-or-later
// Shows every page and control in every state, or saves a picture of each.
#include "gallery/scenes.h"

#include "gallery/textfit.h"
#include "gui/language.h"
#include "platform/velk/VApplication.h"

#include <QBoxLayout>
#include <QCommandLineParser>
#include <QDir>
#include <QListWidget>
#include <QStackedWidget>
#include <QTest>
#include <QTextStream>
#include <QTranslator>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

int warnings = 0;

void countWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    warnings += type == QtDebugMsg || type == QtInfoMsg ? 0 : 1;
    QTextStream(stderr) << message << '\n';
}

// Scenes are shown inside one window: the offscreen platform complains about windows of a fixed size.
bool savePicture(QWidget& host, const Scene& scene, const QDir& folder)
{
    const std::unique_ptr<QWidget> widget(scene.build());
    widget->setParent(&host, Qt::Widget);
    widget->move(0, 0);
    widget->show();
    widget->adjustSize();
    QTest::qWait(150);
    const QString file = folder.filePath(scene.name + ".png"_L1);
    const bool saved = widget->grab().save(file);
    if (!saved) {
        qWarning() << "not saved:" << file;
    }
    return saved;
}

int savePictures(const QString& path)
{
    if (!QDir().mkpath(path)) {
        qWarning() << "cannot make the directory" << path;
        return 1;
    }
    QWidget host;
    host.resize(800, 600);
    QCursor::setPos(host.rect().bottomRight() + QPoint(50, 50)); // nothing is under the pointer
    host.show();
    host.activateWindow();
    int saved = 0;
    for (const Scene& scene : allScenes()) {
        saved += savePicture(host, scene, QDir(path)) ? 1 : 0;
    }
    QTextStream(stdout) << saved << " pictures in " << path << ", " << warnings << " warnings\n";
    return warnings == 0 ? 0 : 1;
}

int checkFit()
{
    int cut = 0;
    for (const Scene& scene : allScenes()) {
        const std::unique_ptr<QWidget> widget(scene.build());
        widget->show();
        QTest::qWait(0);
        const QStringList texts = textsThatDoNotFit(widget.get());
        for (const QString& text : texts) {
            QTextStream(stdout) << scene.name << " has no room for: " << text << '\n';
        }
        cut += static_cast<int>(texts.size());
    }
    return cut == 0 ? 0 : 1;
}

// The scenes are built when they are first looked at.
int browse()
{
    QWidget window;
    auto* list = new QListWidget;
    auto* stage = new QStackedWidget;
    auto* row = new QHBoxLayout(&window);
    row->addWidget(list);
    row->addWidget(stage, 1);
    const QList<Scene> scenes = allScenes();
    for (const Scene& scene : scenes) {
        list->addItem(scene.name);
    }
    QObject::connect(list, &QListWidget::currentRowChanged, stage, [stage, scenes](int current) {
        while (stage->count() > 0) {
            delete stage->widget(0);
        }
        QWidget* shown = scenes.at(current).build();
        shown->setWindowFlags(Qt::Widget);
        stage->addWidget(shown);
    });
    list->setCurrentRow(0);
    window.resize(1100, 680);
    window.show();
    return QApplication::exec();
}

bool useLocale(const QString& folder, const QString& name, QTranslator& translator)
{
    if (name.isEmpty()) {
        return true;
    }
    if (!translator.load(u"kestro-recovery-gui_"_s + name, folder)) {
        qWarning() << "no translation" << name << "in" << folder;
        return false;
    }
    QCoreApplication::installTranslator(&translator);
    useWritingOf(QLocale(name));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    qInstallMessageHandler(countWarnings);
    VApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Shows every page in every state. KESTRO_THEME=light|dark chooses the look."_s);
    parser.addHelpOption();
    parser.addOptions({{u"save"_s, u"Save a picture of each scene in DIR instead."_s, u"DIR"_s},
        {u"check-fit"_s, u"Name the texts that do not fit their place; fails when there is one."_s},
        {u"locale"_s, u"Show the texts of the locale NAME."_s, u"NAME"_s},
        {u"translations"_s, u"Where the .qm files are."_s, u"DIR"_s}});
    parser.process(app);
    QTranslator translator;
    if (!useLocale(parser.value(u"translations"_s), parser.value(u"locale"_s), translator)) {
        return 1;
    }
    if (parser.isSet(u"check-fit"_s)) {
        return checkFit();
    }
    return parser.isSet(u"save"_s) ? savePictures(parser.value(u"save"_s)) : browse();
}
