// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VFileChooserEdit.h"

#include "platform/velk/VStyle.h"
#include "platform/velk/directorychooser.h"

#include <QBoxLayout>
#include <QEvent>
#include <QPushButton>

using namespace Qt::StringLiterals;

VFileChooserEdit::VFileChooserEdit(QWidget* parent)
    : QWidget(parent)
    , m_lineEdit(new VLineEdit(this))
    , m_browseButton(new QPushButton(this))
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(VStyle::spaceSmall);
    row->addWidget(m_lineEdit, 1);
    row->addWidget(m_browseButton);
    m_browseButton->setAutoDefault(false);
    setFocusProxy(m_lineEdit);
    retranslate();
    connect(m_lineEdit, &QLineEdit::textChanged, this, &VFileChooserEdit::textChanged);
    connect(m_browseButton, &QPushButton::clicked, this, &VFileChooserEdit::browse);
}

QString VFileChooserEdit::text() const
{
    return m_lineEdit->text();
}

void VFileChooserEdit::setText(const QString& text)
{
    m_lineEdit->setText(text);
}

void VFileChooserEdit::setPlaceholderText(const QString& text)
{
    m_lineEdit->setPlaceholderText(text);
}

void VFileChooserEdit::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        retranslate();
    }
    QWidget::changeEvent(event);
}

void VFileChooserEdit::retranslate()
{
    m_browseButton->setText(tr("Browse..."));
    m_lineEdit->setAccessibleName(tr("Path of the directory"));
}

void VFileChooserEdit::browse()
{
    DirectoryChooser chooser(this);
    // A dialog without a window manager would else lie below a window that bypasses it.
    chooser.setWindowFlag(Qt::BypassWindowManagerHint, window()->windowFlags().testFlag(Qt::BypassWindowManagerHint));
    if (!text().isEmpty()) {
        chooser.openDirectory(text());
    }
    if (chooser.exec() == QDialog::Accepted) {
        setText(chooser.directory());
    }
}
