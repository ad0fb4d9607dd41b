// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/backupplan.h"

/// Whether what a step has written says of itself what the step wanted: the record inside the image, or the first
/// member of the archive. The commands that write these run unchecked, and neither the image tool nor tar misses them;
/// but a restore refuses the image, and leaves the archive out. The reason of a "no" is logged.
[[nodiscard]] bool isDescribedAsPlanned(const BackupPlan& plan);

/// Whether an image that says to be of something else stands where the plan's image will be. The record is replaced
/// before the image is: should the image then not come, the one that is there would be put back to where it does not
/// belong.
[[nodiscard]] bool wouldRelabel(const BackupPlan& plan);
