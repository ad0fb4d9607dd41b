// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHeaderView>

/// The header of a table of backups.
class BaseHeaderView : public QHeaderView
{
    Q_OBJECT

public:
    explicit BaseHeaderView(Qt::Orientation orientation, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintSection(QPainter* painter, int logicalIndex) const;
};
