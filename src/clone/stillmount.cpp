// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/stillmount.h"

#include <cerrno>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

int remount(int root, const char* flag)
{
    // Unlike mount(2), this keeps all other options as they are.
    const int context = ::fspick(root, "", FSPICK_EMPTY_PATH | FSPICK_CLOEXEC);
    const bool done = context >= 0 && ::fsconfig(context, FSCONFIG_SET_FLAG, flag, nullptr, 0) == 0
        && ::fsconfig(context, FSCONFIG_CMD_RECONFIGURE, nullptr, nullptr, 0) == 0;
    const int error = done ? 0 : errno;
    if (context >= 0) {
        ::close(context);
    }
    return error;
}

} // namespace

int holdMount(int root, Stillness way)
{
    if (way == Stillness::ReadOnly) {
        return remount(root, "ro");
    }
    return ::ioctl(root, FIFREEZE, 0) == 0 ? 0 : errno;
}

bool releaseMount(int root, Stillness way)
{
    if (way == Stillness::None) {
        return true;
    }
    return way == Stillness::ReadOnly ? remount(root, "rw") == 0 : ::ioctl(root, FITHAW, 0) == 0;
}

} // namespace kestro::clone
