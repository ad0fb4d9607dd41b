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

/// The memory of a run at any size that the program aims at, without the program itself.
constexpr std::uint64_t budget = 52ULL << 20U;
/// An extent, and its place in the content.
constexpr std::uint64_t bytesOfExtent = sizeof(Extent) + sizeof(std::uint64_t);
/// What one thread needs besides two buffers, most of it for the compressor.
constexpr std::uint64_t bytesOfThread = 3ULL << 20U;

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

/// False when there is no room for another thread: fewer come to the same end. Throws when there is none for the first.
bool startAnother(std::vector<std::jthread>& crew, Shared& shared, const std::function<ChunkTask()>& makeTask)
{
    try {
        crew.emplace_back([&shared, &makeTask] { work(shared, makeTask); });
        return true;
    } catch (...) {
        if (crew.empty()) {
            throw;
        }
        return false;
    }
}

} // namespace

unsigned crewSize(const ImageIndex& index, std::uint64_t otherBytes)
{
    const std::uint64_t taken = index.extents.size() * bytesOfExtent + otherBytes;
    const std::uint64_t left = budget - std::min(budget, taken);
    const auto fitting = static_cast<unsigned>(left / (2ULL * index.chunkSize + bytesOfThread));
    return std::clamp(fitting, 2U, 32U);
}

void runCrew(std::uint64_t first, std::uint64_t last, unsigned threads, const std::function<ChunkTask()>& makeTask)
{
    Shared shared{.next = first, .last = last, .stop = false, .mutex = {}, .failure = nullptr};
    {
        std::vector<std::jthread> crew;
        const auto wanted = std::min<std::uint64_t>(threads, last - first);
        while (crew.size() < wanted && startAnother(crew, shared, makeTask)) { }
    }
    if (shared.failure) {
        std::rethrow_exception(shared.failure);
    }
}

} // namespace kestro::clone
