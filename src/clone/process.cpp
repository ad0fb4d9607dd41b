// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/process.h"

#include "clone/failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iterator>
#include <memory>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

/// Starts a program with its standard output on the given open file; -1 when that fails.
pid_t startedWith(const std::vector<std::string>& command, int output)
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
    if (output >= 0) {
        posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    }
    pid_t child = -1;
    const int failed = posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return failed == 0 ? child : -1;
}

int exitCodeOf(pid_t child)
{
    int status = -1;
    while (child > 0 && ::waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    return child > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct CloseStream
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

} // namespace

int runQuietly(const std::vector<std::string>& command)
{
    return exitCodeOf(startedWith(command, -1));
}

int runForLines(const std::vector<std::string>& command, const std::function<void(std::string_view line)>& take)
{
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw Failure(ExitCode::Internal, "cannot make a pipe: " + errorText(errno));
    }
    std::unique_ptr<std::FILE, CloseStream> output(::fdopen(ends[0], "r"));
    const pid_t child = startedWith(command, ends[1]);
    ::close(ends[1]);
    std::array<char, 4096> buffer{};
    while (output && std::fgets(buffer.data(), buffer.size(), output.get()) != nullptr) {
        std::string_view line(buffer.data());
        line.remove_suffix(line.ends_with('\n') ? 1 : 0);
        take(line);
    }
    // A signal ends the reading too; the program would then wait for ever for somebody to read the rest.
    const bool whole = output && std::feof(output.get()) != 0;
    output.reset();
    if (!whole && child > 0) {
        ::kill(child, SIGTERM);
    }
    const int exitCode = exitCodeOf(child);
    return whole ? exitCode : -1;
}

} // namespace kestro::clone
