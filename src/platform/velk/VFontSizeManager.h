// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

class QWidget;

/// The type scale: every text of the program has one of these sizes.
class VFontSizeManager
{
public:
    /// From the largest headline to the smallest note; T6 is the size of body text.
    enum SizeType { T1, T2, T3, T4, T5, T6, T7, T8, T9, T10, NSizeTypes };

    static VFontSizeManager* instance();

    /// The height of @p type in device-independent pixels.
    [[nodiscard]] static int fontPixelSize(SizeType type);

    /// Gives @p widget the size of @p type, and @p weight (100 to 900); a negative weight leaves the weight alone.
    void bind(QWidget* widget, SizeType type, int weight = -1) const;

    /// @p base in the size of @p type.
    [[nodiscard]] static QFont get(SizeType type, const QFont& base = QFont());

private:
    VFontSizeManager() = default;
};
