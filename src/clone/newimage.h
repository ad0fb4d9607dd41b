// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/file.h"
#include "clone/imagehead.h"

#include <string>

namespace kestro::clone {

/// The file that a new image is written to. Custom files that stand at the path already are kept. A complete image at
/// the path stays there until the new one takes its place, which is made beside it under a name that nothing else has;
/// anything that is no image is refused.
class NewImage
{
public:
    /// Opens, locks and begins the file. Throws Refused, Busy, Denied or InvalidImage and leaves what is there alone.
    explicit NewImage(const std::string& path);
    /// Removes a file that was begun beside a complete image and did not take its place.
    ~NewImage();
    NewImage(const NewImage&) = delete;
    NewImage& operator=(const NewImage&) = delete;

    [[nodiscard]] const File& file() const { return m_file; }
    [[nodiscard]] const ImageHead& head() const { return m_head; }

    /// The image is complete: from now on it is the one at the path, durably. Throws Refused when something else came
    /// to stand there in the meantime.
    void takePlace();

private:
    void removeUnfinished() noexcept;

    std::string m_path;
    bool m_beside = false;
    File m_old;
    File m_file;
    ImageHead m_head;
};

} // namespace kestro::clone
