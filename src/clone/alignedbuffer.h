// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace kestro::clone {

/// The alignment of everything in an image, and of every buffer and position of direct input and output, in bytes.
inline constexpr std::uint64_t blockSize = 4096;

/// The next multiple of a step.
[[nodiscard]] constexpr std::uint64_t roundedUp(std::uint64_t bytes, std::uint64_t step = blockSize)
{
    return (bytes + step - 1) / step * step;
}

/// Memory for direct input and output: aligned to blockSize, its size rounded up to blockSize, zeroed. From 2 MiB on it
/// lies in huge pages where the kernel has them, so that a transfer consists of few large segments.
class AlignedBuffer
{
public:
    explicit AlignedBuffer(std::size_t size);

    [[nodiscard]] std::span<std::byte> bytes() { return {m_data.get(), m_size}; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return {m_data.get(), m_size}; }
    [[nodiscard]] std::byte* data() { return m_data.get(); }
    [[nodiscard]] std::size_t size() const { return m_size; }

private:
    struct Free
    {
        void operator()(std::byte* memory) const;
    };
    std::size_t m_size = 0;
    std::unique_ptr<std::byte, Free> m_data;
};

} // namespace kestro::clone
