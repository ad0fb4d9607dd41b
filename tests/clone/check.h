// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

/// Counts and prints failed expectations of a test program without a framework.
void check(bool holds, const std::string& what);

/// The program's exit status: 0 when nothing failed and something was checked.
[[nodiscard]] int checkResult();
