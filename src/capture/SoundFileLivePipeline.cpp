#include "capture/SoundFileLivePipeline.h"

#include "base/Completion.h"
#include "capture/SoundFileError.h"

#include <utility>

namespace lumaphone {

std::shared_ptr<SoundFileLivePipeline> SoundFileLivePipeline::create(const QString &path,
    AppleSystemSpeechLanguage sourceLanguage, SoundFilePace pace, std::shared_ptr<Clock> clock,
    const LivePipelineServices &services, SystemAudioPipelineEventHandler onEvent,
    std::function<void()> onCompleted)
{
    return std::shared_ptr<SoundFileLivePipeline>(new SoundFileLivePipeline(
        path, sourceLanguage, pace, std::move(clock), services, std::move(onEvent), std::move(onCompleted)));
}

SoundFileLivePipeline::SoundFileLivePipeline(const QString &path, AppleSystemSpeechLanguage sourceLanguage,
    SoundFilePace pace, std::shared_ptr<Clock> clock, const LivePipelineServices &services,
    SystemAudioPipelineEventHandler onEvent, std::function<void()> onCompleted)
    : m_path(path)
    , m_sourceLanguage(sourceLanguage)
    , m_pace(pace)
    , m_clock(std::move(clock))
    , m_mainQueue(services.mainQueue)
    , m_feed(services, std::move(onEvent))
    , m_onCompleted(std::move(onCompleted))
{
}

SoundFileLivePipeline::~SoundFileLivePipeline()
{
    m_reading.request_stop();
    m_feed.transcriber().stop();
}

QCoro::Task<> SoundFileLivePipeline::start()
{
    m_reading.request_stop();
    m_reading = std::stop_source();
    return m_attempts.start(shared_from_this(), &SoundFileLivePipeline::run);
}

QCoro::Task<> SoundFileLivePipeline::run(int attempt)
{
    const Reader reader = co_await open();
    if (!m_attempts.isLatest(attempt)) {
        co_return;
    }
    co_await m_feed.transcriber().start(recognitionCandidates(m_sourceLanguage));
    if (!m_attempts.isLatest(attempt)) {
        co_return;
    }
    switch (m_pace) {
    case SoundFilePace::asFastAsRecognised:
        m_sampleQueue.post([this, reader, stop = m_reading.get_token()] { readToEnd(*reader, stop); });
        break;
    case SoundFilePace::speedOfSound:
        readAtSpeedOfSound(weak_from_this(), m_clock, reader, m_reading.get_token());
        break;
    }
}

QCoro::Task<SoundFileLivePipeline::Reader> SoundFileLivePipeline::open()
{
    const Completion<Reader> opened(m_mainQueue);
    m_sampleQueue.post([opened, path = m_path] {
        try {
            opened.resolve(std::make_shared<SoundFileReader>(path));
        } catch (...) {
            opened.fail(std::current_exception());
        }
    });
    co_return co_await opened;
}

QCoro::Task<> SoundFileLivePipeline::stop()
{
    const auto self = shared_from_this();
    m_attempts.begin();
    m_reading.request_stop();
    m_feed.transcriber().stop();
    const Completion<> noticed(m_mainQueue);
    m_sampleQueue.post([noticed] { noticed.resolve(); });
    co_await noticed;
}

// Holds the pipeline only between the waits, so that its owner can drop it at any time.
QCoro::Task<> SoundFileLivePipeline::readAtSpeedOfSound(std::weak_ptr<SoundFileLivePipeline> weakSelf,
    std::shared_ptr<Clock> clock, Reader reader, std::stop_token stop)
{
    const std::chrono::nanoseconds begin = clock->monotonic();
    for (bool isMore = true; isMore;) {
        const std::chrono::nanoseconds wait = begin + reader->endOfNextBlock() - clock->monotonic();
        if (wait > std::chrono::nanoseconds::zero()) {
            co_await clock->sleepFor(wait);
        }
        auto self = weakSelf.lock();
        if (!self || stop.stop_requested()) {
            co_return;
        }
        const Completion<bool> read(self->m_mainQueue);
        self->m_sampleQueue.post([pipeline = self.get(), reader, stop, read] {
            read.resolve(pipeline->readBlock(*reader, stop));
        });
        self = nullptr;
        isMore = co_await read;
    }
}

void SoundFileLivePipeline::readToEnd(SoundFileReader &reader, const std::stop_token &stop) const
{
    while (readBlock(reader, stop)) {
    }
}

bool SoundFileLivePipeline::readBlock(SoundFileReader &reader, const std::stop_token &stop) const
{
    if (!m_feed.transcriber().waitForRoom(stop) || stop.stop_requested()) {
        return false;
    }
    const AudioSampleBuffer &block = reader.readBlock();
    if (block.frames == 0) {
        finish(reader);
        return false;
    }
    m_feed.handle(block);
    return true;
}

void SoundFileLivePipeline::finish(const SoundFileReader &reader) const
{
    if (reader.framesRead() == 0) {
        // The header promised sound that is not there.
        m_feed.fail(SoundFileError(SoundFileError::Case::empty, m_path).errorDescription());
        return;
    }
    m_feed.transcriber().finishInput(m_onCompleted);
}

} // namespace lumaphone
