#include "session/SessionTranscript.h"

#include "translation/GlossarySelection.h"

#include <algorithm>
#include <iterator>

namespace lumaphone {

QList<SavedTranscriptLine> savedTranscriptLines(const QList<LumaphoneCaptionLine> &lines)
{
    QList<SavedTranscriptLine> saved;
    saved.reserve(lines.size());
    std::transform(
        lines.begin(), lines.end(), std::back_inserter(saved), [](const LumaphoneCaptionLine &line) {
            return SavedTranscriptLine {line.id, line.sourceText, line.translatedText, line.sourceLanguage,
                line.createdAt, line.isFinal};
        });
    return saved;
}

QList<LumaphoneGlossaryTerm> matchedGlossaryTerms(
    const QList<LumaphoneGlossaryTerm> &terms, const QList<LumaphoneCaptionLine> &lines)
{
    QStringList texts;
    texts.reserve(2 * lines.size());
    for (const LumaphoneCaptionLine &line : lines) {
        texts << line.sourceText << line.translatedText;
    }
    return glossaryTermsOccurring(terms, texts.join(QLatin1Char('\n')));
}

LiveTranscript liveTranscript(const LumaphoneSessionDraft &draft, const QList<LumaphoneGlossaryTerm> &terms)
{
    return {
        .lines = savedTranscriptLines(draft.lines),
        .startedAt = draft.startedAt,
        .endedAt = draft.endedAt,
        .sourceLanguage = draft.sourceLanguage,
        .detectedLanguage = draft.detectedLanguage,
        .matchedTerms = matchedGlossaryTerms(terms, draft.lines),
        .savedTranscriptID = std::nullopt,
    };
}

} // namespace lumaphone
