// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VDialog.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VLabel.h"
#include "platform/velk/VStyle.h"
#include "platform/velk/heldenter.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QPushButton>
#include <QScreen>

namespace {

constexpr int iconExtent = 56;
constexpr int dialogWidth = 420;

QLabel* centredLabel(QWidget* parent, VFontSizeManager::SizeType size, int weight, VPalette::ColorType color)
{
    auto* label = new VLabel(parent);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignHCenter);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(color);
    VFontSizeManager::instance()->bind(label, size, weight);
    label->hide();
    return label;
}

} // namespace

VDialog::VDialog(QWidget* parent)
    : ModalDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    build();
}

VDialog::VDialog(const QString& title, const QString& message, QWidget* parent)
    : VDialog(parent)
{
    setTitle(title);
    setMessage(message);
}

void VDialog::build()
{
    setAttribute(Qt::WA_TranslucentBackground);
    setModal(true);
    setFixedWidth(dialogWidth);
    m_icon = new QLabel(this);
    m_icon->hide();
    m_title = centredLabel(this, VFontSizeManager::T4, QFont::DemiBold, VPalette::TitleText);
    m_message = centredLabel(this, VFontSizeManager::T6, QFont::Normal, VPalette::NoType);
    m_buttonRow = new QHBoxLayout;
    m_buttonRow->setSpacing(VStyle::spaceMedium);

    auto* column = new QVBoxLayout(this);
    column->setSizeConstraint(QLayout::SetMinimumSize);
    column->setContentsMargins(VStyle::spaceHuge, 28, VStyle::spaceHuge, 24);
    column->setSpacing(VStyle::spaceMedium);
    column->addWidget(m_icon, 0, Qt::AlignHCenter);
    column->addWidget(m_title);
    column->addWidget(m_message);
    column->addSpacing(VStyle::spaceSmall);
    column->addLayout(m_buttonRow);
}

void VDialog::setTitle(const QString& title)
{
    m_title->setText(title);
    m_title->setVisible(!title.isEmpty());
    setWindowTitle(title);
}

QString VDialog::title() const
{
    return m_title->text();
}

void VDialog::setMessage(const QString& message)
{
    m_message->setText(message);
    m_message->setVisible(!message.isEmpty());
    setAccessibleDescription(message);
}

QString VDialog::message() const
{
    return m_message->text();
}

void VDialog::setIcon(const QIcon& icon)
{
    m_icon->setPixmap(icon.pixmap(QSize(iconExtent, iconExtent), devicePixelRatioF()));
    m_icon->setVisible(!icon.isNull());
}

int VDialog::addButton(const QString& text, bool isDefault, ButtonType type)
{
    auto* button = new QPushButton(text, this);
    button->setAutoDefault(true); // Enter presses the button that has the focus, and the default one only without any
    button->setDefault(isDefault || type == ButtonRecommend);
    button->setProperty("warning", type == ButtonWarning);
    const int index = static_cast<int>(m_buttons.size());
    connect(button, &QPushButton::clicked, this, [this, index] { done(index); });
    ignoreHeldEnter(button);
    m_buttons.append(button);
    m_buttonRow->addWidget(button, 1);
    if (isDefault) {
        button->setFocus();
    }
    return index;
}

QAbstractButton* VDialog::getButton(int index) const
{
    return m_buttons.value(index);
}

void VDialog::moveToCenter()
{
    adjustSize();
    const QWidget* owner = parentWidget() != nullptr ? parentWidget()->window() : nullptr;
    const QRect area = owner != nullptr ? owner->geometry() : screen()->geometry();
    move(area.center() - rect().center());
}

int VDialog::exec()
{
    moveToCenter();
    return ModalDialog::exec();
}

// Closing is no choice: not the first button's, whose index QDialog's own result for it would be.
void VDialog::reject()
{
    done(-1);
}

void VDialog::showEvent(QShowEvent* event)
{
    ModalDialog::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
