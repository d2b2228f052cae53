#pragma once

#include "base/SerialQueue.h"
#include "platform/SoundRecorder.h"

#include <QStringList>

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

namespace lumaphone::test {

/// Remembers everything a recording delivers, and how. Its getters may be called from any thread.
class RecordedSound final
{
public:
    /// Buffers are expected on this queue.
    explicit RecordedSound(const SerialQueue &queue)
        : m_queue(queue)
    {
    }

    RecordedSound(const RecordedSound &) = delete;
    RecordedSound &operator=(const RecordedSound &) = delete;

    /// Writes down what a recording gives it. The sound outlives the recording.
    SoundReceiver receiver();

    /// All samples so far, interleaved, in [-1, 1].
    std::vector<float> samples() const;
    std::size_t sampleCount() const;
    /// The last `count` samples; fewer if there are not so many yet.
    std::vector<float> latest(std::size_t count) const;
    void clear();
    std::size_t buffers() const;
    /// Buffers that came elsewhere than on the queue, or whose figures contradict each other.
    std::size_t wrongBuffers() const;
    std::optional<AudioStreamDescription> description() const;
    std::int64_t framesPerBuffer() const;
    /// Why recordings ended by themselves, so far.
    QStringList errors() const;
    /// What recordings have waited for so far, and "-" for each time that sound flowed again.
    QStringList awaited() const;

private:
    void take(const AudioSampleBuffer &buffer);
    void takeEnd(const std::exception_ptr &reason);

    const SerialQueue &m_queue;
    mutable std::mutex m_mutex;
    std::vector<float> m_samples;
    std::size_t m_buffers = 0;
    std::size_t m_wrongBuffers = 0;
    std::int64_t m_framesPerBuffer = 0;
    std::optional<AudioStreamDescription> m_description;
    QStringList m_errors;
    QStringList m_awaited;
};

} // namespace lumaphone::test
