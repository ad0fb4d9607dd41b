// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/progress.h"

#include "clone/failure.h"
#include "clone/humansize.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <numeric>

#include <poll.h>
#include <unistd.h>

namespace kestro::clone {

namespace {

constexpr auto interval = std::chrono::milliseconds(500);
constexpr double almostDone = 0.9999;

double secondsBetween(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

std::string remainingTime(const ProgressFigures& figures)
{
    if (figures.fraction < 0.005 || figures.elapsedSeconds < 0.5) {
        return "-:--";
    }
    return clockTime(static_cast<std::uint64_t>(figures.elapsedSeconds * (1 - figures.fraction) / figures.fraction));
}

enum class Written { Yes, Skipped, ReaderGone };

/// What poll(2) says of standard output at this moment; 0 for nothing.
short outputEvents()
{
    pollfd descriptor{STDOUT_FILENO, POLLOUT, 0};
    return ::poll(&descriptor, 1, 0) > 0 ? descriptor.revents : short{0};
}

constexpr short readerGone = POLLERR | POLLNVAL;

/// Never waits for a reader: one that is stuck, for example because it logs to a file system that is frozen for this
/// very run, must not stop the run.
Written writeIfReady(const std::string& line)
{
    const short events = outputEvents();
    if (events == 0) {
        return Written::Skipped;
    }
    if ((events & readerGone) != 0 || ::write(STDOUT_FILENO, line.data(), line.size()) < 0) {
        return Written::ReaderGone;
    }
    return Written::Yes;
}

} // namespace

std::string progressLine(const ProgressFigures& figures)
{
    std::array<char, 32> percent{};
    std::snprintf(percent.data(), percent.size(), "%.2f%%", std::min(figures.fraction, almostDone) * 100);
    return figures.phase + "  " + humanSize(figures.done) + " of " + humanSize(figures.total) + "  "
        + humanSize(figures.bytesPerSecond) + "/s  ETA " + remainingTime(figures) + "  " + percent.data() + "\n";
}

std::string finishedLine(const std::string& sentence)
{
    return sentence + "  100.00%\n";
}

Progress::Progress(std::vector<Phase> phases, WhenAlone whenAlone)
    : m_phases(std::move(phases))
    , m_whenAlone(whenAlone)
    , m_printer([this] { run(); })
{ }

Progress::~Progress()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    if (m_printer.joinable()) {
        m_printer.join();
    }
}

void Progress::nextPhase(std::uint64_t total)
{
    const std::lock_guard lock(m_mutex);
    ++m_started;
    m_total = total;
    m_done = 0;
    m_phaseBegin = std::chrono::steady_clock::now();
}

void Progress::add(std::uint64_t bytes)
{
    m_done += bytes;
}

void Progress::stopWithoutReader() const
{
    const bool isGone = (outputEvents() & readerGone) != 0;
    const bool isClosed = ::write(STDOUT_FILENO, "", 0) < 0;
    if ((isGone || isClosed) && m_whenAlone == WhenAlone::Stop) {
        requestStop();
    }
}

void Progress::run()
{
    std::unique_lock lock(m_mutex);
    while (!m_stop) {
        const std::string line = currentLine();
        // Writing may take as long as the file system of the output stands still; nobody else waits for it.
        lock.unlock();
        print(line);
        lock.lock();
        m_wake.wait_for(lock, interval, [this] { return m_stop; });
    }
}

std::string Progress::currentLine()
{
    const auto now = std::chrono::steady_clock::now();
    const auto weight = [](double sum, const Phase& phase) { return sum + phase.weight; };
    const auto current = m_phases.begin() + static_cast<std::ptrdiff_t>(std::max<std::size_t>(m_started, 1) - 1);
    const double all = std::accumulate(m_phases.begin(), m_phases.end(), 0.0, weight);
    const double before = std::accumulate(m_phases.begin(), current, 0.0, weight);
    const double done = m_total == 0 ? 0 : static_cast<double>(m_done) / static_cast<double>(m_total);
    m_highest = std::max(m_highest, (before + std::min(done, 1.0) * current->weight) / all);
    const double phaseSeconds = std::max(secondsBetween(m_phaseBegin, now), 0.001);
    return progressLine(
        {current->name, m_done, m_total, static_cast<std::uint64_t>(static_cast<double>(m_done) / phaseSeconds),
            m_highest, secondsBetween(m_begin, now)});
}

void Progress::print(const std::string& line) const
{
    if (writeIfReady(line) == Written::ReaderGone && m_whenAlone == WhenAlone::Stop) {
        requestStop();
    }
}

void Progress::finish(const std::string& sentence)
{
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    m_printer.join();
    const std::string line = finishedLine(sentence);
    if (::write(STDOUT_FILENO, line.data(), line.size()) < 0 && m_whenAlone == WhenAlone::Stop) {
        throw Failure(ExitCode::WriteError, "cannot write to standard output: " + errorText(errno));
    }
}

} // namespace kestro::clone
