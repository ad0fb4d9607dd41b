// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/MainWindow.h"

#include "gui/tasks/ManualRestoreTask.h"
#include "gui/tasks/SystemRestoreTask.h"
#include "gui/widgets/EndPage.h"
#include "gui/widgets/WorkingPage.h"
#include "gui/widgets/backuplist.h"
#include "gui/widgets/failuremessage.h"
#include "gui/widgets/pendingtask.h"
#include "gui/widgets/screenfitting.h"
#include "platform/velk/VDialog.h"
#include "platform/velk/VFrame.h"
#include "platform/velk/VIconButton.h"
#include "utils/Device.h"
#include "utils/core/applicationproperties.h"
#include "utils/core/command.h"
#include "utils/core/systemreboot.h"
#include "utils/fstabuuids.h"
#include "utils/widget/TreeViewModel.h"
#include "utils/widget/restorepage.h"

#include <QCloseEvent>
#include <QDebug>
#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QJsonArray>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

const char* asText(bool value)
{
    return value ? "true" : "false";
}

/// Any entry counts, a device node without its link, too: those are listed only as system entries.
bool isMapped(const QString& name)
{
    return QDir(u"/dev/mapper/"_s)
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .contains(name, Qt::CaseSensitive);
}

/// A page that never covers the screen's edges: on a screen that is too small for it, it scrolls.
QWidget* scrollable(QWidget* page)
{
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setWidget(page);
    area->viewport()->setAutoFillBackground(false);
    page->setAutoFillBackground(false);
    return area;
}

QList<ScreenState> currentScreens()
{
    QList<ScreenState> states;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        states.append({screen->name(), screen->geometry()});
    }
    return states;
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QWidget(parent)
    , m_content(new QVBoxLayout(this))
{
    m_content->setContentsMargins(0, 0, 0, 0);
    setFixedSize(800, 600);
    setWindowFlag(Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
}

void MainWindow::setFstabEntries(const FSTabInfoList& entries)
{
    m_fstabEntries = entries;
}

void MainWindow::initUI()
{
    auto* page = new RestorePage;
    m_content->addWidget(frameFor(page));
    page->setHaveInitBackup(ApplicationProperties::isHaveInitBackup());
    page->setPageMargins({100, 0, 100, 4});
    page->initUI();
    const bool isDeviceOS = ApplicationProperties::isDeviceOS();
    qDebug() << "is device os:" << asText(isDeviceOS);
    const bool isLuksCrypt = isMapped(u"luks_crypt0"_s);
    bool isEncrypted = false;
    bool isFileSystemEncrypted = false;
    const bool isLvm = Device::isLvm(collectFstabUUIDs(m_fstabEntries), isEncrypted, isFileSystemEncrypted);
    qInfo() << "MainWindow::initUI isLvm: " << asText(isLvm) << ", isEncrypted: " << asText(isEncrypted)
            << ", isLuksCrypt: " << asText(isLuksCrypt);
    if (isLvm || isLuksCrypt || isDeviceOS) {
        page->restrictOffer();
        page->setHaveInitBackup(ApplicationProperties::isHaveInitBackup());
    }
    connectPage(page);
}

QWidget* MainWindow::frameFor(RestorePage* page)
{
    auto* frame = new VFrame;
    auto* close = new VIconButton(frame);
    close->setIcon(QIcon(u":/close.svg"_s));
    close->setFlat(true);
    close->setFocusPolicy(Qt::NoFocus);
    close->setShortcut(Qt::ALT | Qt::Key_F4); // it never has the focus, and yet no mouse must be needed
    close->setToolTip(close->shortcut().toString(QKeySequence::NativeText));
    close->setAccessibleName(tr("Exit and reboot"));
    connect(close, &VIconButton::clicked, this, &MainWindow::confirmExit);
    auto* rows = new QVBoxLayout(frame);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(close, 0, Qt::AlignRight);
    rows->addWidget(scrollable(page), 1);
    return frame;
}

void MainWindow::connectPage(RestorePage* page)
{
    connect(page, &RestorePage::requestSystemRestore, this, &MainWindow::startSystemRestore);
    connect(page, &RestorePage::requestManualRestore, this, &MainWindow::startManualRestore);
    connect(page, &RestorePage::requestTreeViewListItem, page, &fillBackupList);
}

void MainWindow::startSystemRestore(bool formatData)
{
    m_taskType = SystemRestore;
    m_task = new SystemRestoreTask(formatData, this);
    showWorkingPage();
    m_workingPage->setTip(tr("Do not power off or unplug your machine"));
}

void MainWindow::startManualRestore(const QString& directory)
{
    m_taskType = ManualRestore;
    m_task = new ManualRestoreTask(directory, this);
    showWorkingPage();
}

void MainWindow::setRecovery(const QJsonObject& task)
{
    qDebug() << "recovery:" << task;
    if (task.isEmpty()) {
        return;
    }
    const QString type = task["type"_L1].toString();
    qDebug() << "task type=" << type;
    const PendingTask* pending = findPendingTask(type);
    if (!pending) {
        return;
    }
    m_taskType = pending->number;
    m_task = pending->create(task["tasks"_L1].toArray(), m_taskType, this);
    showWorkingPage();
    m_workingPage->setTitle(tr(pending->title));
    m_workingPage->setTip(tr(pending->tip));
}

void MainWindow::showWorkingPage()
{
    m_workingPage = new WorkingPage;
    setPage(m_workingPage);
    if (!m_task) {
        return;
    }
    connect(m_task, &Task::progressChanged, m_workingPage, &WorkingPage::setProgress);
    connect(m_task, &Task::failed, this, &MainWindow::onFailed);
    connect(m_task, &Task::finished, this, &MainWindow::onFinished);
    if (m_task->isFailed()) {
        // It failed while it was being made, when nobody could listen.
        QMetaObject::invokeMethod(
            this, [this] { onFailed(m_task->errorMessage()); }, Qt::QueuedConnection);
    } else {
        // Comes after the zero timer with which the task begins.
        QTimer::singleShot(0, this, &MainWindow::reportUnstartedTask);
    }
}

/// A task that neither began nor failed will never say anything.
void MainWindow::reportUnstartedTask()
{
    if (!m_task->isStarted() && !m_task->isFailed()) {
        onFailed(Task::tr("Failed to initialize the task"));
    }
}

void MainWindow::onFinished()
{
    qDebug() << "task finished!";
    if (m_task) {
        qDebug() << "MainWindow::onFinished() task finished! saveLogToRecovery";
        m_task->saveLogToRecovery();
    }
    if (ApplicationProperties::isAutoRestart()) {
        Utils::forceReboot();
        return;
    }
    showEndPage(EndPage::Success);
    m_endPage->setButtonText(tr("Reboot Now"));
    m_endPage->setTitle(isBackup() ? tr("Backup Successful") : tr("Restore Successful"));
}

void MainWindow::onFailed(const QString& error)
{
    if (m_task) {
        qDebug() << "MainWindow::onFailed(), saveLogToRecovery, error: " << error;
        m_task->saveLogToRecovery();
    }
    if (ApplicationProperties::isAutoRestart()) {
        Utils::forceReboot();
        return;
    }
    showEndPage(EndPage::Failure);
    m_endPage->setButtonText(tr("Shut Down"));
    m_endPage->setTitle(isBackup() ? tr("Backup Failed") : tr("Restore Failed"));
    m_endPage->setMessage(failureMessage(isBackup(), error));
}

bool MainWindow::isBackup() const
{
    return m_taskType == ManualBackup || m_taskType == SystemBackup;
}

void MainWindow::showEndPage(int state)
{
    m_endPage = new EndPage(state);
    setPage(m_endPage);
}

void MainWindow::setPage(QWidget* page)
{
    while (QLayoutItem* item = m_content->takeAt(0)) {
        if (item->widget()) {
            item->widget()->hide();
            item->widget()->deleteLater();
        }
        delete item;
    }
    m_content->addWidget(page);
}

void MainWindow::confirmExit()
{
    VDialog dialog(this);
    dialog.setMessage(tr("Are you sure you want to exit and reboot your computer?"));
    dialog.setIcon(QIcon(u":/warning.svg"_s));
    dialog.addButton(QCoreApplication::translate("button", "Cancel"));
    const int restart = dialog.addButton(tr("Restart"), true, VDialog::ButtonWarning);
    dialog.setWindowFlag(Qt::BypassWindowManagerHint);
    dialog.moveToCenter();
    if (dialog.exec() == restart) {
        Utils::forceReboot();
    }
}

void MainWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    activateWindow(); // without a window manager the keyboard would belong to whatever lies below the pointer
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

void MainWindow::centreOn(const QRect& screen)
{
    m_content->setContentsMargins(overhang(screen.size(), size()));
    move(screen.topLeft() + centredPosition(screen.size(), size()));
}

void MainWindow::autoAdapterScreen()
{
    SpawnCmd(u"/bin/bash"_s, {u"/lib/kestro-recovery-gui/scripts/autoAdapterScreen.sh"_s});
    m_primaryScreen = QGuiApplication::primaryScreen();
    if (m_primaryScreen) {
        centreOn(m_primaryScreen->geometry());
        // What the script has changed is told only after this.
        connect(m_primaryScreen, &QScreen::geometryChanged, this, &MainWindow::onGeometryChanged, Qt::UniqueConnection);
    }
}

void MainWindow::onGeometryChanged(const QRect& geometry)
{
    if (sender() == m_primaryScreen) {
        centreOn(geometry);
    }
}

void MainWindow::onDetectScreen()
{
    const QList<ScreenState> screens = currentScreens();
    if (screens.isEmpty()) {
        m_primaryScreen = nullptr;
        return;
    }
    const auto knownGeometry = m_primaryScreen ? std::optional(m_primaryScreen->geometry()) : std::optional<QRect>();
    if (const qsizetype changed = firstChangedScreen(screens, m_screenName, knownGeometry); changed >= 0) {
        m_screenName = rememberedScreenName(screens[changed].name);
        m_primaryScreen = nullptr;
    }
    if (const QScreen* primary = QGuiApplication::primaryScreen()) {
        if (primary != m_primaryScreen) {
            autoAdapterScreen();
        }
        return;
    }
    QString connected;
    SpawnCmd(u"/bin/bash"_s, {u"-c"_s, u"xrandr | grep ' connected '"_s}, connected);
    if (!connected.isEmpty()) {
        autoAdapterScreen();
    }
}
