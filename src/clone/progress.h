// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/interruption.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kestro::clone {

/// One stretch of the work: its name, and its share of the whole time as a guess.
struct Phase
{
    std::string name;
    double weight = 1;
};

/// What one line of progress tells.
struct ProgressFigures
{
    std::string phase;
    std::uint64_t done = 0;
    std::uint64_t total = 0;
    std::uint64_t bytesPerSecond = 0;
    /// Of all phases, 0 to 1.
    double fraction = 0;
    double elapsedSeconds = 0;
};

/// The line with its newline. Its last token, after a blank, is the percentage with two decimals.
[[nodiscard]] std::string progressLine(const ProgressFigures& figures);

/// The line of a finished run, which ends in "100.00%".
[[nodiscard]] std::string finishedLine(const std::string& sentence);

/// Prints a line at least once a second to standard output while it lives. The figure never goes backwards, and stays
/// below 100 until finish.
class Progress
{
public:
    /// Starts a thread that prints. @param whenAlone whether the run goes on when nobody reads the progress any more
    Progress(std::vector<Phase> phases, WhenAlone whenAlone);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Goes on to the next phase, which has so many bytes to do.
    void nextPhase(std::uint64_t total);
    /// So many bytes of the phase are done; from any thread.
    void add(std::uint64_t bytes);
    /// Asks the run to stop when nobody reads the progress any more and the run must not go on alone.
    void stopWithoutReader() const;
    /// Everything is done and checked: prints the last line. Throws WriteError when it cannot be written and the run
    /// must not go on alone.
    void finish(const std::string& sentence);

private:
    void run();
    /// Moves the highest figure; with the mutex held.
    [[nodiscard]] std::string currentLine();
    void print(const std::string& line) const;

    const std::vector<Phase> m_phases;
    const WhenAlone m_whenAlone;
    const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    std::atomic<std::uint64_t> m_done{0};
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::size_t m_started = 0;
    std::uint64_t m_total = 0;
    std::chrono::steady_clock::time_point m_phaseBegin = m_begin;
    double m_highest = 0;
    bool m_stop = false;
    std::thread m_printer;
};

} // namespace kestro::clone
