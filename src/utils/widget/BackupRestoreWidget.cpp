// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/BackupRestoreWidget.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VListView.h"
#include "platform/velk/VTipLabel.h"
#include "utils/widget/ItemFrame.h"

#include <QBoxLayout>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDebug>
#include <QStandardItemModel>

#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString dbusService = u"com.kestro.daemon.ArxRecoverySession"_s;
const QString dbusPath = u"/com/kestro/daemon/ArxRecoverySession"_s;
const QString dbusInterface = dbusService;

constexpr QSize tileSize(130, 130);
constexpr int logoExtent = 96;

struct Module
{
    const char* title;
    const char* accessibleName;
    const char* icon;
    const char* method;  ///< of the session service
    const char* failure; ///< begins the log line when the call failed
};

// In the order of the rows.
constexpr std::array<Module, 3> modules = {{
    {QT_TRANSLATE_NOOP("BackupRestoreWidget", "Backup"), "arx_Backup", ":/module-backup.svg", "ShowBackupPage",
        "error: showBackupDbus invalid, errMsg = "},
    {QT_TRANSLATE_NOOP("BackupRestoreWidget", "Restore"), "arx_Restore", ":/module-restore.svg", "ShowRestorePage",
        "error: showRestoreDbus invalid, errMsg = "},
    {QT_TRANSLATE_NOOP("BackupRestoreWidget", "System Clone"), "arx_SystemClone", ":/module-clone.svg",
        "ShowSystemClonePage", "error: showSystemCloneDbus invalid, errMsg = "},
}};

QDBusMessage callSession(const QString& method)
{
    QDBusInterface session(dbusService, dbusPath, dbusInterface, QDBusConnection::sessionBus());
    return session.call(QDBus::AutoDetect, method);
}

void setWeight(QWidget* widget, int weight)
{
    QFont font = widget->font();
    font.setWeight(static_cast<QFont::Weight>(weight));
    widget->setFont(font);
}

} // namespace

BackupRestoreWidget::BackupRestoreWidget(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->addSpacing(49);
    buildLogo();
    buildTitle();
    buildSubTitle();
    buildModules();
    m_layout->addStretch();
    m_layout->addWidget(m_logo, 0, Qt::AlignCenter);
    m_layout->addSpacing(12);
    m_layout->addWidget(m_title, 0, Qt::AlignCenter);
    m_layout->addSpacing(-15); // deliberate: the subtitle is drawn closer to the title
    m_layout->addWidget(m_subTitle, 0, Qt::AlignCenter);
    m_layout->addSpacing(30);
    m_layout->addWidget(m_modules, 0, Qt::AlignCenter);
    m_layout->addStretch();
}

void BackupRestoreWidget::buildLogo()
{
    m_logo = new QLabel(this);
    m_logo->setAccessibleName(u"arxBackupRestoreLogoLabel"_s);
    m_logo->setPixmap(QIcon(u":/logo.svg"_s).pixmap(QSize(logoExtent, logoExtent), devicePixelRatioF()));
    m_logo->setAlignment(Qt::AlignCenter);
}

void BackupRestoreWidget::buildTitle()
{
    auto* title = new VLabel(tr("Backup and Restore"), this);
    title->setAccessibleName(u"arx_BackupAndRestoreTitleLabel"_s);
    title->setAlignment(Qt::AlignCenter);
    title->setForegroundRole(VPalette::TitleText);
    title->setContentsMargins(0, 0, 0, 8); // closer as the subtitle is drawn, it would touch the letters
    VFontSizeManager::instance()->bind(title, VFontSizeManager::T3, 600);
    m_title = title;
}

void BackupRestoreWidget::buildSubTitle()
{
    auto* subTitle = new VTipLabel(tr("Backup system environment and data, restore the system status or data, and "
                                      "provide the restoration of factory settings"),
        this);
    subTitle->setAccessibleName(u"arx_BackupAndRestoreSubTitleLabel"_s);
    subTitle->setWordWrap(true);
    subTitle->setFixedSize(590, 50);
    subTitle->setAlignment(Qt::AlignCenter);
    setWeight(subTitle, 400);
    subTitle->setForegroundRole(VPalette::TipText);
    m_subTitle = subTitle;
}

void BackupRestoreWidget::buildModules()
{
    m_model = new QStandardItemModel(this);
    m_modules = new VListView(this);
    m_modules->setAccessibleName(u"arxBackupRestoreListView"_s);
    m_modules->setContentsMargins(0, 0, 0, 0);
    m_modules->setFixedSize(590, 300);
    m_modules->setFrameShape(QFrame::NoFrame);
    m_modules->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_modules->setSelectionMode(QAbstractItemView::NoSelection);
    m_modules->setFocusPolicy(Qt::NoFocus); // the tiles take the focus
    m_modules->setViewMode(QListView::IconMode);
    m_modules->setMovement(QListView::Static); // neither dragging nor dropping, which icon mode has switched on
    m_modules->setSpacing(40);
    m_modules->setResizeMode(QListView::Adjust);
    m_modules->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum);
    m_modules->setItemSize(tileSize);
    m_modules->setTextElideMode(Qt::ElideRight);
    m_modules->setBackgroundType(VListView::ClipCornerBackground);
    // Centres three tiles and the gaps around them.
    m_modules->setViewportMargins(isRightToLeft() ? 0 : 20, 0, isRightToLeft() ? 20 : 0, 0);
    m_modules->setModel(m_model);
    for (int row = 0; row < static_cast<int>(modules.size()); ++row) {
        addModule(row);
    }
}

void BackupRestoreWidget::addModule(int row)
{
    const Module& module = modules.at(static_cast<size_t>(row));
    auto* item = new QStandardItem(tr(module.title));
    item->setAccessibleText(QString::fromLatin1(module.accessibleName));
    m_model->appendRow(item);
    auto* tile = new plugins::ItemFrame(tr(module.title), {}, QIcon(QString::fromLatin1(module.icon)));
    tile->setFixedSize(tileSize);
    m_modules->setIndexWidget(item->index(), tile);
    connect(tile, &plugins::ItemFrame::clicked, this, [this, row](bool clicked) {
        m_modules->setCurrentIndex(m_model->index(row, 0));
        onItemChanged(clicked);
    });
}

void BackupRestoreWidget::onItemChanged(bool /*checked*/)
{
    const QModelIndex index = m_modules->currentIndex();
    if (!index.isValid()) {
        return;
    }
    const auto row = static_cast<size_t>(index.row());
    if (row >= modules.size()) {
        return;
    }
    const QDBusMessage reply = callSession(QString::fromLatin1(modules.at(row).method));
    if (reply.type() != QDBusMessage::ReplyMessage) {
        qCritical() << modules.at(row).failure << reply.errorMessage();
    }
}

QWidget* BackupRestoreWidget::createModuleWidget(QWidget* parent)
{
    auto* widget = new QWidget(parent);
    widget->setAccessibleName(u"moduleWidget_"_s);
    widget->setFixedSize(251, 251);
    auto* list = new VListView(widget);
    list->setAccessibleName(u"moduleListView_"_s);
    list->setFrameShape(QFrame::NoFrame);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setBackgroundType(VListView::RoundedBackground);
    list->setModel(m_model);
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(list);
    connect(list, &VListView::clicked, this, &BackupRestoreWidget::moduleClicked);
    return widget;
}
