// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/VFrame.h"

#include <QIcon>

class QLabel;

namespace plugins {

/// A tile with an icon and a title that can be clicked, or chosen with Space or Enter.
class ItemFrame : public VFrame
{
    Q_OBJECT

public:
    /// How icon and title are arranged.
    enum Arrangement {
        IconFirst,
        TitleFirst ///< the title above, larger, then the description, the icon below
    };

    ItemFrame(const QString& title, const QString& description, const QIcon& icon, QWidget* parent = nullptr,
        Arrangement arrangement = IconFirst);

    /// Whether the tile was ever clicked.
    [[nodiscard]] bool isClicked() const { return m_clicked; }

Q_SIGNALS:
    /// The tile was clicked; @p clicked is always true.
    void clicked(bool clicked);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrangeIconFirst();
    void arrangeTitleFirst();
    void fitTitle();
    void choose();

    QLabel* m_title = nullptr;
    QLabel* m_description = nullptr;
    QLabel* m_iconLabel = nullptr;
    QPixmap m_icon;
    bool m_clicked = false;
    Arrangement m_arrangement;
};

} // namespace plugins
