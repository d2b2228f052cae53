#include "platform/sound/CaptureBufferPool.h"

#include <QtGlobal>

#include <algorithm>
#include <utility>

namespace lumaphone {

CaptureBufferPool::CaptureBufferPool(std::size_t bytesPerBuffer, std::size_t bufferCount)
    : m_bytesPerBuffer(bytesPerBuffer)
    , m_storage(bytesPerBuffer * bufferCount)
    , m_full(bufferCount)
{
    Q_ASSERT(bytesPerBuffer > 0 && bufferCount >= 3);
    m_free.reserve(bufferCount);
    for (std::size_t buffer = bufferCount - 1; buffer > 0; --buffer) {
        m_free.push_back(buffer);
    }
}

void CaptureBufferPool::append(const std::byte *data, std::size_t bytes)
{
    while (bytes > 0) {
        const std::span<std::byte> room = storage(m_filling).subspan(m_filledBytes);
        const std::size_t part = std::min(bytes, room.size());
        if (data) {
            std::copy_n(data, part, room.begin());
            data += part;
        } else {
            std::fill_n(room.begin(), part, std::byte {0});
        }
        bytes -= part;
        m_filledBytes += part;
        if (m_filledBytes == m_bytesPerBuffer) {
            finishBuffer();
        }
    }
}

std::optional<std::span<const std::byte>> CaptureBufferPool::take()
{
    Q_ASSERT(!m_taken);
    if (m_fullCount == 0) {
        return std::nullopt;
    }
    m_taken = takeOldest();
    return storage(*m_taken);
}

void CaptureBufferPool::release()
{
    if (const auto buffer = std::exchange(m_taken, std::nullopt)) {
        m_free.push_back(*buffer);
    }
}

void CaptureBufferPool::clear()
{
    while (m_fullCount > 0) {
        m_free.push_back(takeOldest());
    }
    m_filledBytes = 0;
}

std::span<std::byte> CaptureBufferPool::storage(std::size_t buffer)
{
    return std::span(m_storage).subspan(buffer * m_bytesPerBuffer, m_bytesPerBuffer);
}

void CaptureBufferPool::finishBuffer()
{
    m_full[(m_firstFull + m_fullCount) % m_full.size()] = m_filling;
    ++m_fullCount;
    m_filledBytes = 0;
    if (m_free.empty()) {
        m_filling = takeOldest();
        ++m_dropped;
        return;
    }
    m_filling = m_free.back();
    m_free.pop_back();
}

std::size_t CaptureBufferPool::takeOldest()
{
    const std::size_t oldest = m_full[m_firstFull];
    m_firstFull = (m_firstFull + 1) % m_full.size();
    --m_fullCount;
    return oldest;
}

} // namespace lumaphone
