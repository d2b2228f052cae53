#include "session/CaptionLineMerger.h"

#include "base/Text.h"
#include "platform/Clock.h"

#include <chrono>

namespace lumaphone {

namespace {

using namespace std::chrono_literals;

/// A line younger than this may be revised although it is not open.
constexpr std::chrono::milliseconds revisableAge = 12s;

} // namespace

CaptionLineMerger::CaptionLineMerger(RevisionDecision isRevision, const Clock &clock, UuidGenerator makeUuid)
    : m_isRevision(std::move(isRevision))
    , m_clock(clock)
    , m_makeUuid(std::move(makeUuid))
{
}

std::optional<qsizetype> CaptionLineMerger::revisionCandidateIndex(const QString &text) const
{
    if (m_currentLineID) {
        if (const auto open = m_lines.firstIndexOf(*m_currentLineID)) {
            return open;
        }
    }
    if (m_lines.isEmpty()) {
        return std::nullopt;
    }
    // A line that is already final may be revised as well: recognisers correct themselves late. After the
    // wall clock stepped back the age is negative, and so below the limit.
    const LumaphoneCaptionLine &last = captionLines().constLast();
    const std::chrono::milliseconds age(last.createdAt.msecsTo(m_clock.now()));
    if (age >= revisableAge || !m_isRevision(last.sourceText, text)) {
        return std::nullopt;
    }
    return captionLines().size() - 1;
}

void CaptionLineMerger::upsertCaptionLine(
    const QString &sourceText, AppleSystemSpeechLanguage language, bool isFinal)
{
    const auto index = revisionCandidateIndex(sourceText);
    if (!index) {
        appendCaptionLine(sourceText, language, isFinal);
        return;
    }
    LumaphoneCaptionLine line = captionLines().at(*index);
    const bool isSameText = text::canonicallyEqual(line.sourceText, sourceText);
    if (isSameText && line.isFinal == isFinal) {
        return;
    }
    if (!m_isRevision(line.sourceText, sourceText)) {
        appendCaptionLine(sourceText, language, isFinal);
        return;
    }
    if (!isSameText) {
        line.translatedText = pendingTranslationPlaceholder.toString();
    }
    line.sourceText = sourceText;
    line.sourceLanguage = language;
    line.isFinal = isFinal;
    countRevision(line);
    m_currentLineID = isFinal ? std::nullopt : std::optional(line.id);
    m_lines.replace(*index, std::move(line));
}

void CaptionLineMerger::appendCaptionLine(
    const QString &sourceText, AppleSystemSpeechLanguage language, bool isFinal)
{
    LumaphoneCaptionLine line {
        .id = m_makeUuid(),
        .sourceText = sourceText,
        .sourceLanguage = language,
        .translatedText = pendingTranslationPlaceholder.toString(),
        .createdAt = m_clock.now(),
        .isFinal = isFinal,
        .revision = 1,
    };
    m_currentLineID = line.id;
    m_lines.append(std::move(line));
}

void CaptionLineMerger::finalizeOpenCaptionLine()
{
    if (!m_currentLineID) {
        return;
    }
    const auto index = m_lines.firstIndexOf(*m_currentLineID);
    if (!index) {
        return;
    }
    LumaphoneCaptionLine line = captionLines().at(*index);
    line.isFinal = true;
    countRevision(line);
    m_currentLineID.reset();
    m_lines.replace(*index, std::move(line));
}

void CaptionLineMerger::setTranslation(qsizetype index, const QString &translation)
{
    LumaphoneCaptionLine line = captionLines().at(index);
    line.translatedText = translation;
    countRevision(line);
    m_lines.replace(index, std::move(line));
}

} // namespace lumaphone
