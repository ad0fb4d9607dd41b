// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace kestro::clone {

/// What the program's exit status says; the manual page lists the same values.
enum class ExitCode : int {
    Done = 0,
    Internal = 1,
    Usage = 2,
    InvalidImage = 3,
    Refused = 4,
    TooSmall = 5,
    Busy = 6,
    Overlap = 7,
    ReadError = 8,
    WriteError = 9,
    DiskFull = 10,
    Interrupted = 11,
    Holes = 12,
    Mismatch = 13,
    Denied = 14,
    NotRemounted = 15,
    Stalled = 16,
};

/// Ends the run: one sentence for the person and the exit status. It never leaves the program: runCommand turns it
/// into one line on standard error.
class Failure : public std::runtime_error
{
public:
    Failure(ExitCode code, const std::string& sentence, int systemError = 0)
        : std::runtime_error(sentence)
        , m_code(code)
        , m_systemError(systemError)
    { }

    [[nodiscard]] ExitCode code() const { return m_code; }
    /// The errno value behind it; 0 when there is none.
    [[nodiscard]] int systemError() const { return m_systemError; }

private:
    ExitCode m_code;
    int m_systemError;
};

/// Ends the run because what was read back is not what was written.
/// @param place where on the file or device, with a leading blank; empty when that is not known
[[noreturn]] void throwMismatch(const std::string& path, const std::string& place = {});

/// The text with every line break and other control character replaced, so that it prints as one line.
[[nodiscard]] std::string oneLine(std::string text);

/// The system's text for an errno value.
[[nodiscard]] std::string errorText(int error);

} // namespace kestro::clone
