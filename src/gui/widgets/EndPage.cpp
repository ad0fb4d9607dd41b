// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/EndPage.h"

#include "gui/widgets/backdrop.h"
#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/heldenter.h"
#include "utils/core/command.h"
#include "utils/core/systemreboot.h"

#include <QAccessible>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

QString iconOf(int state)
{
    switch (state) {
    case EndPage::Success:
        return u":/success.svg"_s;
    case EndPage::Failure:
        return u":/failed.svg"_s;
    default:
        return u":/warning.svg"_s;
    }
}

} // namespace

EndPage::EndPage(int state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_title(new QLabel)
    , m_message(new QLabel)
    , m_button(new QPushButton)
    , m_icon(new QLabel)
{
    VFontSizeManager::instance()->bind(m_title, VFontSizeManager::T2);
    VFontSizeManager::instance()->bind(m_message, VFontSizeManager::T4);
    m_icon->setPixmap(QIcon(iconOf(state)).pixmap(QSize(128, 128), devicePixelRatioF(), QIcon::Normal));
    m_title->setTextFormat(Qt::PlainText);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_message->setWordWrap(true);
    m_message->setAlignment(Qt::AlignHCenter);
    m_message->setContentsMargins(60, 0, 60, 0);
    m_button->setFixedSize(220, 40);
    m_button->setAutoDefault(true);
    m_button->setProperty("accent", true);
    ignoreHeldEnter(m_button);
    connect(m_button, &QPushButton::clicked, this, &EndPage::onButtonClicked);
    arrange();
}

void EndPage::arrange()
{
    QVBoxLayout* inner = addBackdrop(this);
    inner->addStretch();
    inner->addWidget(m_icon, 0, Qt::AlignHCenter);
    inner->addWidget(m_title, 0, Qt::AlignHCenter);
    inner->addWidget(m_message);
    inner->addStretch();
    inner->addWidget(m_button, 0, Qt::AlignHCenter);
    inner->addSpacing(20);
}

void EndPage::setTitle(const QString& title)
{
    m_title->setText(title);
}

void EndPage::setMessage(const QString& message)
{
    m_message->setText(message);
}

void EndPage::setButtonText(const QString& text)
{
    m_button->setText(text);
}

void EndPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_button->setFocus();
    setAccessibleName(m_title->text());
    setAccessibleDescription(m_message->text());
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void EndPage::onButtonClicked() const
{
    if (m_state == Failure) {
        SpawnCmd(u"sudo"_s, {u"poweroff"_s});
    } else {
        Utils::forceReboot();
    }
}
