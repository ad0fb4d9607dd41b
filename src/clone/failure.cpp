// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/failure.h"

#include <algorithm>
#include <system_error>

namespace kestro::clone {

void throwMismatch(const std::string& path, const std::string& place)
{
    throw Failure(ExitCode::Mismatch, path + " does not hold what was written to it" + place);
}

std::string oneLine(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }, '?');
    return text;
}

std::string errorText(int error)
{
    return std::generic_category().message(error);
}

} // namespace kestro::clone
