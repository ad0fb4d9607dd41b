// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/file.h"

#include "clone/failure.h"
#include "clone/humansize.h"

#include <chrono>
#include <algorithm>
#include <filesystem>
#include <thread>
#include <utility>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

ExitCode openFailureCode(int error)
{
    if (error == EACCES || error == EPERM) {
        return ExitCode::Denied;
    }
    return error == EBUSY ? ExitCode::Busy : ExitCode::Refused;
}

[[noreturn]] void throwReadError(const std::string& path, std::uint64_t position, int error)
{
    const std::string reason = error == 0 ? "it ends there" : errorText(error);
    throw Failure(
        ExitCode::ReadError, "cannot read " + path + " at byte " + std::to_string(position) + ": " + reason, error);
}

[[noreturn]] void throwWriteError(const std::string& path, std::uint64_t position, int error)
{
    if (error == ENOSPC || error == EDQUOT || error == EFBIG) {
        throw Failure(ExitCode::DiskFull,
            "no space left for " + path + " after " + exactSize(position) + ": " + errorText(error));
    }
    throw Failure(ExitCode::WriteError,
        "cannot write " + path + " at byte " + std::to_string(position) + ": " + errorText(error));
}

/// Drops the first bytes of the scattered memory, after a transfer that was shorter than asked.
void advance(std::vector<iovec>& parts, std::size_t& first, std::size_t bytes)
{
    while (bytes > 0) {
        iovec& part = parts[first];
        const std::size_t step = std::min(bytes, part.iov_len);
        part.iov_base = static_cast<char*>(part.iov_base) + step;
        part.iov_len -= step;
        bytes -= step;
        first += part.iov_len == 0 ? 1 : 0;
    }
}

using Transfer = ssize_t (*)(int, const iovec*, int, off_t);
using Complaint = void (*)(const std::string&, std::uint64_t, int);

void transferAll(
    const File& file, std::vector<iovec>& parts, std::uint64_t position, Transfer transfer, Complaint complain)
{
    // The kernel's answer to nothing at all cannot be told from the end of a file.
    std::erase_if(parts, [](const iovec& part) { return part.iov_len == 0; });
    std::size_t first = 0;
    while (first < parts.size()) {
        const int count = static_cast<int>(std::min<std::size_t>(parts.size() - first, IOV_MAX));
        const ssize_t done = transfer(file.fd(), parts.data() + first, count, static_cast<off_t>(position));
        if (done < 0 && errno == EINTR) {
            continue;
        }
        if (done <= 0) {
            complain(file.path(), position, done < 0 ? errno : 0);
        }
        advance(parts, first, static_cast<std::size_t>(done));
        position += static_cast<std::uint64_t>(done);
    }
}

void lock(const File& file, int kind)
{
    constexpr int tries = 30;
    for (int i = 0; ::flock(file.fd(), kind | LOCK_NB) != 0; ++i) {
        // Network file systems have errors of their own here, which say nothing of another run.
        if (const int error = errno; error != EWOULDBLOCK && error != EINTR) {
            throw Failure(ExitCode::Refused, "cannot lock " + file.path() + ": " + errorText(error));
        }
        if (i == tries) {
            throw Failure(ExitCode::Busy, file.path() + " is in use by another run");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

} // namespace

File::File(int fd, std::string path)
    : m_fd(fd)
    , m_path(std::move(path))
{ }

File::File(File&& other) noexcept
    : m_fd(std::exchange(other.m_fd, -1))
    , m_path(std::move(other.m_path))
{ }

File& File::operator=(File&& other) noexcept
{
    std::swap(m_fd, other.m_fd);
    std::swap(m_path, other.m_path);
    return *this;
}

File::~File()
{
    if (m_fd >= 0) {
        ::close(m_fd);
    }
}

File File::open(const std::string& path, int flags, unsigned mode)
{
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC, mode);
    if (fd < 0) {
        const int error = errno;
        throw Failure(openFailureCode(error), "cannot open " + path + ": " + errorText(error));
    }
    return {fd, path};
}

File File::openDirect(const std::string& path, int flags, unsigned mode)
{
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC | O_DIRECT, mode);
    // Some network and memory file systems know no direct input and output.
    return fd >= 0 ? File(fd, path) : open(path, flags, mode);
}

std::uint64_t File::size() const
{
    struct stat status
    {
    };
    std::uint64_t bytes = 0;
    if (::fstat(m_fd, &status) != 0 || (S_ISBLK(status.st_mode) && ::ioctl(m_fd, BLKGETSIZE64, &bytes) != 0)) {
        throw Failure(ExitCode::ReadError, "cannot tell the size of " + m_path + ": " + errorText(errno));
    }
    return S_ISBLK(status.st_mode) ? bytes : static_cast<std::uint64_t>(status.st_size);
}

void File::readAt(std::span<std::byte> buffer, std::uint64_t position) const
{
    std::vector<iovec> parts{{buffer.data(), buffer.size()}};
    readAt(parts, position);
}

void File::writeAt(std::span<const std::byte> buffer, std::uint64_t position) const
{
    std::vector<iovec> parts{{const_cast<std::byte*>(buffer.data()), buffer.size()}};
    writeAt(parts, position);
}

void File::readAt(std::vector<iovec>& parts, std::uint64_t position) const
{
    transferAll(*this, parts, position, ::preadv, throwReadError);
}

void File::writeAt(std::vector<iovec>& parts, std::uint64_t position) const
{
    transferAll(*this, parts, position, ::pwritev, throwWriteError);
}

void File::sync() const
{
    if (::fsync(m_fd) != 0) {
        const int error = errno;
        const ExitCode code = error == ENOSPC || error == EDQUOT ? ExitCode::DiskFull : ExitCode::WriteError;
        throw Failure(code, "cannot make " + m_path + " durable: " + errorText(error));
    }
}

void File::truncate(std::uint64_t size) const
{
    if (::ftruncate(m_fd, static_cast<off_t>(size)) != 0) {
        throwWriteError(m_path, size, errno);
    }
}

void File::dropCache() const
{
    ::posix_fadvise(m_fd, 0, 0, POSIX_FADV_DONTNEED);
}

void File::lockExclusively() const
{
    lock(*this, LOCK_EX);
}

void File::lockShared() const
{
    lock(*this, LOCK_SH);
}

bool File::isAt(const std::string& path) const
{
    struct stat mine
    {
    };
    struct stat there
    {
    };
    return ::fstat(m_fd, &mine) == 0 && ::stat(path.c_str(), &there) == 0 && mine.st_dev == there.st_dev
        && mine.st_ino == there.st_ino;
}

void syncDirectoryOf(const std::string& path)
{
    const auto parent = std::filesystem::path(path).parent_path();
    File::open(parent.empty() ? "." : parent.string(), O_RDONLY | O_DIRECTORY).sync();
}

std::optional<std::string> contentOf(const std::string& path, std::size_t limit)
{
    const File file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK), path);
    std::string content;
    std::vector<char> part(64U << 10U);
    ssize_t got = -1;
    while (file.isOpen() && content.size() < limit
        && (got = ::read(file.fd(), part.data(), std::min(part.size(), limit - content.size()))) > 0) {
        content.append(part.data(), static_cast<std::size_t>(got));
    }
    if (!file.isOpen() || got < 0) {
        return std::nullopt;
    }
    return content;
}

} // namespace kestro::clone
