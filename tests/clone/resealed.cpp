// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/resealed.h"

#include "clone/imageformat.h"

#include <cstring>
#include <span>

using namespace kestro::clone;

namespace {

/// The hash at the end of a header or of a root record.
void sealRecord(ImageBytes& image, std::size_t position, std::size_t size)
{
    putNumber(image, position + size - 8, hashOf(std::span(image).subspan(position, size - 8)));
}

/// The hash of a section that a root record names.
void sealSection(ImageBytes& image, std::size_t entry)
{
    const std::uint64_t position = numberAt(image, entry);
    const std::uint64_t size = numberAt(image, entry + 8);
    if (size <= image.size() && position <= image.size() - size) {
        putNumber(image, entry + 16, hashOf(std::span(image).subspan(position, size)));
    }
}

} // namespace

std::uint64_t numberAt(const ImageBytes& image, std::size_t position)
{
    std::uint64_t value = 0;
    std::memcpy(&value, image.data() + position, sizeof value);
    return value;
}

void putNumber(ImageBytes& image, std::size_t position, std::uint64_t value)
{
    std::memcpy(image.data() + position, &value, sizeof value);
}

void reseal(ImageBytes& image, unsigned what)
{
    if (image.size() < bodyPosition) {
        return;
    }
    for (const std::size_t root : {rootPosition, rootPosition + rootSize}) {
        for (const std::size_t entry : sectionEntries) {
            if ((what & sealSections) != 0) {
                sealSection(image, root + entry);
            }
        }
        if ((what & sealRoots) != 0) {
            sealRecord(image, root, rootRecordSize);
        }
    }
    if ((what & sealHeader) != 0) {
        sealRecord(image, 0, headerSize);
    }
}
