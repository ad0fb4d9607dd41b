// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/newimage.h"

#include "clone/failure.h"
#include "clone/guards.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestro::clone {

namespace fs = std::filesystem;

namespace {

/// What a file beside a complete image is called: the image's name, this, and six random characters.
constexpr const char* besideMark = ".new-";
constexpr const char* besideRandom = "XXXXXX";

/// The state of what stands at the path; throws when that must not be touched.
ImageState replaceableStateAt(const std::string& path)
{
    const ImageState state = imageStateAt(path);
    if (state == ImageState::Foreign) {
        throw Failure(ExitCode::Refused, path + " exists and is no image; it is left alone");
    }
    if (state == ImageState::Damaged) {
        throw Failure(ExitCode::InvalidImage, "a damaged image stands at " + path + "; remove it first");
    }
    return state;
}

/// A new file of a name that nothing had.
File openBeside(const std::string& path)
{
    std::string name = path + besideMark + besideRandom;
    const int fd = ::mkostemp(name.data(), O_CLOEXEC);
    if (fd < 0) {
        const int error = errno;
        throw Failure(error == EACCES ? ExitCode::Denied : ExitCode::Refused,
            "cannot make a file beside " + path + ": " + errorText(error));
    }
    File file(fd, name);
    // Fails on file systems that know no direct input and output, which then goes through the page cache.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_DIRECT);
    file.lockExclusively();
    return file;
}

bool hasBesideName(const std::string& name, const std::string& imageName)
{
    const std::string begin = imageName + besideMark;
    return name.starts_with(begin) && name.size() == begin.size() + std::string(besideRandom).size();
}

/// True for what a killed run began: an image that was never completed, and that nobody works on.
bool isAbandoned(const std::string& path)
{
    try {
        const File file = openImage(path, O_RDONLY);
        return imageStateAt(path) == ImageState::Incomplete && ::flock(file.fd(), LOCK_EX | LOCK_NB) == 0;
    } catch (const Failure&) {
        return false;
    }
}

/// Runs that were killed could not remove what they had begun. Only to be called while the image's lock is held.
void removeAbandonedBeside(const std::string& path)
{
    const fs::path image(path);
    const fs::path folder = image.has_parent_path() ? image.parent_path() : fs::path(".");
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        if (hasBesideName(name, image.filename().string()) && isAbandoned(entry.path().string())) {
            fs::remove(entry.path(), error);
        }
    }
}

CustomFiles keptCustomFiles(const File& image, ImageState state)
{
    return state == ImageState::Missing ? CustomFiles{} : readCustomFiles(image, readHead(image));
}

} // namespace

NewImage::NewImage(const std::string& path)
    : m_path(path)
{
    refuseImageAmongDevices(path);
    // Once before anything is opened for writing, and again when nobody else can change it any more.
    (void)replaceableStateAt(path);
    File there = openLockedImage(path, O_RDWR | O_CREAT | O_NOFOLLOW);
    const ImageState state = replaceableStateAt(path);
    const CustomFiles custom = keptCustomFiles(there, state);
    m_beside = state == ImageState::Complete;
    if (m_beside) {
        removeAbandonedBeside(path);
        m_old = std::move(there);
        m_file = openBeside(path);
    } else {
        m_file = std::move(there);
    }
    // Images hold people's data: only their owner may read them, also when a file with wider rights was there.
    ::fchmod(m_file.fd(), 0600);
    try {
        m_head = writeFreshHead(m_file, custom);
        syncDirectoryOf(m_file.path());
    } catch (...) {
        removeUnfinished();
        throw;
    }
}

NewImage::~NewImage()
{
    removeUnfinished();
}

void NewImage::removeUnfinished() noexcept
{
    if (m_beside) {
        ::unlink(m_file.path().c_str());
    }
}

void NewImage::takePlace()
{
    const File& expected = m_beside ? m_old : m_file;
    if (!expected.isAt(m_path)) {
        throw Failure(ExitCode::Refused, "what stood at " + m_path + " was moved or replaced meanwhile");
    }
    if (!m_beside) {
        return;
    }
    if (::rename(m_file.path().c_str(), m_path.c_str()) != 0) {
        throw Failure(ExitCode::WriteError, "cannot replace " + m_path + ": " + errorText(errno));
    }
    m_beside = false;
    syncDirectoryOf(m_path);
}

} // namespace kestro::clone
