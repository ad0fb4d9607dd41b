// SPDX-License-Identifier: GPL-3.0-or-later
#include "blockcounttools.h"

using namespace Qt::StringLiterals;

const QList<BlockCountTool>& blockCountTools()
{
    static const QList<BlockCountTool> tools = {
        // "Block count:              16384", where "Reserved block count:" is another
        {{FsType::Ext2, FsType::Ext3, FsType::Ext4}, u"dumpe2fs"_s, {u"-h"_s},
            {uR"(^Block size:\s+(\d+))"_s, uR"(^Block count:\s+(\d+))"_s, uR"(^Free blocks:\s+(\d+))"_s}},
        // "	Free Clusters: 81395 (99.4%)"
        {{FsType::Ntfs}, u"ntfsinfo"_s, {u"-mf"_s},
            {uR"(^\s*Cluster Size:\s+(\d+))"_s, uR"(^\s*Volume Size in Clusters:\s+(\d+))"_s,
                uR"(^\s*Free Clusters:\s+(\d+))"_s}},
        // "dblocks = 81920", where "fdblocks = 65504" is another
        {{FsType::Xfs}, u"xfs_db"_s, {u"-c sb"_s, u"-c print"_s, u"-r"_s},
            {uR"(^blocksize\s*=\s*(\d+))"_s, uR"(^dblocks\s*=\s*(\d+))"_s, uR"(^fdblocks\s*=\s*(\d+))"_s}},
        // "blocks:		81920", where "free blocks:	81892" is another
        {{FsType::Reiser4}, u"debugfs.reiser4"_s, {u"--force"_s, u"--yes"_s},
            {uR"(^blksize:\s*(\d+))"_s, uR"(^blocks:\s*(\d+))"_s, uR"(^free blocks:\s*(\d+))"_s}},
        // "Free blocks (count of blocks - used [journal, bitmaps, data, reserved] blocks): 73706"
        {{FsType::Reiserfs}, u"debugreiserfs"_s, {u"-d"_s},
            {uR"(^Blocksize:\s*(\d+))"_s, uR"(^Count of blocks on the device:\s*(\d+))"_s,
                uR"(^Free blocks \(count of blocks[^:\n]*:\s*(\d+))"_s}},
    };
    return tools;
}

const BlockCountPatterns& jfsPatterns()
{
    // "[1] dn_mapsize:		0x00000013dca	[9] dn_agheigth:	0"
    static const BlockCountPatterns patterns = {
        uR"(^Aggregate Block Size:\s*(\d+))"_s, uR"(dn_mapsize:\s*([^\s]+))"_s, uR"(dn_nfree:\s*([^\s]+))"_s};
    return patterns;
}
