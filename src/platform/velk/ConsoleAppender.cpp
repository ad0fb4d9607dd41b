// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/ConsoleAppender.h"

#include <cstdio>

namespace Velk::Core {

void ConsoleAppender::write(const QByteArray& line, const QDateTime& /*time*/)
{
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stderr);
    std::fflush(stderr);
}

} // namespace Velk::Core
