// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/widget/pagelayout.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VLabel.h"

#include <QBoxLayout>
#include <QPushButton>
#include <QScrollArea>

QLabel* PageLayout::addHeading(QVBoxLayout* layout, const QString& text)
{
    auto* heading = new VLabel(text);
    heading->setForegroundRole(VPalette::TitleText);
    heading->setAlignment(Qt::AlignCenter);
    VFontSizeManager::instance()->bind(heading, VFontSizeManager::T3, QFont::DemiBold);
    layout->addWidget(heading);
    return heading;
}

QPushButton* PageLayout::actionButton(const QString& text, QWidget* parent)
{
    auto* button = new QPushButton(text, parent);
    button->setMinimumSize(240, 36);
    button->setAutoDefault(true); // Enter presses it while it has the focus
    return button;
}

QScrollArea* PageLayout::scrolling(QWidget* content)
{
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    auto* holder = new QWidget;
    auto* layout = new QVBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
    layout->addStretch(1);
    area->setWidget(holder);
    holder->setAutoFillBackground(false); // QScrollArea::setWidget() switches it on
    area->viewport()->setAutoFillBackground(false);
    return area;
}

void PageLayout::setFilling(QWidget* content, bool filling)
{
    auto* layout = static_cast<QVBoxLayout*>(content->parentWidget()->layout());
    layout->setStretch(0, filling ? 1 : 0);
    layout->setStretch(1, filling ? 0 : 1);
}
