#include "session/LumaphoneTranscriptProcessor.h"

#include "base/Json.h"
#include "platform/BundleResources.h"
#include "session/HelperProcess.h"
#include "session/revision/CoreRevisionExchange.h"
#include "session/revision/RevisionRule.h"

namespace lumaphone {

LumaphoneTranscriptProcessor::LumaphoneTranscriptProcessor(const BundleResources &resources)
    : LumaphoneTranscriptProcessor(resources.path(QLatin1String(executableName)))
{
}

LumaphoneTranscriptProcessor::LumaphoneTranscriptProcessor(std::optional<QString> executableURL)
    : m_executableURL(std::move(executableURL))
{
}

CoreRevisionDecision LumaphoneTranscriptProcessor::coreRevisionDecision(
    const QString &current, const QString &incoming) const
{
    if (!m_executableURL) {
        return CoreRevisionDecision::noAnswer;
    }
    try {
        const auto output
            = exchangeWithHelper(*m_executableURL, encode(CoreRevisionRequest {current, incoming}));
        if (!output) {
            return CoreRevisionDecision::noAnswer;
        }
        return decodeCoreRevisionResponse(*output).isRevision ? CoreRevisionDecision::yes
                                                              : CoreRevisionDecision::no;
    } catch (const json::DecodingError &) {
        return CoreRevisionDecision::noAnswer;
    }
}

bool LumaphoneTranscriptProcessor::isRevision(const QString &current, const QString &incoming) const
{
    switch (coreRevisionDecision(current, incoming)) {
    case CoreRevisionDecision::yes:
        return true;
    case CoreRevisionDecision::no:
        return false;
    case CoreRevisionDecision::noAnswer:
        return fallbackIsRevisionOfCurrentPartial(current, incoming);
    }
    Q_UNREACHABLE();
}

QList<bool> LumaphoneTranscriptProcessor::areRevisions(const QStringList &texts) const
{
    if (const auto answers = coreRevisionDecisions(texts)) {
        return *answers;
    }
    QList<bool> answers;
    answers.reserve(texts.size());
    for (qsizetype i = 1; i < texts.size(); ++i) {
        answers.append(isRevision(texts[i - 1], texts[i]));
    }
    return answers;
}

/// The helper's answers to all questions at once, or none. Silent like a single question.
std::optional<QList<bool>> LumaphoneTranscriptProcessor::coreRevisionDecisions(const QStringList &texts) const
{
    constexpr qsizetype fewestTexts = 3; // two make a single question
    if (!m_executableURL || texts.size() < fewestTexts) {
        return std::nullopt;
    }
    try {
        const auto output = exchangeWithHelper(*m_executableURL, encode(CoreRevisionsRequest {texts}));
        return output ? std::optional(decodeCoreRevisionsResponse(*output, texts.size() - 1).areRevisions)
                      : std::nullopt;
    } catch (const json::DecodingError &) {
        return std::nullopt;
    }
}

} // namespace lumaphone
