// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/customfiles.h"
#include "clone/file.h"
#include "clone/imageformat.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace kestro::clone {

/// The part of an image that says what the file is: the header and the root record in force.
struct ImageHead
{
    ImageId id{};
    RootRecord root;
    /// Which of the two places holds the record in force: 0 or 1. A new record goes to the other one.
    unsigned slot = 0;
};

/// Opens a regular file past the page cache; throws InvalidImage for anything else, also for a FIFO, without waiting,
/// and for what is missing and shall not be made.
[[nodiscard]] File openImage(const std::string& path, int flags);

/// As openImage, and locks the image exclusively. What is locked is what stands at the path then, also when another run
/// put a new image there while this one waited. Throws Busy too.
[[nodiscard]] File openLockedImage(const std::string& path, int flags);

/// Reads the head of an open image. Throws InvalidImage when the header or *either* root record is damaged or the file
/// is shorter than the root says: no record is trusted over a damaged one.
[[nodiscard]] ImageHead readHead(const File& image);

/// Makes an open file an empty, incomplete image with these custom files, durably. What the file held before is lost. A
/// power cut on the way leaves an incomplete image, or what counts as none at all.
[[nodiscard]] ImageHead writeFreshHead(const File& image, const CustomFiles& files);

/// Puts a new root record in force: writes it to the place that is not in use and makes it durable.
void commitRoot(const File& image, ImageHead& head, const RootRecord& root);

/// Writes bytes of any size at a block position, padded, and says which section they are.
[[nodiscard]] Section writeSection(const File& image, std::span<const std::byte> bytes, std::uint64_t position);

/// The custom files of an image. Throws InvalidImage when they are damaged.
[[nodiscard]] CustomFiles readCustomFiles(const File& image, const ImageHead& head);

/// What stands at a path, for those who want to write an image there.
enum class ImageState { Missing, Foreign, Damaged, Incomplete, Complete };

/// Missing also for an empty file, and for one that ends with its head and was never more than begun. Throws when the
/// path cannot be read or is no regular file.
[[nodiscard]] ImageState imageStateAt(const std::string& path);

/// Reads a section from front to back through a small aligned buffer and checks its hash.
class SectionReader
{
public:
    SectionReader(const File& image, const Section& section);
    ~SectionReader();
    SectionReader(const SectionReader&) = delete;
    SectionReader& operator=(const SectionReader&) = delete;

    /// Copies the next bytes; throws InvalidImage behind the end.
    void read(std::span<std::byte> target);
    /// Reads what is left; false when the section's hash is wrong.
    [[nodiscard]] bool finish();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// The whole of a small section. Throws InvalidImage when its hash is wrong.
[[nodiscard]] std::vector<std::byte> readSection(const File& image, const Section& section);

/// The failure of a file that is no good image, with the reason.
[[noreturn]] void throwInvalidImage(const std::string& path, const std::string& reason);

} // namespace kestro::clone
