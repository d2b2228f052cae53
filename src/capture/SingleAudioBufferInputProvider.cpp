#include "capture/SingleAudioBufferInputProvider.h"

namespace lumaphone {

const AudioSampleBuffer *SingleAudioBufferInputProvider::provideInput(AudioConverterInputStatus &status)
{
    const std::lock_guard lock(m_lock);
    if (m_didProvideInput) {
        status = AudioConverterInputStatus::NoDataNow;
        return nullptr;
    }
    m_didProvideInput = true;
    status = AudioConverterInputStatus::HaveData;
    return &m_buffer;
}

} // namespace lumaphone
