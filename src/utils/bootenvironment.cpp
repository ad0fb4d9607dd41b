// SPDX-License-Identifier: GPL-3.0-or-later
#include "bootenvironment.h"

using namespace Qt::StringLiterals;

namespace {

BootEnvironment liveEnvironment(const CmdLineInfo& info)
{
    if (info.unionType == "overlay"_L1 && info.bootImage.startsWith("/live/vmlinuz"_L1)) {
        return BootEnvironment::LiveSystem;
    }
    if (info.toram == "filesystem.squashfs"_L1 && info.liveMediaPath == "usr/doppel"_L1) {
        return BootEnvironment::OtherRoot;
    }
    if (info.liveMediaPath == "recovery_live"_L1 && info.bootImage.startsWith("/kestro/vmlinuz"_L1)) {
        return BootEnvironment::RecoveryLive;
    }
    return BootEnvironment::Unknown;
}

} // namespace

bool isLiveBoot(const CmdLineInfo& info)
{
    return info.boot == "live"_L1;
}

BootEnvironment bootEnvironment(const CmdLineInfo& info, const FSTabInfoList& fstab)
{
    if (isLiveBoot(info)) {
        return liveEnvironment(info);
    }
    if (info.rootUuid.isEmpty()) {
        return BootEnvironment::Unknown;
    }
    const FSTabInfoPtr root = FSTab::findByUUID(fstab, info.rootUuid);
    return root && root->mountPoint == "/"_L1 ? BootEnvironment::InstalledSystem : BootEnvironment::OtherRoot;
}
