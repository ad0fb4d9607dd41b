// SPDX-License-Identifier: GPL-3.0-or-later
// The fuzz target of the parser that KESTRO_FUZZ_TARGET names.
#include "parsers.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size)
{
    if (!feedParser(KESTRO_FUZZ_TARGET, data, size)) {
        std::abort();
    }
    return 0;
}
