// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListView>

/// A list whose items lie on the window as cards.
class VListView : public QListView
{
    Q_OBJECT

public:
    /// How the cards' backgrounds are drawn.
    enum BackgroundType {
        NoBackground = 0,
        RoundedBackground = 1,   ///< every item is a rounded card
        ClipCornerBackground = 2 ///< the items are cards that bring their own rounded widget
    };

    explicit VListView(QWidget* parent = nullptr);

    void setBackgroundType(BackgroundType type);
    [[nodiscard]] BackgroundType backgroundType() const { return m_backgroundType; }

    /// The distance between items, in device-independent pixels. The cells of a grid (setGridSize()) keep none.
    void setItemSpacing(int spacing);

    /// The size of every item; an empty size lets the item decide.
    void setItemSize(const QSize& size);
    [[nodiscard]] QSize itemSize() const { return m_itemSize; }

    using QListView::setViewportMargins;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    BackgroundType m_backgroundType = NoBackground;
    QSize m_itemSize;
};
