// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <functional>

class QWidget;

/// One page or control in one state.
struct Scene
{
    QString name;                    ///< also the name of the picture
    std::function<QWidget*()> build; ///< a new widget without a parent
};

/// Everything that the program can show.
[[nodiscard]] QList<Scene> allScenes();
