// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/check.h"

#include "clone/customfiles.h"
#include "clone/humansize.h"
#include "clone/imageinfo.h"
#include "clone/mounttable.h"
#include "clone/progress.h"
#include "clone/usedpartclone.h"

#include <initializer_list>
#include <optional>
#include <vector>

#include <sys/sysmacros.h>

using namespace kestro::clone;

namespace {

void mountTableIsRead()
{
    const auto mounts = parseMountInfo("22 1 254:0 / / rw,noatime shared:1 - ext4 /dev/vda1 rw,errors=remount-ro\n"
                                       "23 22 0:21 /@ /mnt/a\\040b ro,relatime - btrfs /dev/sda2 rw,subvol=/@\n"
                                       "nonsense\n"
                                       "24 22 8:1 / /mnt/a rw\n"
                                       "25 23 8:1 /sub /mnt/a rw master:2 propagate_from:1 - ext4 /dev/sda1\n");
    check(mounts.size() == 3, "lines that are none are left out");
    check(mounts[0].device == makedev(254, 0) && mounts[0].superOptions == "rw,errors=remount-ro"
            && isWritable(mounts[0]),
        "the root");
    check(mounts[0].id == 22 && mounts[2].id == 25, "the kernel's numbers");
    check(mounts[1].target == "/mnt/a b" && mounts[1].root == "/@" && !isWritable(mounts[1]), "a blank, read-only");
    check(mounts[2].root == "/sub" && mounts[2].type == "ext4" && mounts[2].superOptions.empty(), "optional fields");
    check(mountOfPath(mounts, "/mnt/a b/x/y.kim") == &mounts[1], "a path below a mount");
    check(mountOfPath(mounts, "/mnt/a/y.kim") == &mounts[2], "the nearest mount");
    check(mountOfPath(mounts, "/mnt/abc") == &mounts[0], "a name that only begins the same");
    check(mountOfPath({}, "/x") == nullptr, "no mounts");
    const Mount overlay{0, "/", "/o", "rw", "overlay", "none", "rw,lowerdir=/l,upperdir=/u\\040p,workdir=/w"};
    check(upperFolderOf(overlay) == "/u p" && upperFolderOf(mounts[0]).empty(), "what an overlay writes to");
    for (const std::string space : {"\f", "\v", "\r"}) {
        const std::string name = "/m/x" + space + "y" + space + "-" + space + "a" + space + "b" + space + "ro";
        const auto odd = parseMountInfo("26 22 8:1 / " + name + " rw - ext4 /dev/sda1 rw\n");
        check(odd.size() == 1 && odd[0].target == name && odd[0].source == "/dev/sda1" && isWritable(odd[0]),
            "another kind of space in a name");
    }
    const auto unnamed = parseMountInfo("27 22 0:40 / /mnt/b rw - tmpfs  ro\n");
    check(unnamed.size() == 1 && unnamed[0].source.empty() && !isWritable(unnamed[0]), "an empty source");
    check(hasOption("rw,noatime", "rw") && !hasOption("rwx,a=rw", "rw"), "whole options only");
}

void swapsAreRead()
{
    const auto swaps =
        parseSwaps("Filename\t\t\tType\t\tSize\n/dev/zram0  partition\t1\n/swap\\040file file 2\n/a\vb\t\tfile\n");
    check(swaps == std::vector<std::string>{"/dev/zram0", "/swap file", "/a\vb"}, "three swaps");
    check(parseSwaps("").empty() && parseSwaps("Filename\n").empty(), "none");
}

std::optional<UsedBlocks> mapFrom(std::initializer_list<const char*> lines)
{
    DomainMap map;
    for (const char* line : lines) {
        map.add(line);
    }
    return map.take();
}

void domainMapsAreRead()
{
    const auto used = mapFrom({"# Domain logfile created by unset_name v0.3.23", "# Source: /dev/loop1",
        "# Offset: 0x00000000", "0x00000000     +", "#      pos        size  status", "0x00000000  0x00006000  +",
        "0x00006000  0x00FFA000  ?", "0x01000000  0x00001000  +", "0x01001000  0x00002000  +",
        "0x01003000  0x0000D000  ?"});
    check(used && used->extents == ExtentList{{0, 0x6000}, {0x1000000, 0x3000}}, "used ranges");
    check(used && used->end == 0x1010000, "how far the map goes");
    check(!mapFrom({}), "nothing");
    check(!mapFrom({"0x0 0x1000 ?"}), "nothing in use");
    check(!mapFrom({"0x0 0x1000 +", "0x2000 0x1000 +"}), "a gap between ranges");
    check(!mapFrom({"0x1000 0x1000 +"}), "does not begin at the beginning");
    check(!mapFrom({"0x0 0x1000 +", "0x1000 0x1000 -"}), "an unknown status");
    check(!mapFrom({"0x0 0x1000 +", "0x1000 0xFFFFFFFFFFFFFFFF +"}), "beyond all numbers");
    check(!mapFrom({"0x0 0x1000 +", "0x1000 0x10"}), "a line that was cut off");
}

void addressesAreTakenApart()
{
    const auto address = parseCustomFileAddress("kim:///mnt//a b.kim/DiskInfo");
    check(address && address->image == "/mnt//a b.kim" && address->name == "DiskInfo", "an address");
    for (const char* text :
        {"", "kim://", "kim:///x", "kim://a/", "kim://a/..", "kim://a/.", "a/b", "kim://a", "kim://a/b\n"}) {
        check(!parseCustomFileAddress(text).has_value(), std::string("no address: ") + text);
    }
    check(!isCustomFileName(std::string(256, 'x')) && isCustomFileName(std::string(255, 'x')), "the longest name");
}

void progressEndsInThePercentage()
{
    const ProgressFigures half{"writing", 1536, 4096, 432013312, 0.4567, 34};
    check(progressLine(half) == "writing  1.5 KiB of 4.0 KiB  412.0 MiB/s  ETA 0:40  45.67%\n", progressLine(half));
    for (const double fraction : {0.0, 0.05, 0.99999, 1.0}) {
        const std::string line = progressLine({"x", 0, 0, 0, fraction, 1});
        const std::string last = line.substr(line.rfind(' ') + 1);
        check(last.size() >= 6 && last.find('.') == last.size() - 5 && last != "100.00%\n", last);
    }
    check(finishedLine("done").ends_with(" 100.00%\n"), "only the last line has the whole");
}

void sizesAreReadable()
{
    check(humanSize(0) == "0 B" && humanSize(1023) == "1023 B" && humanSize(1024) == "1.0 KiB", "small");
    check(humanSize((1ULL << 20U) - 1) == "1.0 MiB" && humanSize(13314398617ULL) == "12.4 GiB", "large");
    check(humanSize(~0ULL) == "16.0 EiB", "the largest");
    check(exactSize(2048) == "2.0 KiB (2048 bytes)", "with the number");
    check(clockTime(41) == "0:41" && clockTime(725) == "12:05" && clockTime(3723) == "1:02:03", "times");
}

void marksAreBrokenUp()
{
    check(withoutMarks("UUID=1 PARTUUID=2 DiskDrive=3 invalid file") == "UUID_1 PARTUUID_2 DiskDrive_3 invalid_file",
        "marks");
    check(withoutMarks("UUUID==") == "UUUID_=", "inside other words");
}

} // namespace

int main()
{
    mountTableIsRead();
    swapsAreRead();
    domainMapsAreRead();
    addressesAreTakenApart();
    progressEndsInThePercentage();
    sizesAreReadable();
    marksAreBrokenUp();
    return checkResult();
}
