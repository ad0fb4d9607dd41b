// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/process.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestro::clone {

int runQuietly(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    std::transform(command.begin(), command.end(), std::back_inserter(arguments),
        [](const std::string& argument) { return const_cast<char*>(argument.c_str()); });
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", O_RDWR, 0);
    }
    pid_t child = -1;
    const int failed = posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    while (failed == 0 && ::waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    return failed == 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace kestro::clone
