#include "storage/TranscriptCompactor.h"

#include "base/Text.h"
#include "language/LanguageTable.h"
#include "language/TranslationLanguages.h"
#include "storage/PendingTranslation.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

namespace lumaphone {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds longestPause = 8s;

SavedTranscriptLine normalized(SavedTranscriptLine line)
{
    line.sourceText = text::trimmed(line.sourceText);
    line.translatedText = text::trimmed(line.translatedText);
    if (line.translatedText == pendingTranslationPlaceholder) {
        line.translatedText = needsTranslation(line.sourceLanguage) ? QString() : line.sourceText;
    }
    return line;
}

SavedTranscriptLine merged(const SavedTranscriptLine &previous, const SavedTranscriptLine &incoming)
{
    SavedTranscriptLine line = incoming;
    line.id = previous.id;
    line.createdAt = previous.createdAt;
    line.isFinal = previous.isFinal || incoming.isFinal;
    if (line.translatedText.isEmpty() && text::canonicallyEqual(previous.sourceText, incoming.sourceText)) {
        line.translatedText = previous.translatedText;
    }
    return line;
}

QList<QString> comparableCharacters(const QString &line)
{
    return text::characters(text::lowercased(text::splitAtWhiteSpace(line).join(QString())));
}

bool growsByCharacters(AppleSystemSpeechLanguage language)
{
    const LanguageRow *const row = languageRow(language);
    return row != nullptr && row->growsByCharacters;
}

/// Whether a short `previous` (p characters) grew into `incoming` (n characters).
bool hasGrown(const QList<QString> &previous, const QList<QString> &incoming)
{
    const qsizetype p = previous.size();
    const qsizetype n = incoming.size();
    const auto difference = std::mismatch(previous.begin(), previous.end(), incoming.begin(), incoming.end());
    const qsizetype commonPrefix = difference.first - previous.begin();
    if (p <= 14 && n >= p && commonPrefix >= std::min<qsizetype>(p, 4)) {
        return true;
    }
    return p <= 8 && n >= p + 2;
}

/// Whether two adjacent lines are one utterance.
bool shouldMergeAdjacent(
    const SavedTranscriptLine &previous, const SavedTranscriptLine &incoming, bool isRevision)
{
    if (isRevision) {
        return true;
    }
    if (previous.sourceLanguage != incoming.sourceLanguage) {
        return false;
    }
    if (std::abs(previous.createdAt.msecsTo(incoming.createdAt)) > longestPause.count()) {
        return false;
    }
    const QList<QString> before = comparableCharacters(previous.sourceText);
    const QList<QString> after = comparableCharacters(incoming.sourceText);
    if (before.isEmpty() || after.isEmpty()) {
        return false;
    }
    // A text that contains the other is never the shorter one.
    if (std::search(after.begin(), after.end(), before.begin(), before.end()) != after.end()) {
        return true;
    }
    return growsByCharacters(incoming.sourceLanguage) && hasGrown(before, after);
}

QList<SavedTranscriptLine> normalizedLines(const QList<SavedTranscriptLine> &lines)
{
    QList<SavedTranscriptLine> kept;
    kept.reserve(lines.size());
    for (const SavedTranscriptLine &raw : lines) {
        SavedTranscriptLine line = normalized(raw);
        if (!line.sourceText.isEmpty()) {
            kept.append(std::move(line));
        }
    }
    return kept;
}

QStringList sourceTexts(const QList<SavedTranscriptLine> &lines)
{
    QStringList texts;
    texts.reserve(lines.size());
    for (const SavedTranscriptLine &line : lines) {
        texts.append(line.sourceText);
    }
    return texts;
}

} // namespace

TranscriptCompactor::TranscriptCompactor(RevisionQuestion areRevisions)
    : m_areRevisions(std::move(areRevisions))
{
}

QList<SavedTranscriptLine> TranscriptCompactor::compactSavedLines(
    const QList<SavedTranscriptLine> &lines) const
{
    const QList<SavedTranscriptLine> normalized = normalizedLines(lines);
    if (normalized.isEmpty()) {
        return {};
    }
    // A merged line has the text of the newer one, so that each line is compared with the one before it,
    // whatever has been merged: all questions are known from the beginning.
    const QList<bool> isRevision = m_areRevisions(sourceTexts(normalized));
    Q_ASSERT(isRevision.size() == normalized.size() - 1);
    QList<SavedTranscriptLine> output {normalized.constFirst()};
    output.reserve(normalized.size());
    for (qsizetype i = 1; i < normalized.size(); ++i) {
        if (shouldMergeAdjacent(output.constLast(), normalized[i], isRevision[i - 1])) {
            output.last() = merged(output.constLast(), normalized[i]);
        } else {
            output.append(normalized[i]);
        }
    }
    return output;
}

} // namespace lumaphone
