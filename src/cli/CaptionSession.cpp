#include "cli/CaptionSession.h"

#include <variant>

namespace lumaphone::cli {

namespace {

const QString waitingStatus = QStringLiteral("正在等待語音…");

template<typename... Cases> struct Overloaded : Cases...
{
    using Cases::operator()...;
};
template<typename... Cases> Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

CaptionSession::CaptionSession(
    std::shared_ptr<MainQueue> mainQueue, CaptionLineMerger &merger, CaptionPrinter &printer)
    : m_mainQueue(std::move(mainQueue))
    , m_merger(merger)
    , m_printer(printer)
    , m_ended(m_mainQueue)
    , m_self(std::make_shared<CaptionSession *>(this))
{
    m_merger.setListener(this);
}

CaptionSession::~CaptionSession()
{
    *m_self = nullptr;
    m_merger.setListener(nullptr);
}

QCoro::Task<ExitStatus> CaptionSession::run(PipelineFactory makePipeline)
{
    const auto toMainThread = [mainQueue = m_mainQueue, self = m_self](auto action) {
        mainQueue->post([self, action = std::move(action)] {
            if (*self != nullptr) {
                action(**self);
            }
        });
    };
    m_pipeline = makePipeline(
        [toMainThread](const SystemAudioPipelineEvent &event) {
            toMainThread([event](CaptionSession &session) { session.handlePipelineEvent(event); });
        },
        [toMainThread] {
            toMainThread([](const CaptionSession &session) { session.m_ended.resolve(exitSuccess); });
        });

    ExitStatus status = exitFailure;
    try {
        m_isStarting = true;
        co_await m_pipeline->start();
        m_isStarting = false;
        m_printer.statusChanged(waitingStatus);
        status = co_await m_ended;
    } catch (const std::exception &error) {
        m_printer.failed(localizedDescription(error));
    }
    m_merger.finalizeOpenCaptionLine();
    m_printer.finish();
    *m_self = nullptr;
    co_await m_pipeline->stop();
    co_return status;
}

void CaptionSession::stop()
{
    m_ended.resolve(exitSuccess);
    if (m_isStarting) {
        // A start that waits for a device or a model returns at once when its pipeline is stopped.
        m_pipeline->stop();
    }
}

void CaptionSession::handlePipelineEvent(const SystemAudioPipelineEvent &event)
{
    std::visit(Overloaded {
                   [](const pipeline_event::AudioSample &) {},
                   [this](const pipeline_event::Speech &speech) {
                       m_merger.upsertCaptionLine(speech.text, speech.language, speech.isFinal);
                       if (speech.isFinal) {
                           m_merger.clearCurrentLine();
                       }
                   },
                   [this](const pipeline_event::Failed &failure) {
                       m_printer.failed(failure.message);
                       m_ended.resolve(exitFailure);
                   },
               },
        event);
}

void CaptionSession::captionLineInserted(qsizetype index)
{
    captionLineChanged(index);
}

void CaptionSession::captionLineChanged(qsizetype index)
{
    m_printer.lineChanged(m_merger.captionLines().at(index), TranslationState::unwanted);
}

} // namespace lumaphone::cli
