// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/alignedbuffer.h"
#include "clone/imageformat.h"

#include <memory>
#include <span>

struct ZSTD_CCtx_s;
struct ZSTD_DCtx_s;

namespace kestro::clone {

/// A chunk ready to be written: a record without its position, and the stored bytes with their padding. The bytes stay
/// valid until the encoder is used again or the content changes.
struct EncodedChunk
{
    ChunkRecord record;
    std::span<const std::byte> stored;
};

/// Packs chunks; one for each thread.
class ChunkEncoder
{
public:
    explicit ChunkEncoder(std::uint32_t chunkSize);

    /// Packs the first bytes of a buffer. The buffer's padding behind them is set to zero.
    [[nodiscard]] EncodedChunk encode(AlignedBuffer& content, std::uint32_t size);

private:
    struct Free
    {
        void operator()(ZSTD_CCtx_s* context) const;
    };
    AlignedBuffer m_packed;
    std::unique_ptr<ZSTD_CCtx_s, Free> m_context;
};

/// Unpacks chunks; one for each thread.
class ChunkDecoder
{
public:
    ChunkDecoder();

    /// Fills the content; false when the stored bytes are not a chunk of exactly this size with this content hash.
    [[nodiscard]] bool decode(
        const ChunkRecord& record, std::span<const std::byte> stored, std::span<std::byte> content) const;

private:
    struct Free
    {
        void operator()(ZSTD_DCtx_s* context) const;
    };
    std::unique_ptr<ZSTD_DCtx_s, Free> m_context;
};

} // namespace kestro::clone
