// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// What the kernel was booted with ("/proc/cmdline"); a field is empty when its parameter is absent.
struct CmdLineInfo
{
    QString bootImage;     ///< "BOOT_IMAGE="
    QString rootUuid;      ///< "root=", resolved to a file-system UUID
    QString boot;          ///< "boot="
    QString bootFrom;      ///< "boot-from="
    QString unionType;     ///< "union="
    QString liveMediaPath; ///< "live-media-path="
    QString toram;         ///< "toram="
};
