// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/RadioItem.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VLabel.h"
#include "platform/velk/VStyle.h"

#include <QBoxLayout>
#include <QIcon>
#include <QMouseEvent>
#include <QRadioButton>

namespace {

constexpr int iconExtent = 32;

} // namespace

RadioItem::RadioItem(const QString& title, const QString& icon, QWidget* parent)
    : SettingsItem(title, parent)
    , m_button(new QRadioButton(this))
    , m_column(new QVBoxLayout)
{
    m_button->setCheckable(true);
    m_button->setMinimumSize(24, 24);
    m_button->setMaximumWidth(24);
    m_button->setAccessibleName(title);

    auto* titleLabel = new VLabel(title, this);
    titleLabel->setForegroundRole(VPalette::TitleText);
    titleLabel->setWordWrap(true);
    VFontSizeManager::instance()->bind(titleLabel, VFontSizeManager::T6, QFont::DemiBold);
    m_title = titleLabel;

    auto* heading = new QHBoxLayout;
    heading->setContentsMargins(0, 0, 0, 0);
    heading->setSpacing(0);
    heading->addWidget(m_button, 0, Qt::AlignVCenter);
    heading->addSpacing(VStyle::spaceTiny);
    if (!icon.isEmpty()) {
        auto* picture = new QLabel(this);
        picture->setPixmap(QIcon(icon).pixmap(QSize(iconExtent, iconExtent), devicePixelRatioF()));
        heading->addWidget(picture, 0, Qt::AlignVCenter);
        heading->addSpacing(VStyle::spaceMedium);
    }
    heading->addWidget(m_title, 1);
    m_column->setContentsMargins(VStyle::spaceMedium, VStyle::spaceMedium, VStyle::spaceMedium, VStyle::spaceMedium);
    m_column->setSpacing(VStyle::spaceSmall);
    m_column->addLayout(heading);
    contentLayout()->addLayout(m_column);
}

void RadioItem::addContent(QWidget* content, int indent)
{
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addSpacing(indent);
    row->addWidget(content, 1);
    m_column->addLayout(row);
}

bool RadioItem::isChecked() const
{
    return m_button->isChecked();
}

void RadioItem::setChecked(bool checked)
{
    m_button->setChecked(checked);
}

void RadioItem::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && event->position().y() <= m_title->geometry().bottom()) {
        m_button->click();
    }
    SettingsItem::mouseReleaseEvent(event);
}
