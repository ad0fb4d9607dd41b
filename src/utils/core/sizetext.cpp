// SPDX-License-Identifier: GPL-3.0-or-later
#include "sizetext.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr struct
{
    QLatin1StringView name;
    float bytes;
} units[] = {
    {"KiB"_L1, 1024.0F},
    {"MiB"_L1, 1048576.0F},
    {"GiB"_L1, 1073741824.0F},
    {"TiB"_L1, 1099511627776.0F},
    {"PiB"_L1, 1125899906842624.0F},
};

float unitOf(const QString& text)
{
    for (const auto& unit : units) {
        if (text.contains(unit.name)) {
            return unit.bytes;
        }
    }
    return 1.0F;
}

} // namespace

qint64 bytesOfSizeText(const QString& text)
{
    // Asks for two digits at least, deliberately: btrfs prints two decimals always ("5.00GiB").
    static const QRegularExpression number(uR"(^(\d+\.?\d+))"_s);
    constexpr float tooLarge = 9223372036854775808.0F;
    // Single precision is deliberate: other programs show the same figures.
    const float size = number.match(text).capturedView(1).toFloat() * unitOf(text);
    return size < tooLarge ? static_cast<qint64>(size) : -1;
}
