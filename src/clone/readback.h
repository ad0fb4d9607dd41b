// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "clone/file.h"
#include "clone/imageformat.h"

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace kestro::clone {

/// Reads chunks back from the medium and checks their hashes while others are still being written: each batch is made
/// durable first, and read past the page cache.
class ReadBack
{
public:
    /// Keeps the reference to the image, which must outlive this object.
    ReadBack(const File& image, std::uint32_t chunkSize);
    /// Gives up what has not been checked.
    ~ReadBack();
    ReadBack(const ReadBack&) = delete;
    ReadBack& operator=(const ReadBack&) = delete;

    /// A chunk has been written; from any thread. Throws what checking another one failed with.
    void add(const ChunkRecord& chunk);

    /// Returns when every chunk has been checked, or throws what was wrong.
    void finish();

private:
    enum class State { Adding, Finishing, GivenUp };

    void run();
    void checkBatch(const std::vector<ChunkRecord>& batch);
    void end(State state);

    const File& m_image;
    const std::uint32_t m_chunkSize;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::vector<ChunkRecord> m_waiting;
    std::uint64_t m_waitingBytes = 0;
    State m_state = State::Adding;
    std::exception_ptr m_failure;
    std::thread m_thread;
};

} // namespace kestro::clone
