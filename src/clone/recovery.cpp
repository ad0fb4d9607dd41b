// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/recovery.h"

#include "clone/file.h"
#include "clone/process.h"
#include "clone/settledntfs.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

#include <fcntl.h>

namespace kestro::clone {

namespace {

enum class Order { Little, Big };
enum class When { Always, NotFrozen };

/// A number on the device that tells whether the file system was left in order.
struct Mark
{
    std::string_view type;
    std::uint64_t position;
    std::size_t width;
    Order order;
    std::uint64_t mask;
    std::uint64_t wanted;
    When when;
};

// ext2/3/4: s_feature_incompat without INCOMPAT_RECOVER, which a freeze clears; s_state without "has errors", and with
// "cleanly unmounted", which those without a journal lack as long as they are mounted.
// btrfs: log_root, the tree of what was made durable since the last commit; a freeze commits.
// exFAT: VolumeFlags without VolumeDirty and MediaFailure.
// HFS+: the signature "H+" or "HX", attributes with "unmounted" and without "inconsistent".
constexpr std::array marks{
    Mark{"ext", 0x460, 4, Order::Little, 0x4, 0, When::Always},
    Mark{"ext", 0x43a, 2, Order::Little, 0x2, 0, When::Always},
    Mark{"ext", 0x43a, 2, Order::Little, 0x1, 0x1, When::NotFrozen},
    Mark{"btrfs", 0x10060, 8, Order::Little, ~0ULL, 0, When::Always},
    Mark{"exfat", 0x6a, 2, Order::Little, 0x6, 0, When::Always},
    Mark{"hfsplus", 0x400, 2, Order::Big, 0xff00, 0x4800, When::Always},
    Mark{"hfsplus", 0x404, 4, Order::Big, 0x900, 0x100, When::Always},
};

bool isAsWanted(const File& device, const Mark& mark)
{
    std::array<std::byte, 8> bytes{};
    const auto number = std::span(bytes).first(mark.width);
    device.readAt(number, mark.position);
    if (mark.order == Order::Little) {
        std::reverse(number.begin(), number.end());
    }
    std::uint64_t value = 0;
    for (const std::byte byte : number) {
        value = value << 8U | std::to_integer<std::uint64_t>(byte);
    }
    return (value & mark.mask) == mark.wanted;
}

bool marksAreGood(const std::string& device, std::string_view type, bool frozen)
{
    const std::string_view family = type.starts_with("ext") ? "ext" : type;
    const File file = File::open(device, O_RDONLY);
    return std::all_of(marks.begin(), marks.end(), [&](const Mark& mark) {
        const bool counts = mark.type == family && (mark.when == When::Always || !frozen);
        return !counts || isAsWanted(file, mark);
    });
}

/// Whether the line of a program's output that holds the subject also holds the word; none without such a line.
std::optional<bool> saysSo(const std::vector<std::string>& command, std::string_view subject, std::string_view word)
{
    std::optional<bool> answer;
    const int status = runForLines(command, [&](std::string_view line) {
        if (line.find(subject) != line.npos) {
            answer = line.find(word) != line.npos;
        }
    });
    return status == 0 ? answer : std::nullopt;
}

std::optional<bool> isXfsSettled(const std::string& device)
{
    // "    log tail: 2 head: 2 state: <CLEAN>"
    return saysSo({"xfs_logprint", "-t", device}, "log tail:", "<CLEAN>");
}

std::optional<bool> isF2fsSettled(const std::string& device)
{
    // "Info: checkpoint state = 185 :  trimmed nat_bits compacted_summary unmount"
    return saysSo({"dump.f2fs", device}, "checkpoint state", " unmount");
}

/// For those whose marks, if any, say everything. FAT has none: its table is the only truth that there is.
std::optional<bool> isSettledByMarks(const std::string& /*device*/)
{
    return true;
}

struct FileSystemRow
{
    std::string_view type;
    /// What to ask besides the marks, and when.
    std::optional<bool> (*isSettled)(const std::string& device);
    When when;
};

// A freeze writes back all metadata of an XFS, but then dirties its log on purpose, for files deleted while open.
constexpr std::array fileSystems{
    FileSystemRow{"btrfs", isSettledByMarks, When::Always},
    FileSystemRow{"exfat", isSettledByMarks, When::Always},
    FileSystemRow{"ext2", isSettledByMarks, When::Always},
    FileSystemRow{"ext3", isSettledByMarks, When::Always},
    FileSystemRow{"ext4", isSettledByMarks, When::Always},
    FileSystemRow{"f2fs", isF2fsSettled, When::Always},
    FileSystemRow{"hfsplus", isSettledByMarks, When::Always},
    FileSystemRow{"ntfs", isNtfsSettled, When::Always},
    FileSystemRow{"vfat", isSettledByMarks, When::Always},
    FileSystemRow{"xfs", isXfsSettled, When::NotFrozen},
};

} // namespace

std::optional<bool> needsRecovery(const std::string& device, const std::string& type, bool frozen)
{
    const auto row = std::find_if(
        fileSystems.begin(), fileSystems.end(), [&](const FileSystemRow& candidate) { return candidate.type == type; });
    if (row == fileSystems.end()) {
        return std::nullopt;
    }
    if (!marksAreGood(device, type, frozen)) {
        return true;
    }
    const auto settled = row->when == When::NotFrozen && frozen ? true : row->isSettled(device);
    return settled ? std::optional(!*settled) : std::nullopt;
}

} // namespace kestro::clone
