// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/streamhash.h"

#include "clone/xxh3.h"

#include <new>

namespace kestro::clone {

void StreamHash::Free::operator()(XXH3_state_s* state) const
{
    XXH3_freeState(state);
}

StreamHash::StreamHash()
    : m_state(XXH3_createState())
{
    if (!m_state || XXH3_64bits_reset(m_state.get()) == XXH_ERROR) {
        throw std::bad_alloc();
    }
}

void StreamHash::add(std::span<const std::byte> bytes)
{
    XXH3_64bits_update(m_state.get(), bytes.data(), bytes.size());
}

std::uint64_t StreamHash::value() const
{
    return XXH3_64bits_digest(m_state.get());
}

} // namespace kestro::clone
