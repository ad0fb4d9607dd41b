// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/VWaterProgress.h"

#include "platform/velk/VFontSizeManager.h"
#include "platform/velk/VGuiApplicationHelper.h"
#include "platform/velk/VPaletteHelper.h"
#include "platform/velk/wateraccessible.h"

#include <QAccessible>
#include <QLocale>
#include <QPainter>
#include <QTimerEvent>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int frameMilliseconds = 50;
constexpr qreal turnsPerSecond = 0.45;
// Each second all but this share of the way to the new level is covered.
constexpr qreal restPerSecond = 0.03;

} // namespace

VWaterProgress::VWaterProgress(QWidget* parent)
    : QWidget(parent)
{
    installWaterAccessible();
    setAccessibleName(tr("Progress"));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QSize VWaterProgress::sizeHint() const
{
    return {160, 160};
}

QSize VWaterProgress::minimumSizeHint() const
{
    return {32, 32};
}

void VWaterProgress::setValue(int value)
{
    const int clamped = qBound(0, value, 100);
    const bool fallsInRun = m_running && m_hasRunValue && clamped < m_value;
    m_hasRunValue = m_hasRunValue || m_running;
    if (fallsInRun || clamped == m_value) {
        return;
    }
    m_value = clamped;
    if (!isAnimating()) {
        m_level = m_value;
    }
    update();
    QAccessibleValueChangeEvent change(this, m_value);
    QAccessible::updateAccessibility(&change);
    Q_EMIT
    valueChanged(m_value);
}

void VWaterProgress::start()
{
    m_running = true;
    m_hasRunValue = false;
    updateTimer();
}

void VWaterProgress::stop()
{
    m_running = false;
    updateTimer();
}

void VWaterProgress::setTextVisible(bool visible)
{
    m_textVisible = visible;
    update();
}

void VWaterProgress::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    updateTimer();
}

void VWaterProgress::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    updateTimer();
}

void VWaterProgress::updateTimer()
{
    if (m_running && isVisible() && !VGuiApplicationHelper::reducedMotion()) {
        m_timer.start(frameMilliseconds, this);
        m_clock.start();
        return;
    }
    m_timer.stop();
    m_level = m_value;
    update();
}

void VWaterProgress::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    const qreal seconds = qMin<qreal>(0.25, static_cast<qreal>(m_clock.restart()) / 1000);
    m_phase = std::fmod(m_phase + (seconds * turnsPerSecond), 1.0);
    m_level = m_value + ((m_level - m_value) * std::pow(restPerSecond, seconds));
    update();
}

void VWaterProgress::paintEvent(QPaintEvent* /*event*/)
{
    const int extent = qMin(width(), height());
    const QRect vessel((width() - extent) / 2, (height() - extent) / 2, extent, extent);
    const VPalette colors = VPaletteHelper::instance()->palette(this);
    if (m_pictureKey != PictureKey(extent, devicePixelRatioF(), palette().cacheKey())) {
        m_pictureKey = PictureKey(extent, devicePixelRatioF(), palette().cacheKey());
        m_pictures = WaterPainting::picturesOf(extent, devicePixelRatioF(), colors);
    }
    const WaterPainting::Water water{m_level / 100, m_phase};
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    WaterPainting::paintVessel(&painter, vessel, m_pictures, water, colors);
    if (m_textVisible) {
        QFont large = VFontSizeManager::get(extent < 120 ? VFontSizeManager::T4 : VFontSizeManager::T1, font());
        large.setWeight(QFont::DemiBold);
        painter.setFont(large);
        const QString text = locale().toString(qRound(m_level)) + locale().percent();
        WaterPainting::paintText(&painter, vessel, water, text, colors);
    }
}
