// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct iovec;

namespace kestro::clone {

/// An open file or block device with its path for messages. Closes itself. Every operation that fails throws a Failure
/// that names the path and the place.
class File
{
public:
    File() = default;
    File(int fd, std::string path);
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    /// Opens with O_CLOEXEC. Failures: Denied for missing rights, Busy for EBUSY, else Refused.
    [[nodiscard]] static File open(const std::string& path, int flags, unsigned mode = 0600);
    /// As open, past the page cache where the file system can do that, else through it.
    [[nodiscard]] static File openDirect(const std::string& path, int flags, unsigned mode = 0600);

    [[nodiscard]] bool isOpen() const { return m_fd >= 0; }
    [[nodiscard]] int fd() const { return m_fd; }
    [[nodiscard]] const std::string& path() const { return m_path; }
    /// Size in bytes of a regular file or block device.
    [[nodiscard]] std::uint64_t size() const;

    /// Fills the buffer from the position, or throws ReadError.
    void readAt(std::span<std::byte> buffer, std::uint64_t position) const;
    /// Writes all of it, or throws DiskFull or WriteError.
    void writeAt(std::span<const std::byte> buffer, std::uint64_t position) const;
    /// The same for scattered memory at one contiguous place of the file; the vector is used up.
    void readAt(std::vector<iovec>& parts, std::uint64_t position) const;
    void writeAt(std::vector<iovec>& parts, std::uint64_t position) const;

    /// Makes everything written durable, or throws.
    void sync() const;
    /// Cuts or lengthens a regular file, or throws as writeAt does.
    void truncate(std::uint64_t size) const;
    /// Lets the page cache forget the file, so that the next read comes from the medium.
    void dropCache() const;

    /// Takes the advisory lock that keeps a second run away; waits a few seconds because udev holds it briefly while
    /// it probes a device. Throws Busy, or Refused where the file system knows no locks.
    void lockExclusively() const;
    /// The same for those who only need that nobody holds it exclusively.
    void lockShared() const;

    /// True while this very file stands at the path: not when another one took its place.
    [[nodiscard]] bool isAt(const std::string& path) const;

private:
    int m_fd = -1;
    std::string m_path;
};

/// Makes the directory entry of a file durable.
void syncDirectoryOf(const std::string& path);

/// The whole content of a file of at most limit bytes (more is cut off; files of /proc have no size); none when it
/// cannot be read.
[[nodiscard]] std::optional<std::string> contentOf(const std::string& path, std::size_t limit = 1U << 20U);

} // namespace kestro::clone
