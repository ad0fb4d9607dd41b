// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/infocommand.h"

#include "clone/failure.h"
#include "clone/imageinfo.h"

#include <array>
#include <cstdio>
#include <filesystem>

#include <cerrno>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

int printInvalid(const std::string& reason)
{
    constexpr const char* mark = "invalid file";
    std::fprintf(stdout, "%s\n", mark);
    const std::string sentence = reason.starts_with(mark) ? reason : std::string(mark) + ": " + reason;
    std::fprintf(stderr, "kestro-clone: %s\n", oneLine(sentence).c_str());
    return static_cast<int>(ExitCode::InvalidImage);
}

/// Runs this program once more as root, with its standard output and without its standard error. Root never does this,
/// so it cannot go round.
int askAsRoot(const std::string& image, bool json)
{
    std::error_code error;
    const std::string self = std::filesystem::read_symlink("/proc/self/exe", error).string();
    const std::string absolute = std::filesystem::absolute(image, error).string();
    const std::array<const char*, 7> arguments{
        "sudo", "-n", self.c_str(), "--kim-info", absolute.c_str(), json ? "--json" : nullptr, nullptr};
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return -1;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
        ::execvp("sudo", const_cast<char* const*>(arguments.data()));
        ::_exit(127);
    }
    ::close(ends[1]);
    std::string output;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
        output.append(buffer.data(), static_cast<std::size_t>(got));
    }
    ::close(ends[0]);
    int status = -1;
    while (child > 0 && ::waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    const bool good = child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return good && std::fputs(output.c_str(), stdout) >= 0 ? 0 : -1;
}

} // namespace

int printInfo(const std::string& image, bool json)
{
    try {
        const ImageReader reader(image);
        const std::string text = json ? describeImageAsJson(reader) : describeImage(reader);
        return std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? static_cast<int>(ExitCode::WriteError)
                                                                                : 0;
    } catch (const Failure& failure) {
        if (failure.code() == ExitCode::Denied && ::geteuid() != 0 && askAsRoot(image, json) == 0) {
            return 0;
        }
        return printInvalid(failure.what());
    } catch (const std::exception& error) {
        return printInvalid(error.what());
    }
}

} // namespace kestro::clone
