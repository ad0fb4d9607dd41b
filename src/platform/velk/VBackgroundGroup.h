// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLayout;

/// Draws the widgets of its layout as one card: rounded at the outer corners, with a hairline between neighbours.
class VBackgroundGroup : public QWidget
{
    Q_OBJECT

public:
    /// Takes @p layout (may be null and set later) as its layout.
    explicit VBackgroundGroup(QLayout* layout = nullptr, QWidget* parent = nullptr);

    /// The width of the line between items, in device-independent pixels.
    void setItemSpacing(int spacing);

    /// Whether the items paint a background of their own; when not (the default), the group paints the card.
    void setUseWidgetBackground(bool use);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    [[nodiscard]] QList<QRect> visibleItems() const;

    bool m_useWidgetBackground = false;
};
