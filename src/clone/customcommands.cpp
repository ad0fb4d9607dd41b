// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/customcommands.h"

#include "clone/failure.h"
#include "clone/imagereader.h"
#include "clone/newimage.h"

#include <span>
#include <utility>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

CustomFileAddress parsedAddress(const std::string& text)
{
    auto address = parseCustomFileAddress(text);
    if (!address) {
        throw Failure(ExitCode::Usage, text + " is not an address of the form kim://IMAGE/NAME");
    }
    return std::move(*address);
}

std::vector<std::byte> fileContent(const std::string& path)
{
    const auto text = contentOf(path, largestCustomFile + 1);
    if (!text) {
        throw Failure(ExitCode::ReadError, "cannot read " + path + ": " + errorText(errno));
    }
    if (text->size() > largestCustomFile) {
        throw Failure(ExitCode::Refused, path + " is larger than 1 MiB");
    }
    const auto bytes = std::as_bytes(std::span(*text));
    return {bytes.begin(), bytes.end()};
}

std::vector<std::byte> encodedWithin(const CustomFiles& files)
{
    if (files.size() > mostCustomFiles) {
        throw Failure(ExitCode::Refused, "an image may have " + std::to_string(mostCustomFiles) + " custom files");
    }
    auto section = encodeCustomFiles(files);
    if (section.size() > largestCustomSection) {
        throw Failure(ExitCode::Refused, "the custom files of an image may have 16 MiB together");
    }
    return section;
}

/// The new files go behind everything that counts; the root that names them makes them count. Until then, and when the
/// power fails, the image is as it was.
void replaceCustomFiles(const std::string& path, const std::string& name, std::vector<std::byte> content)
{
    const File file = openLockedImage(path, O_RDWR);
    ImageHead head = readHead(file);
    if (head.root.complete) {
        (void)readChunkTable(file, head, readIndex(file, head));
    }
    CustomFiles files = readCustomFiles(file, head);
    files.insert_or_assign(name, std::move(content));
    RootRecord root = head.root;
    root.custom = writeSection(file, encodedWithin(files), root.fileSize);
    root.fileSize += root.custom.size;
    commitRoot(file, head, root);
}

[[noreturn]] void throwUnwritable(const std::string& file, const std::string& temporary)
{
    const int error = errno;
    ::unlink(temporary.c_str());
    throw Failure(ExitCode::WriteError, "cannot write " + file + ": " + errorText(error));
}

} // namespace

void writeCustomFile(const std::string& address, const std::string& file)
{
    const auto [path, name] = parsedAddress(address);
    auto content = fileContent(file);
    if (imageStateAt(path) == ImageState::Missing) {
        const NewImage begun(path);
    }
    if (imageStateAt(path) == ImageState::Foreign) {
        throw Failure(ExitCode::Refused, path + " exists and is no image; it is left alone");
    }
    replaceCustomFiles(path, name, std::move(content));
}

void readCustomFile(const std::string& address, const std::string& file)
{
    const auto [path, name] = parsedAddress(address);
    const File image = openImage(path, O_RDONLY);
    const ImageHead head = readHead(image);
    if (!head.root.complete) {
        throwInvalidImage(path, "it is incomplete");
    }
    const CustomFiles files = readCustomFiles(image, head);
    const auto found = files.find(name);
    if (found == files.end()) {
        throw Failure(ExitCode::Refused, path + " holds no file " + name);
    }
    std::string temporary = file + ".XXXXXX";
    const File target(::mkostemp(temporary.data(), O_CLOEXEC), temporary);
    // The record is no secret, and who asked for it through sudo must be able to read it.
    if (!target.isOpen() || ::fchmod(target.fd(), 0644) != 0) {
        throwUnwritable(file, temporary);
    }
    try {
        target.writeAt(std::as_bytes(std::span(found->second)), 0);
        target.sync();
    } catch (const Failure&) {
        ::unlink(temporary.c_str());
        throw;
    }
    if (::rename(temporary.c_str(), file.c_str()) != 0) {
        throwUnwritable(file, temporary);
    }
}

} // namespace kestro::clone
