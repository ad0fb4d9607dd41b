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
    area->setWidget(content);
    content->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    return area;
}
