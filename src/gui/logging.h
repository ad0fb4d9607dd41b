// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Publishes the path of the log file and sends everything that is logged from now on to the console and to that file,
/// which begins anew each day; those of five former days are kept.
void startLogging();
