// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/check.h"

#include <cstdio>

namespace {

int failures = 0;
int checks = 0;

} // namespace

void check(bool holds, const std::string& what)
{
    ++checks;
    if (!holds) {
        ++failures;
        std::printf("FAIL: %s\n", what.c_str());
    }
}

int checkResult()
{
    std::printf("%d checks, %d failed\n", checks, failures);
    return failures == 0 && checks > 0 ? 0 : 1;
}
