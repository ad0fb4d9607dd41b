// SPDX-License-Identifier: GPL-3.0-or-later
// standstill FOLDER silent|beating: holds the file system that is mounted at a folder, with a patience of three
// seconds, and says what became of it when they are long over. For cases of the command line.
#include "clone/failure.h"
#include "clone/freeze.h"
#include "clone/mounttable.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <cerrno>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace kestro::clone;

namespace {

/// Asks without waiting: a file on a frozen file system could not be made before it is thawed.
bool isHeld(const std::string& folder)
{
    const int root = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool frozen = ::ioctl(root, FIFREEZE, 0) != 0 && errno == EBUSY;
    const bool readOnly = ::faccessat(root, ".", W_OK, 0) != 0 && errno == EROFS;
    ::close(root);
    return frozen || readOnly;
}

/// Far apart from the patience on both sides: a busy machine must be neither silent by mistake nor done too early.
void passTime(FrozenMounts& frozen, bool beats)
{
    if (!beats) {
        std::this_thread::sleep_for(std::chrono::seconds(8));
        return;
    }
    for (int i = 0; i < 50; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        frozen.beat();
    }
}

void report(const char* what, const std::function<void()>& step)
{
    try {
        step();
        std::printf("%s: done\n", what);
    } catch (const Failure& failure) {
        std::printf("%s: %d, %s\n", what, static_cast<int>(failure.code()), failure.what());
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        return 2;
    }
    const std::string folder = argv[1];
    const bool beats = std::string(argv[2]) == "beating";
    std::vector<Mount> mounts;
    const auto all = currentMounts();
    std::copy_if(
        all.begin(), all.end(), std::back_inserter(mounts), [&](const Mount& mount) { return mount.target == folder; });
    FrozenMounts frozen(mounts, std::chrono::seconds(3));
    std::puts("held");
    std::fflush(stdout);
    passTime(frozen, beats);
    if (beats) {
        std::printf("%s\n", isHeld(folder) ? "still held" : "not held");
    }
    report("beat", [&] { frozen.beat(); });
    report("thaw", [&] { frozen.thaw(); });
    return 0;
}
