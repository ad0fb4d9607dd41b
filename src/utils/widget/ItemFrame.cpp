// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/ItemFrame.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/VStyle.h"
#include "platform/velk/VTipLabel.h"

#include <QAccessibleWidget>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int iconExtent = 64;

QAccessibleInterface* tileInterface(const QString& /*className*/, QObject* object)
{
    auto* tile = qobject_cast<plugins::ItemFrame*>(object);
    return tile != nullptr ? new QAccessibleWidget(tile, QAccessible::Button) : nullptr;
}

} // namespace

namespace plugins {

ItemFrame::ItemFrame(
    const QString& title, const QString& description, const QIcon& icon, QWidget* parent, Arrangement arrangement)
    : VFrame(parent)
    , m_title(new VLabel(title, this))
    , m_description(new VTipLabel(description, this))
    , m_iconLabel(new QLabel(this))
    , m_icon(icon.pixmap(QSize(iconExtent, iconExtent), devicePixelRatioF()))
    , m_arrangement(arrangement)
{
    QAccessible::installFactory(tileInterface); // Qt drops a factory that it already has
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    setAttribute(Qt::WA_Hover);
    setObjectName(u"ItemFrame"_s);
    setBackgroundRole(VPalette::ItemBackground);
    setLineWidth(0);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(title);
    setAccessibleDescription(description);
    m_iconLabel->setPixmap(m_icon);
    m_title->setWordWrap(true);
    m_description->setVisible(arrangement == TitleFirst && !description.isEmpty());
    if (arrangement == IconFirst) {
        arrangeIconFirst();
    } else {
        arrangeTitleFirst();
    }
}

void ItemFrame::arrangeIconFirst()
{
    QFont font = m_title->font();
    font.setWeight(QFont::Weight(400));
    m_title->setFont(font);
    m_title->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 5, 0, 0);
    layout->addWidget(m_iconLabel, 3, Qt::AlignCenter);
    layout->addSpacing(-10);
    layout->addWidget(m_title, 2, Qt::AlignCenter);
}

void ItemFrame::arrangeTitleFirst()
{
    QFont font = m_title->font();
    font.setPixelSize(18);
    font.setWeight(QFont::Weight(800));
    m_title->setFont(font);
    m_title->setFixedHeight(60);
    m_title->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    m_description->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
    auto* layout = new QVBoxLayout(this);
    layout->addSpacing(10);
    layout->addWidget(m_title);
    layout->addWidget(m_description);
    layout->addWidget(m_iconLabel, 1, Qt::AlignCenter);
}

void ItemFrame::resizeEvent(QResizeEvent* event)
{
    VFrame::resizeEvent(event);
    if (m_arrangement == IconFirst) {
        fitTitle();
    }
}

/// Words are never broken: a font in which the longest one keeps off the edges.
void ItemFrame::fitTitle()
{
    QFont font = m_title->font();
    const QStringList words = m_title->text().split(u' ');
    const auto isTooWide = [&font, room = width() - (2 * VStyle::spaceSmall)](
                               const QString& word) { return QFontMetrics(font).horizontalAdvance(word) > room; };
    const int smallest = VFontSizeManager::fontPixelSize(VFontSizeManager::T9);
    while (font.pixelSize() > smallest && std::ranges::any_of(words, isTooWide)) {
        font.setPixelSize(font.pixelSize() - 1);
    }
    m_title->setFont(font);
}

void ItemFrame::choose()
{
    m_clicked = true;
    Q_EMIT
    clicked(true);
}

bool ItemFrame::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::HoverEnter:
        setBackgroundRole(VPalette::HoverBackground);
        break;
    case QEvent::HoverLeave:
        setBackgroundRole(VPalette::ItemBackground);
        break;
    case QEvent::MouseButtonRelease:
        choose();
        break;
    default:
        break;
    }
    return VFrame::event(event);
}

void ItemFrame::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose();
        return;
    default:
        VFrame::keyPressEvent(event);
    }
}

void ItemFrame::paintEvent(QPaintEvent* event)
{
    VFrame::paintEvent(event);
    if (hasFocus()) {
        QPainter painter(this);
        VStyle::drawFocusRing(&painter, rect(), VStyle::frameRadius, VPaletteHelper::instance()->palette(this));
    }
}

} // namespace plugins
