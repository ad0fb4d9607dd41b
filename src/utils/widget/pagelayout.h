// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;
class QWidget;

/// The building blocks that the pages share.
namespace PageLayout {

/// Left free below the button at the bottom of a page, in device-independent pixels.
constexpr int bottomSpacing = 16;

/// A page's heading, at the top of its layout.
QLabel* addHeading(QVBoxLayout* layout, const QString& text);

/// The page's large button; owned by @p parent.
[[nodiscard]] QPushButton* actionButton(const QString& text, QWidget* parent);

/// @p content in an area that scrolls up and down when there is no room for it; owns it. With room to spare the
/// content lies at the top.
[[nodiscard]] QScrollArea* scrolling(QWidget* content);

/// Whether @p content, which was given to scrolling(), grows into the room to spare.
void setFilling(QWidget* content, bool filling);

} // namespace PageLayout
