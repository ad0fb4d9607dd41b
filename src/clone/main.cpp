// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/commandline.h"

#include <array>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// A file that is opened must not become what somebody takes for the standard output. What stands there instead cannot
/// be written to, so that a closed output still counts as one that nobody reads.
void fillStandardDescriptors()
{
    for (const int descriptor : std::array{STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            [[maybe_unused]] const int opened = ::open("/dev/null", O_RDONLY);
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    fillStandardDescriptors();
    return kestro::clone::runCommand({argv + 1, argv + argc});
}
