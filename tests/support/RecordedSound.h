#pragma once

#include "base/SerialQueue.h"
#include "platform/MicrophoneCapture.h"
#include "platform/ScreenAudioCapture.h"

#include <QStringList>

#include <cstddef>
#include <mutex>
#include <optional>
#include <vector>

namespace lumaphone::test {

/// Remembers everything a capture delivers, and how. Its getters may be called from any thread.
class RecordedSound final : public ScreenAudioStreamOutput,
                            public ScreenAudioStreamDelegate,
                            public MicrophoneSampleDelegate
{
public:
    /// Buffers are expected on this queue.
    explicit RecordedSound(const SerialQueue &queue)
        : m_queue(queue)
    {
    }

    void didOutputSampleBuffer(const AudioSampleBuffer &buffer, SampleBufferType type) override;
    void didOutputSampleBuffer(const AudioSampleBuffer &buffer) override;
    void didStopWithError(std::exception_ptr error) override;

    /// All samples so far, interleaved, in [-1, 1].
    std::vector<float> samples() const;
    std::size_t sampleCount() const;
    /// The last `count` samples; fewer if there are not so many yet.
    std::vector<float> latest(std::size_t count) const;
    void clear();
    std::size_t buffers() const;
    std::size_t pictures() const;
    /// Buffers that came elsewhere than on the queue, or whose figures contradict each other.
    std::size_t wrongBuffers() const;
    std::optional<AudioStreamDescription> description() const;
    std::int64_t framesPerBuffer() const;
    /// The texts of the errors told so far.
    QStringList errors() const;

private:
    const SerialQueue &m_queue;
    mutable std::mutex m_mutex;
    std::vector<float> m_samples;
    std::size_t m_buffers = 0;
    std::size_t m_pictures = 0;
    std::size_t m_wrongBuffers = 0;
    std::int64_t m_framesPerBuffer = 0;
    std::optional<AudioStreamDescription> m_description;
    QStringList m_errors;
};

} // namespace lumaphone::test
