// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/waterpainting.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>

#include <tuple>

/// A round vessel whose water level shows a percentage.
///
/// The water moves while it has been started and is visible; its level glides to a new value. With reduced motion it
/// stands still and jumps. Screen readers see a progress bar.
class VWaterProgress : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

public:
    explicit VWaterProgress(QWidget* parent = nullptr);

    /// The percentage shown, 0 to 100; 0 at first.
    [[nodiscard]] int value() const { return m_value; }
    /// The water is moving: started, visible, and motion is wanted.
    [[nodiscard]] bool isAnimating() const { return m_timer.isActive(); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Shows @p value percent, clamped to 0..100. Between start() and stop() the value never falls.
    void setValue(int value);
    /// Begins a run: the water moves, and the next value may be any.
    void start();
    /// Ends the run: the water stands still.
    void stop();
    /// Whether the percentage is written on the water; it is at first.
    void setTextVisible(bool visible);

Q_SIGNALS:
    void valueChanged(int value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    using PictureKey = std::tuple<int, qreal, qint64>; ///< extent, device pixel ratio, palette

    void updateTimer();

    int m_value = 0;
    bool m_textVisible = true;
    bool m_running = false;
    bool m_hasRunValue = false;
    qreal m_level = 0; ///< what is drawn, on its way to m_value
    qreal m_phase = 0; ///< of the waves, in turns
    PictureKey m_pictureKey;
    WaterPainting::Pictures m_pictures;
    QBasicTimer m_timer;
    QElapsedTimer m_clock;
};
