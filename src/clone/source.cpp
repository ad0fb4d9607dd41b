// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/source.h"

#include "clone/usedblocks.h"

namespace kestro::clone {

SourceMap mapSource(const BlockDevice& source)
{
    forgetCachedBlocks(source.path);
    const Signature signature = probeSignature(source.path);
    UsedBlocks used = usedBlocksOf(source.path, source.size, signature.type);
    const std::uint64_t bytes = totalLength(used.extents);
    return {std::move(used.extents), signature.partitionTable,
        {{0, {0, source.size}, signature.type, signature.label, used.reader, bytes}}, used.needsRecovery};
}

} // namespace kestro::clone
