// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/blockdeviceinfo.h"

#include <QString>
#include <QStringList>

/// The arguments with which lsblk(8) prints what parseLsblkPairs() reads; sizes are whole bytes.
[[nodiscard]] QStringList lsblkPairsArguments();

/// The devices of an "lsblk --bytes --pairs" output, in output order, each with the paths that follow from its values.
/// Lines of another form (other columns, cut short) are left out.
[[nodiscard]] BlockDeviceList parseLsblkPairs(const QString& output);
