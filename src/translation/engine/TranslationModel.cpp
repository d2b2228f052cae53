#include "translation/engine/TranslationModel.h"

#include "base/Text.h"
#include "translation/engine/ProtectedTerms.h"
#include "translation/engine/SentenceSplitter.h"

#include <algorithm>
#include <array>

namespace lumaphone::engine {
namespace {

SpelledTranslation inUtf16(const Vocabulary::Spelling &spelling)
{
    SpelledTranslation translation = {QString::fromStdString(spelling.text), {}};
    for (const std::size_t end : spelling.ends) {
        const qsizetype units = QString::fromUtf8(spelling.text.data(), qsizetype(end)).size();
        translation.ends.push_back(std::min(units, translation.text.size()));
    }
    return translation;
}

} // namespace

TranslationModel::TranslationModel(const ModelFiles &files, const EngineOptions &options)
    : m_model(files, options)
{
}

QString TranslationModel::translate(const QString &text, const std::stop_token &stop)
{
    const std::lock_guard lock(m_turn);
    QString translation;
    QString line;
    for (const Sentence &sentence : splitIntoSentences(text)) {
        line = joined(line, translateSentence(sentence.text, stop));
        if (sentence.endsLine) {
            translation += line + QLatin1Char('\n');
            line.clear();
        }
    }
    return translation + line;
}

void TranslationModel::warmUp()
{
    const std::lock_guard lock(m_turn);
    const std::array words = {m_model.sourceVocabulary().unknown()};
    m_model.translate(words);
}

QString TranslationModel::translateSentence(const QString &sentence, const std::stop_token &stop)
{
    QString translation;
    for (const SourceChunk &chunk : chunked(sentence, m_model.sourceVocabulary(), mostSourceTokens - 1))
        translation = joined(translation, translateChunk(chunk, stop));
    return translation;
}

QString TranslationModel::translateChunk(const SourceChunk &chunk, const std::stop_token &stop)
{
    if (!chunk.verbatim.isEmpty())
        return chunk.verbatim;
    const TranslatedWords translated = m_model.translate(chunk.words, stop);
    const SpelledTranslation spelled = inUtf16(m_model.targetVocabulary().decode(translated.words));
    if (chunk.terms.isEmpty())
        return text::trimmed(spelled.text);
    return text::trimmed(
        restoreTerms(spelled, chunk.terms, chunk.termTokens, translated.alignment, translated.sourceTokens));
}

} // namespace lumaphone::engine
