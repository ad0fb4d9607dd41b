// SPDX-License-Identifier: GPL-3.0-or-later
#include "clone/readback.h"

#include "clone/alignedbuffer.h"
#include "clone/failure.h"
#include "clone/imagereader.h"
#include "clone/interruption.h"

#include <utility>

namespace kestro::clone {

namespace {

/// Large enough that making it durable costs little, small enough that little is left to check at the end.
constexpr std::uint64_t batchSize = 64ULL << 20U;

} // namespace

ReadBack::ReadBack(const File& image, std::uint32_t chunkSize)
    : m_image(image)
    , m_chunkSize(chunkSize)
    , m_thread([this] { run(); })
{ }

ReadBack::~ReadBack()
{
    end(State::GivenUp);
}

void ReadBack::add(const ChunkRecord& chunk)
{
    if (chunk.codec == Codec::Zero) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
    m_waiting.push_back(chunk);
    m_waitingBytes += chunk.storedSize;
    if (m_waitingBytes >= batchSize) {
        m_wake.notify_one();
    }
}

void ReadBack::finish()
{
    end(State::Finishing);
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

void ReadBack::end(State state)
{
    {
        const std::lock_guard lock(m_mutex);
        m_state = m_state == State::Adding ? state : m_state;
    }
    m_wake.notify_one();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void ReadBack::run()
{
    std::unique_lock lock(m_mutex);
    while (m_state == State::Adding || (m_state == State::Finishing && !m_waiting.empty() && !m_failure)) {
        m_wake.wait(lock, [this] { return m_state != State::Adding || (m_waitingBytes >= batchSize && !m_failure); });
        const auto batch = std::exchange(m_waiting, {});
        m_waitingBytes = 0;
        if (m_state == State::GivenUp || m_failure) {
            return;
        }
        lock.unlock();
        std::exception_ptr failure;
        try {
            checkBatch(batch);
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        m_failure = failure;
    }
}

void ReadBack::checkBatch(const std::vector<ChunkRecord>& batch)
{
    AlignedBuffer buffer(m_chunkSize);
    m_image.sync();
    m_image.dropCache();
    for (const ChunkRecord& chunk : batch) {
        throwIfInterrupted();
        try {
            (void)readStoredChunk(m_image, chunk, buffer);
        } catch (const Failure& failure) {
            if (failure.code() == ExitCode::InvalidImage) {
                throwMismatch(m_image.path());
            }
            throw;
        }
    }
}

} // namespace kestro::clone
