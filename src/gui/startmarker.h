// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Tells whoever waits for this program that its window is up: the start marker file begins with "ok" from now on.
/// What else the file holds is left as it is.
void writeStartMarker();
