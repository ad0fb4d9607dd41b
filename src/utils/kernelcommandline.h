// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
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

/// One parameter of the kernel command line that CmdLineInfo knows.
struct KernelParameter
{
    QString CmdLineInfo::*field = nullptr; ///< where it belongs
    QString value;                         ///< the part after the last "=", white space simplified
    bool isDevicePath = false;             ///< a "root=" that gives a device instead of a "UUID="
};

/// The known parameters of a kernel command line, in its order.
[[nodiscard]] QList<KernelParameter> parseKernelParameters(const QByteArray& commandLine);
