// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/chunkcodec.h"

#include <algorithm>
#include <new>

#include <zstd.h>

namespace kestro::clone {

namespace {

constexpr int compressionLevel = 1;

std::span<const std::byte> padded(AlignedBuffer& buffer, std::uint32_t size)
{
    const auto whole = buffer.bytes().first(roundedUp(size));
    std::fill(whole.begin() + size, whole.end(), std::byte{0});
    return whole;
}

} // namespace

void ChunkEncoder::Free::operator()(ZSTD_CCtx_s* context) const
{
    ZSTD_freeCCtx(context);
}

void ChunkDecoder::Free::operator()(ZSTD_DCtx_s* context) const
{
    ZSTD_freeDCtx(context);
}

ChunkEncoder::ChunkEncoder(std::uint32_t chunkSize)
    : m_packed(chunkSize)
    , m_context(ZSTD_createCCtx())
{
    if (!m_context) {
        throw std::bad_alloc();
    }
    ZSTD_CCtx_setParameter(m_context.get(), ZSTD_c_compressionLevel, compressionLevel);
}

EncodedChunk ChunkEncoder::encode(AlignedBuffer& content, std::uint32_t size)
{
    const auto bytes = content.bytes().first(size);
    EncodedChunk chunk;
    chunk.record.contentHash = hashOf(bytes);
    if (isZero(bytes)) {
        return chunk;
    }
    // Less room than the content has: what does not become smaller is stored as it is.
    const std::size_t room = size - size / 32;
    const std::size_t got = ZSTD_compress2(m_context.get(), m_packed.data(), room, bytes.data(), bytes.size());
    const bool smaller = ZSTD_isError(got) == 0;
    chunk.record.codec = smaller ? Codec::Zstd : Codec::Stored;
    chunk.record.storedSize = smaller ? static_cast<std::uint32_t>(got) : size;
    chunk.stored = padded(smaller ? m_packed : content, chunk.record.storedSize);
    chunk.record.storedHash = hashOf(chunk.stored);
    return chunk;
}

ChunkDecoder::ChunkDecoder()
    : m_context(ZSTD_createDCtx())
{
    if (!m_context) {
        throw std::bad_alloc();
    }
}

bool ChunkDecoder::decode(
    const ChunkRecord& record, std::span<const std::byte> stored, std::span<std::byte> content) const
{
    const auto payload = stored.first(std::min<std::size_t>(record.storedSize, stored.size()));
    switch (record.codec) {
    case Codec::Zero:
        std::fill(content.begin(), content.end(), std::byte{0});
        break;
    case Codec::Stored:
        if (payload.size() != content.size()) {
            return false;
        }
        std::copy(payload.begin(), payload.end(), content.begin());
        break;
    case Codec::Zstd:
        if (ZSTD_decompressDCtx(m_context.get(), content.data(), content.size(), payload.data(), payload.size())
            != content.size()) {
            return false;
        }
        break;
    }
    return hashOf(content) == record.contentHash;
}

} // namespace kestro::clone
