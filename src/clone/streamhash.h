// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

struct XXH3_state_s;

namespace kestro::clone {

/// hashOf for bytes that come in parts.
class StreamHash
{
public:
    StreamHash();

    void add(std::span<const std::byte> bytes);
    [[nodiscard]] std::uint64_t value() const;

private:
    struct Free
    {
        void operator()(XXH3_state_s* state) const;
    };
    std::unique_ptr<XXH3_state_s, Free> m_state;
};

} // namespace kestro::clone
