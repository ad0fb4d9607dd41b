// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QAbstractButton;

/// From now on the button is not pressed by what an Enter key that is held down repeats: the key was pressed for what
/// was there before the button.
void ignoreHeldEnter(QAbstractButton* button);
