// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

/// One screen as the window system lists it.
struct ScreenState
{
    QString name;
    QRect geometry;
};

/// Where the top left corner of a window goes so that it is in the middle of a screen at (0, 0). Halves are truncated
/// toward zero; a window larger than the screen gets negative coordinates.
[[nodiscard]] QPoint centredPosition(const QSize& screen, const QSize& window);

/// What of a window in the middle of a screen lies beyond the edges of the screen; 0 where it fits.
[[nodiscard]] QMargins overhang(const QSize& screen, const QSize& window);

/// The index of the first screen that changed: one whose name differs from the known one, or whose geometry differs
/// from the known one, when there is a known one. -1 when none changed.
[[nodiscard]] qsizetype firstChangedScreen(
    const QList<ScreenState>& screens, const QString& knownName, const std::optional<QRect>& knownGeometry);

/// The name under which a changed screen is known from then on.
[[nodiscard]] QString rememberedScreenName(const QString& name);
