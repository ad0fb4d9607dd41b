// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/velk/Logger.h"

namespace Velk::Core {

/// Writes log lines to standard error.
class ConsoleAppender : public AbstractAppender
{
protected:
    void write(const QByteArray& line, const QDateTime& time) override;
};

} // namespace Velk::Core
