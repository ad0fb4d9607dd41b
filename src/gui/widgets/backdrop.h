// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QVBoxLayout;
class QWidget;

/// Gives a page an outer layout that holds one rounded frame, because the window itself is translucent.
/// @return the frame's layout, without margins, for the page's content; owned by the page
[[nodiscard]] QVBoxLayout* addBackdrop(QWidget* page);
