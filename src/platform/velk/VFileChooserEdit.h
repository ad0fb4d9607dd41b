// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/VLineEdit.h"

#include <QWidget>

class QPushButton;

/// A line for the path of a directory with a button that opens the directory chooser.
class VFileChooserEdit : public QWidget
{
    Q_OBJECT

public:
    explicit VFileChooserEdit(QWidget* parent = nullptr);

    /// The path as typed or chosen; not checked.
    [[nodiscard]] QString text() const;
    void setText(const QString& text);
    void setPlaceholderText(const QString& text);

    /// The line itself, owned by this widget.
    [[nodiscard]] VLineEdit* lineEdit() const { return m_lineEdit; }

Q_SIGNALS:
    void textChanged(const QString& text);

protected:
    void changeEvent(QEvent* event) override;

private:
    void browse();
    void retranslate();

    VLineEdit* m_lineEdit = nullptr;
    QPushButton* m_browseButton = nullptr;
};
