// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/crew.h"

#include "clone/interruption.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace kestro::clone {

namespace {

/// All buffers of all threads together, with some room for the compressor: the rest of 64 MiB is for the index.
constexpr std::uint64_t bufferBudget = 44ULL << 20U;

struct Shared
{
    std::atomic<std::uint64_t> next;
    std::uint64_t last;
    std::atomic<bool> stop{false};
    std::mutex mutex;
    std::exception_ptr failure;
};

void work(Shared& shared, const std::function<ChunkTask()>& makeTask)
{
    try {
        const ChunkTask task = makeTask();
        std::uint64_t chunk = 0;
        while (!shared.stop && (chunk = shared.next.fetch_add(1)) < shared.last) {
            throwIfInterrupted();
            task(chunk);
        }
    } catch (...) {
        const std::lock_guard lock(shared.mutex);
        if (!shared.failure) {
            shared.failure = std::current_exception();
        }
        shared.stop = true;
    }
}

} // namespace

unsigned crewSize(std::uint32_t chunkSize)
{
    const auto fitting = static_cast<unsigned>(bufferBudget / (2ULL * chunkSize + (3ULL << 20U)));
    return std::clamp(std::min(fitting, std::thread::hardware_concurrency() + 2), 1U, 32U);
}

void runCrew(std::uint64_t first, std::uint64_t last, unsigned threads, const std::function<ChunkTask()>& makeTask)
{
    Shared shared{.next = first, .last = last, .stop = false, .mutex = {}, .failure = nullptr};
    {
        std::vector<std::jthread> crew;
        for (unsigned i = 0; i < std::min<std::uint64_t>(threads, last - first); ++i) {
            crew.emplace_back([&shared, &makeTask] { work(shared, makeTask); });
        }
    }
    if (shared.failure) {
        std::rethrow_exception(shared.failure);
    }
}

} // namespace kestro::clone
