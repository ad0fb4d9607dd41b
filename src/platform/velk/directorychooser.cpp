// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/directorychooser.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VLabel.h"
#include "platform/velk/VStyle.h"
#include "platform/velk/mountedmedia.h"

#include <QAbstractFileIconProvider>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QDir>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int placesWidth = 180;

// The directories' icon comes along, because an icon theme may be missing.
class FolderIcons : public QAbstractFileIconProvider
{
public:
    [[nodiscard]] QIcon icon(IconType /*type*/) const override { return m_folder; }
    [[nodiscard]] QIcon icon(const QFileInfo& /*info*/) const override { return m_folder; }

private:
    QIcon m_folder{u":/folder.svg"_s};
};

void setUpList(QAbstractItemView* list, const QString& name)
{
    list->setAccessibleName(name);
    list->viewport()->setAutoFillBackground(false); // the frame paints the rounded background
    list->setIconSize({20, 20});
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
}

} // namespace

DirectoryChooser::DirectoryChooser(QWidget* parent)
    : ModalDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_icons(std::make_unique<FolderIcons>())
{
    setWindowTitle(tr("Select a directory"));
    setAttribute(Qt::WA_TranslucentBackground);
    setModal(true);
    build();
    fillPlaces();
    openDirectory(m_places->count() > 0 ? m_places->item(0)->data(Qt::UserRole).toString() : QDir::rootPath());
}

DirectoryChooser::~DirectoryChooser()
{
    delete m_model; // its worker thread asks the icon provider
}

void DirectoryChooser::build()
{
    auto* title = new VLabel(windowTitle(), this);
    title->setForegroundRole(VPalette::TitleText);
    VFontSizeManager::instance()->bind(title, VFontSizeManager::T4, QFont::DemiBold);

    m_up = new QPushButton(QIcon(u":/folder-up.svg"_s), tr("Up"), this);
    m_up->setAutoDefault(false);
    m_path = new QLineEdit(this);
    m_path->setAccessibleName(tr("Path of the directory"));
    m_path->setLayoutDirection(Qt::LeftToRight);
    m_places = new QListWidget(this);
    setUpList(m_places, tr("Media"));
    m_places->setSpacing(VStyle::spaceTiny);
    m_places->setFixedWidth(placesWidth);
    m_model = new QFileSystemModel(this);
    m_model->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    m_model->setIconProvider(m_icons.get());
    m_folders = new QListView(this);
    m_folders->setObjectName(u"folders"_s);
    setUpList(m_folders, tr("Directories"));
    m_folders->setSpacing(VStyle::spaceTiny);
    m_folders->setFocus();
    m_folders->setModel(m_model);

    auto* cancel = new QPushButton(QCoreApplication::translate("button", "Cancel"), this);
    cancel->setAutoDefault(false);
    m_choose = new QPushButton(tr("Choose"), this);
    m_choose->setAutoDefault(false);
    m_choose->setProperty("accent", true);

    auto* pathRow = new QHBoxLayout;
    pathRow->addWidget(m_up);
    pathRow->addWidget(m_path, 1);
    auto* lists = new QHBoxLayout;
    lists->addWidget(m_places);
    lists->addWidget(m_folders, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(m_choose);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(VStyle::spaceLarge, VStyle::spaceLarge, VStyle::spaceLarge, VStyle::spaceLarge);
    column->setSpacing(VStyle::spaceMedium);
    column->addWidget(title);
    column->addLayout(pathRow);
    column->addLayout(lists, 1);
    column->addLayout(buttons);
    resize(600, 420);

    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_choose, &QPushButton::clicked, this, &DirectoryChooser::choose);
    connect(m_up, &QPushButton::clicked, this, &DirectoryChooser::openParent);
    connect(m_path, &QLineEdit::returnPressed, this, &DirectoryChooser::openTyped);
    connect(m_places, &QListWidget::currentRowChanged, this, &DirectoryChooser::openPlace);
    connect(m_folders, &QListView::activated, this, &DirectoryChooser::openIndex);
    connect(m_folders, &QListView::doubleClicked, this, &DirectoryChooser::openIndex);
}

void DirectoryChooser::fillPlaces()
{
    const QIcon icon(u":/drive.svg"_s);
    for (const MediaPlace& place : placesOf(mountedVolumes())) {
        const QString title = place.path == QDir::rootPath() ? tr("System disk") : place.title;
        auto* item = new QListWidgetItem(icon, title, m_places);
        item->setData(Qt::UserRole, place.path);
        item->setToolTip(place.path);
    }
    // Else Qt makes the first place the current one when Tab comes here, which would open it.
    m_places->setCurrentIndex({});
}

void DirectoryChooser::openDirectory(const QString& path)
{
    QString existing = QDir::cleanPath(QDir(path).absolutePath());
    while (!QFileInfo(existing).isDir() && existing != QDir::rootPath()) {
        existing = QFileInfo(existing).absolutePath();
    }
    m_open = existing;
    showDirectory();
}

QString DirectoryChooser::directory() const
{
    const QModelIndex marked = m_folders->currentIndex();
    return marked.isValid() && marked != m_folders->rootIndex() ? m_model->filePath(marked) : m_open;
}

void DirectoryChooser::openPlace(int row)
{
    if (row >= 0) {
        openDirectory(m_places->item(row)->data(Qt::UserRole).toString());
    }
}

void DirectoryChooser::openIndex(const QModelIndex& index)
{
    openDirectory(m_model->filePath(index));
}

void DirectoryChooser::openParent()
{
    openDirectory(QFileInfo(m_open).absolutePath());
}

void DirectoryChooser::openTyped()
{
    openDirectory(m_path->text());
}

void DirectoryChooser::choose()
{
    if (m_path->isModified()) {
        openTyped();
    }
    accept();
}

void DirectoryChooser::showDirectory()
{
    m_folders->setRootIndex(m_model->setRootPath(m_open));
    m_folders->setCurrentIndex({});
    m_path->setText(m_open);
    m_up->setEnabled(m_open != QDir::rootPath());
}
