// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

/// A square button that shows an icon in the colour of text. Give it an accessible name.
class VIconButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit VIconButton(QWidget* parent = nullptr);

    /// A flat button shows its background only under the pointer.
    void setFlat(bool flat);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    bool m_flat = false;
};
