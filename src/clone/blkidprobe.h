// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <type_traits>

#include <blkid/blkid.h>

namespace kestro::clone {

struct FreeProbe
{
    void operator()(blkid_probe probe) const { blkid_free_probe(probe); }
};

/// A probe of libblkid that frees itself; empty when it could not be made.
using Probe = std::unique_ptr<std::remove_pointer_t<blkid_probe>, FreeProbe>;

} // namespace kestro::clone
