// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/WorkingPage.h"

#include "gui/widgets/backdrop.h"
#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VWaterProgress.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

WorkingPage::WorkingPage(QWidget* parent)
    : QWidget(parent)
    , m_progress(new VWaterProgress)
    , m_title(new QLabel(tr("Restoring your system, please wait...")))
    , m_tip(new QLabel(tr("Do not remove your storage device, power off or unplug your machine")))
{
    VFontSizeManager::instance()->bind(m_title, VFontSizeManager::T2);
    VFontSizeManager::instance()->bind(m_tip, VFontSizeManager::T4);
    m_progress->setAccessibleName(tr("Progress"));
    QVBoxLayout* inner = addBackdrop(this);
    inner->setSpacing(10);
    inner->addStretch();
    inner->addWidget(m_progress, 0, Qt::AlignHCenter);
    for (QLabel* label : {m_title, m_tip}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignHCenter);
        inner->addWidget(label, 0, Qt::AlignHCenter);
    }
    inner->addStretch();
    // Keys go to the window unless the page itself takes the focus.
    setFocusPolicy(Qt::StrongFocus);
    m_progress->start();
    setProgress(1);
}

void WorkingPage::setTitle(const QString& title)
{
    if (!title.isEmpty()) {
        m_title->setText(title);
    }
}

void WorkingPage::setTip(const QString& tip)
{
    if (!tip.isEmpty()) {
        m_tip->setText(tip);
    }
}

void WorkingPage::setProgress(int percent)
{
    m_progress->setValue(percent);
}

void WorkingPage::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F4 && event->modifiers() == Qt::AltModifier) {
        // Not quit(), which asks the window first: and that refuses.
        QCoreApplication::exit(0);
        return;
    }
    QWidget::keyPressEvent(event);
}

void WorkingPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    setFocus();
}
