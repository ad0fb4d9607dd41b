// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/stillmount.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <vector>

#include <sys/types.h>

namespace kestro::clone {

/// What the two processes share.
struct WatchdogState;

/// A process of its own that sets held mounts going again when this process ends, however it ends, and when this
/// process has said nothing for too long: a person's system must not stand still for as long as a device hangs.
class Watchdog
{
public:
    using Patience = std::chrono::milliseconds;

    /// For mounts with these open roots, none of which is held yet. Throws Internal.
    Watchdog(const std::vector<int>& roots, Patience patience);
    /// Waits for its end. It releases what it has been told of and not been told to forget.
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    /// Says how one of the mounts is about to be held, or that it is not held any more. False when nobody listens.
    [[nodiscard]] bool tell(std::size_t mount, Stillness way);

    /// Waits so long from now on, beginning now.
    void setPatience(Patience patience);

    [[nodiscard]] Patience patience() const { return m_patience; }

    /// Says that the run goes on. Cheap; from any thread.
    void beat();

    /// True when it waited for too long and has released, or is releasing, every mount.
    [[nodiscard]] bool gaveUp() const;

    /// Announces that this process releases the mounts now. False when the watchdog has given up and done it already.
    [[nodiscard]] bool takeOver();

private:
    [[nodiscard]] bool send(int mount, Stillness way);
    void end();

    WatchdogState* m_state = nullptr;
    std::atomic<Patience> m_patience;
    std::atomic<std::chrono::steady_clock::time_point> m_lastBeat;
    pid_t m_process = -1;
    int m_lifeline = -1;
};

} // namespace kestro::clone
