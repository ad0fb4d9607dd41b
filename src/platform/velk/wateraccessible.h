// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Makes screen readers see every VWaterProgress as a progress bar with a value; further calls do nothing.
void installWaterAccessible();
