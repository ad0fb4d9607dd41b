// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/progress.h"

#include <QByteArrayList>
#include <QString>

#include <algorithm>

float Progress::fraction(bool onlyClones, float currentIndex, float taskCount)
{
    if (onlyClones) {
        return currentIndex / taskCount;
    }
    // Deliberate: a mixed task climbs twice as fast for its first two jobs; three jobs give 66, 132 and 99 percent.
    return currentIndex <= 2.0F ? 2 * currentIndex / taskCount : 1.0F;
}

int Progress::percentAtStart(float fraction)
{
    return static_cast<int>(static_cast<double>(fraction) * 99.0);
}

float Progress::clonePercent(const QByteArray& chunk)
{
    // Deliberate: four characters, whatever they are. "100%" is no number and gives 0; "100.00%" gives 100.
    return QString::fromUtf8(chunk.split(' ').constLast()).left(4).toFloat();
}

float Progress::highest(float value)
{
    // Deliberate: one for all tasks of the process, never reset.
    static float highestValue = 1.0F;
    // The stored value first: compared the other way round, a "nan" from the tool would stay for ever.
    highestValue = std::max(highestValue, value);
    return highestValue;
}

int Progress::rounded(float percent)
{
    constexpr float largest = 2147483520.0F; // the largest float below 2^31
    // The limit first: compared the other way round, a "nan" would get through.
    return static_cast<int>(std::min(largest, std::max(0.0F, percent + 0.5F)));
}
