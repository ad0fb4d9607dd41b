// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/alignedbuffer.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace kestro::clone {

void AlignedBuffer::Free::operator()(std::byte* memory) const
{
    std::free(memory);
}

AlignedBuffer::AlignedBuffer(std::size_t size)
    : m_size(static_cast<std::size_t>(roundedUp(size)))
    , m_data(static_cast<std::byte*>(std::aligned_alloc(blockSize, m_size == 0 ? blockSize : m_size)))
{
    if (!m_data) {
        throw std::bad_alloc();
    }
    std::memset(m_data.get(), 0, m_size);
}

} // namespace kestro::clone
