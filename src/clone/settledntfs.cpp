// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/settledntfs.h"

#include <memory>

#include <cstdlib>
#include <ctime>
#include <sys/stat.h>

extern "C" {
#include <ntfs-3g/attrib.h>
#include <ntfs-3g/inode.h>
#include <ntfs-3g/logfile.h>
#include <ntfs-3g/logging.h>
#include <ntfs-3g/volume.h>
}

namespace kestro::clone {

namespace {

struct Close
{
    void operator()(ntfs_volume* volume) const { ntfs_umount(volume, FALSE); }
    void operator()(ntfs_inode* inode) const { ntfs_inode_close(inode); }
    void operator()(ntfs_attr* attribute) const { ntfs_attr_close(attribute); }
    void operator()(RESTART_PAGE_HEADER* page) const { std::free(page); }
};

bool isLogEmpty(ntfs_volume* volume)
{
    const std::unique_ptr<ntfs_inode, Close> inode(ntfs_inode_open(volume, FILE_LogFile));
    const std::unique_ptr<ntfs_attr, Close> log(inode ? ntfs_attr_open(inode.get(), AT_DATA, AT_UNNAMED, 0) : nullptr);
    RESTART_PAGE_HEADER* found = nullptr;
    const bool isValid = log && ntfs_check_logfile(log.get(), &found) != FALSE;
    const std::unique_ptr<RESTART_PAGE_HEADER, Close> page(found);
    return isValid && ntfs_is_logfile_clean(log.get(), page.get()) != FALSE;
}

} // namespace

std::optional<bool> isNtfsSettled(const std::string& device)
{
    ntfs_log_set_handler(ntfs_log_handler_null);
    const std::unique_ptr<ntfs_volume, Close> volume(ntfs_mount(device.c_str(), NTFS_MNT_RDONLY | NTFS_MNT_FORENSIC));
    if (!volume) {
        return std::nullopt;
    }
    return (volume->flags & VOLUME_IS_DIRTY) == 0 && isLogEmpty(volume.get())
        && ntfs_volume_check_hiberfile(volume.get(), 0) == 0;
}

} // namespace kestro::clone
