// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/widgets/screenfitting.h"

using namespace Qt::StringLiterals;

QPoint centredPosition(const QSize& screen, const QSize& window)
{
    return {(screen.width() - window.width()) / 2, (screen.height() - window.height()) / 2};
}

QMargins overhang(const QSize& screen, const QSize& window)
{
    const QPoint position = centredPosition(screen, window);
    const int across = std::max(0, -position.x());
    const int down = std::max(0, -position.y());
    return {across, down, across, down};
}

qsizetype firstChangedScreen(
    const QList<ScreenState>& screens, const QString& knownName, const std::optional<QRect>& knownGeometry)
{
    for (qsizetype i = 0; i < screens.size(); ++i) {
        if (screens[i].name != knownName || (knownGeometry && *knownGeometry != screens[i].geometry)) {
            return i;
        }
    }
    return -1;
}

QString rememberedScreenName(const QString& name)
{
    // Deliberate: a screen that only has the display's name is never known, so it counts as changed each time.
    return name.contains(":0.0"_L1) ? QString() : name;
}
