// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/loopdevice.h"

#include <fcntl.h>
#include <linux/loop.h>
#include <sys/ioctl.h>

namespace kestro::clone {

File readOnlyLoop(const BlockDevice& device, const Extent& range)
{
    const File control(::open("/dev/loop-control", O_RDWR | O_CLOEXEC), "/dev/loop-control");
    const File below = File::open(device.path, O_RDONLY);
    loop_config config{};
    config.fd = static_cast<std::uint32_t>(below.fd());
    // Direct input and output needs sectors no smaller than those below.
    config.block_size = device.sectorSize;
    config.info.lo_offset = range.offset;
    config.info.lo_sizelimit = range.length;
    config.info.lo_flags = LO_FLAGS_READ_ONLY | LO_FLAGS_AUTOCLEAR | LO_FLAGS_DIRECT_IO;
    // Somebody else may take the free device before us.
    for (int tries = 0; control.isOpen() && tries < 8; ++tries) {
        const std::string path = "/dev/loop" + std::to_string(::ioctl(control.fd(), LOOP_CTL_GET_FREE));
        File loop(::open(path.c_str(), O_RDONLY | O_CLOEXEC), path);
        if (loop.isOpen() && ::ioctl(loop.fd(), LOOP_CONFIGURE, &config) == 0) {
            return loop;
        }
    }
    return {};
}

} // namespace kestro::clone
