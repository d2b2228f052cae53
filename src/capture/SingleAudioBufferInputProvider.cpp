#include "capture/SingleAudioBufferInputProvider.h"

namespace lumaphone {

const AudioSampleBuffer *SingleAudioBufferInputProvider::provideInput(AudioConverterInputStatus &status)
{
    const std::lock_guard lock(m_lock);
    if (m_didProvideInput) {
        status = AudioConverterInputStatus::noDataNow;
        return nullptr;
    }
    m_didProvideInput = true;
    status = AudioConverterInputStatus::haveData;
    return &m_buffer;
}

} // namespace lumaphone
