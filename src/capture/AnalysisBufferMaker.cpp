#include "capture/AnalysisBufferMaker.h"

#include "capture/SingleAudioBufferInputProvider.h"

#include <utility>

namespace lumaphone {

std::shared_ptr<PcmBuffer> AnalysisBufferMaker::pcmBuffer(const AudioSampleBuffer &sample)
{
    if (sample.frames < 1 || !sample.description) {
        return nullptr;
    }
    AudioConverter *converter = audioConverter(*sample.description);
    if (!converter || !converter->accepts(sample)) {
        return nullptr;
    }
    const auto capacity = converter->outputCapacity(static_cast<std::size_t>(sample.frames));
    const auto output = m_reusablePCMBuffers.reusablePCMBuffer(static_cast<std::int64_t>(capacity));
    if (!output) {
        return nullptr;
    }
    SingleAudioBufferInputProvider provider(sample);
    const auto status = converter->convert(*output,
        [&provider](AudioConverterInputStatus &inputStatus) { return provider.provideInput(inputStatus); });
    return status == AudioConverter::Status::haveData ? output : nullptr;
}

AudioConverter *AnalysisBufferMaker::audioConverter(const AudioStreamDescription &source)
{
    if (m_audioBufferConverterSourceFormat != source) {
        m_audioBufferConverter = AudioConverter::create(source);
        m_audioBufferConverterSourceFormat = source;
    }
    return m_audioBufferConverter.get();
}

std::shared_ptr<PcmBuffer> AnalysisBufferMaker::remainingSound()
{
    const auto converter = std::exchange(m_audioBufferConverter, nullptr);
    m_audioBufferConverterSourceFormat.reset();
    if (!converter) {
        return nullptr;
    }
    const auto output = m_reusablePCMBuffers.reusablePCMBuffer(
        static_cast<std::int64_t>(converter->pendingFrames() + converter->outputCapacity(0)));
    if (!output) {
        return nullptr;
    }
    const auto status = converter->convert(*output, [](AudioConverterInputStatus &inputStatus) {
        inputStatus = AudioConverterInputStatus::endOfStream;
        return nullptr;
    });
    return status == AudioConverter::Status::haveData ? output : nullptr;
}

void AnalysisBufferMaker::resetReusablePCMBuffers()
{
    m_reusablePCMBuffers.resetReusablePCMBuffers();
    m_audioBufferConverter = nullptr;
    m_audioBufferConverterSourceFormat.reset();
}

} // namespace lumaphone
