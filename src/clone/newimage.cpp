// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/newimage.h"

#include "clone/failure.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

/// Images hold people's data: only their owner may read them, also when a file with wider rights was there.
File openForImage(const std::string& path)
{
    File file = File::openDirect(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    ::fchmod(file.fd(), 0600);
    file.lockExclusively();
    return file;
}

CustomFiles keptCustomFiles(const File& image)
{
    return readCustomFiles(image, readHead(image));
}

} // namespace

NewImage::NewImage(const std::string& path)
    : m_path(path)
{
    const ImageState state = imageStateAt(path);
    if (state == ImageState::Foreign) {
        throw Failure(ExitCode::Refused, path + " exists and is no image; it is left alone");
    }
    if (state == ImageState::Damaged) {
        throw Failure(ExitCode::InvalidImage, "a damaged image stands at " + path + "; remove it first");
    }
    CustomFiles custom;
    m_beside = state == ImageState::Complete;
    if (m_beside) {
        m_old = openForImage(path);
        custom = keptCustomFiles(m_old);
    }
    m_file = openForImage(m_beside ? path + ".new" : path);
    if (state == ImageState::Incomplete) {
        custom = keptCustomFiles(m_file);
    }
    m_head = writeFreshHead(m_file, custom);
    syncDirectoryOf(m_file.path());
}

NewImage::~NewImage()
{
    if (m_beside) {
        ::unlink(m_file.path().c_str());
    }
}

void NewImage::takePlace()
{
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
