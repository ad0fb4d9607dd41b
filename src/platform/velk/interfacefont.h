// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>

class QLocale;

/// The font for an interface in the language of @p locale, where its families are installed: one for Latin, Greek and
/// Cyrillic, and the one in which readers of that language expect the letters that this one lacks. Without the latter
/// the font system would show Chinese in Japanese forms.
[[nodiscard]] QFont interfaceFont(const QLocale& locale);
