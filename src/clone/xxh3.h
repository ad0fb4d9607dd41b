// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// XXH3 with the widest vector instructions that the processor has, chosen when the program runs: the plain functions
/// of a library that is built for every processor of its kind take four times as long.
#include <xxhash.h>
#if defined(__x86_64__) && __has_include(<xxh_x86dispatch.h>)
#include <xxh_x86dispatch.h>
#endif
