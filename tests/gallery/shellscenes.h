// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gallery/scenes.h"

/// The pages and the question of the program's window.
[[nodiscard]] QList<Scene> shellScenes();
