// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

/// The arithmetic of the percentage that a task reports.
namespace Progress {

/// The share of the task that the current job reaches; it climbs fast, and past 1, while archives are among the jobs.
/// @param onlyClones whether all jobs left, the current one included, are image jobs
/// @param currentIndex of the current job, counted from 1
/// @param taskCount jobs ever added, at least 1
[[nodiscard]] float fraction(bool onlyClones, float currentIndex, float taskCount);

/// The percentage reported when a job other than an image job begins.
[[nodiscard]] int percentAtStart(float fraction);

/// The image tool's own percentage in one chunk of its output: the first four characters of what follows the last
/// blank, so "45.67%" gives 45.6. What is no number gives 0.
[[nodiscard]] float clonePercent(const QByteArray& chunk);

/// The larger of the value and the highest one that this *process* has seen, which begins at 1 and is never reset.
[[nodiscard]] float highest(float value);

/// Rounded to the nearest integer, limited to what an int holds.
[[nodiscard]] int rounded(float percent);

} // namespace Progress
