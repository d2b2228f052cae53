#include "speech/framework/RecognizerThread.h"

#include "base/SerialQueue.h"

namespace lumaphone {

RecognizerThread::RecognizerThread(
    std::shared_ptr<StreamingRecognizer> recognizer, Modules modules, std::size_t capacity)
    : m_recognizer(std::move(recognizer))
    , m_modules(std::move(modules))
    , m_queue(capacity)
{
}

RecognizerThread::~RecognizerThread()
{
    cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

std::string RecognizerThread::name() const
{
    const std::vector<QString> locales = m_recognizer->localeIdentifiers();
    return "speech-" + (locales.empty() ? std::string() : locales.front().toStdString());
}

void RecognizerThread::load()
{
    const std::lock_guard lock(m_loadMutex);
    if (m_isLoaded || isCancelled()) {
        return;
    }
    try {
        m_recognizer->load();
    } catch (...) {
        throw SpeechFrameworkError(localizedDescription(std::current_exception()));
    }
    m_isLoaded = true;
}

void RecognizerThread::cancel()
{
    {
        const std::lock_guard lock(m_stateMutex);
        m_isCancelled = true;
    }
    for (const auto &module : m_modules) {
        module->finish();
    }
    m_recognizer->cancel();
    m_queue.close();
}

bool RecognizerThread::isCancelled() const
{
    const std::lock_guard lock(m_stateMutex);
    return m_isCancelled;
}

void RecognizerThread::waitUntilLoadingEnds()
{
    const std::lock_guard lock(m_loadMutex);
}

void RecognizerThread::start()
{
    const std::lock_guard lock(m_stateMutex);
    if (m_isCancelled) {
        m_isDone = true;
        return;
    }
    m_thread = std::thread([this] { run(); });
}

void RecognizerThread::append(std::span<const std::int16_t> samples, const std::stop_token &stop)
{
    m_queue.append(samples, stop);
}

void RecognizerThread::finishInput()
{
    m_queue.finish();
}

void RecognizerThread::waitUntilDone(const std::stop_token &stop)
{
    std::unique_lock lock(m_stateMutex);
    m_stateChanged.wait(lock, stop, [this] { return m_isDone; });
}

void RecognizerThread::run()
{
    nameCurrentThread(name());
    try {
        recognize();
        for (const auto &module : m_modules) {
            module->finish();
        }
    } catch (...) {
        // One failure is told once, however many languages it concerns.
        m_modules.front()->fail(localizedDescription(std::current_exception()));
        for (const auto &module : m_modules) {
            module->finish();
        }
    }
    m_queue.close();
    markDone();
}

void RecognizerThread::recognize()
{
    load();
    if (isCancelled()) {
        return;
    }
    while (const auto samples = m_queue.take()) {
        m_recognizer->accept(*samples);
    }
    m_recognizer->finish();
}

void RecognizerThread::markDone()
{
    const std::lock_guard lock(m_stateMutex);
    m_isDone = true;
    m_stateChanged.notify_all();
}

} // namespace lumaphone
