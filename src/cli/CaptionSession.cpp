#include "cli/CaptionSession.h"

#include <chrono>

namespace lumaphone::cli {

namespace {

constexpr std::chrono::milliseconds longestPatience(2000);

} // namespace

CaptionSession::CaptionSession(SystemAudioCaptureController &controller, CaptionPrinter &printer,
    const std::shared_ptr<MainQueue> &mainQueue)
    : m_controller(controller)
    , m_printer(printer)
    , m_ended(mainQueue)
    , m_settled(mainQueue)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(longestPatience);
    connect(&m_patience, &QTimer::timeout, this, [this] { m_settled.resolve(); });
    using Controller = SystemAudioCaptureController;
    connect(&m_controller, &Controller::lineInserted, this, &CaptionSession::showLine);
    connect(&m_controller, &Controller::lineChanged, this, &CaptionSession::showLine);
    connect(&m_controller, &Controller::statusChanged, this, &CaptionSession::showStatus);
    connect(&m_controller, &Controller::captionTranslationFailed, this,
        [this](const QString &, const QString &description) { tellTranslationFailure(description); });
    connect(
        &m_controller, &Controller::translationStatesChanged, this, &CaptionSession::showUntranslatedLines);
    connect(&m_controller, &Controller::sessionFailed, this,
        [this](const QString &message, SessionFailure reason) {
            m_isRefused = reason == SessionFailure::unsavedTranscript;
            m_printer.failed(message);
            m_ended.resolve(exitFailure);
        });
}

QCoro::Task<ExitStatus> CaptionSession::run()
{
    m_controller.start();
    const ExitStatus status = co_await m_ended;
    // After a failure its message stays the last status.
    m_controller.stop(status == exitSuccess);
    if (m_controller.isTranslating() && !m_isRefused) {
        connect(&m_controller, &SystemAudioCaptureController::translationsSettled, this,
            [this] { m_settled.resolve(); });
        co_await m_settled;
    }
    m_printer.finish();
    co_return status;
}

void CaptionSession::complete()
{
    m_ended.resolve(exitSuccess);
}

void CaptionSession::stop()
{
    m_ended.resolve(exitSuccess);
    if (m_patience.isActive()) {
        m_settled.resolve();
    } else {
        m_patience.start();
    }
}

void CaptionSession::showLine(qsizetype index)
{
    const LumaphoneCaptionLine &line = m_controller.captionLines().at(index);
    m_printer.lineChanged(line, m_controller.translationOf(line).state);
}

void CaptionSession::showStatus()
{
    // The count of buffers is worth telling once, as the sign that sound arrives; not fifty times a second.
    const qint64 samples = m_controller.sampleBufferCount();
    const bool isCount
        = m_controller.transcript().isEmpty() && samples > 1 && samples != m_samplesAtLastStatus;
    m_samplesAtLastStatus = samples;
    if (!isCount) {
        m_printer.statusChanged(m_controller.status());
    }
}

void CaptionSession::tellTranslationFailure(const QString &description)
{
    if (!m_toldFailures.contains(description)) {
        m_toldFailures.insert(description);
        m_printer.failed(m_controller.status());
    }
}

void CaptionSession::showUntranslatedLines()
{
    const auto &lines = m_controller.captionLines();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const bool isUntranslated = m_controller.translationOf(lines[i]).state == TranslationState::failed;
        if (isUntranslated && m_untranslatedLines.value(lines[i].id) != lines[i].revision) {
            m_untranslatedLines.insert(lines[i].id, lines[i].revision);
            showLine(i);
        }
    }
}

} // namespace lumaphone::cli
