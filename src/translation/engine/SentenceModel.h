#pragma once

#include "translation/engine/Decoder.h"
#include "translation/engine/Encoder.h"
#include "translation/engine/LexicalShortlist.h"
#include "translation/engine/StudentModel.h"
#include "translation/engine/Vocabulary.h"
#include "translation/engine/WorkerTeam.h"

#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace lumaphone::engine {

/// The files of one direction.
struct ModelFiles
{
    QString model;
    QString sourceVocabulary;
    QString targetVocabulary; ///< empty: the source's serves both languages
    QString shortlist; ///< empty: the whole vocabulary is scored
};

/// How the model's mathematics are carried out. The defaults are right; the others reproduce what other
/// programs do.
struct EngineOptions
{
    enum class Arithmetic { exact, saturating };
    enum class FirstInput { zeros, endOfSentence };

    int threads = 2; ///< at least 1
    Arithmetic arithmetic = Arithmetic::exact;
    FirstInput firstInput = FirstInput::zeros; ///< what precedes the first word
    const Kernels *kernels = nullptr; ///< null: the fastest of this processor
};

/// The words of a translated sentence, without its end, and for each what it was looking at in the source.
struct TranslatedWords
{
    std::vector<int> words;
    std::vector<float> alignment; ///< a row of `sourceTokens` values per word
    int sourceTokens = 0; ///< with the end of the sentence
};

/// One direction on the level of sentences of at most mostSourceTokens - 1 words. Not thread-safe.
class SentenceModel
{
public:
    /// Loads and checks the files. Throws EngineError.
    SentenceModel(const ModelFiles &files, const EngineOptions &options);
    SentenceModel(const SentenceModel &) = delete;
    SentenceModel &operator=(const SentenceModel &) = delete;

    const Vocabulary &sourceVocabulary() const { return *m_sourceVocabulary; }
    const Vocabulary &targetVocabulary() const
    {
        return m_targetVocabulary ? *m_targetVocabulary : *m_sourceVocabulary;
    }
    const StudentModel &student() const { return m_student; }

    /// Always takes the best word until the sentence ends or has two words per source token. `words` come
    /// without the sentence's end. Throws EngineError (cancelled) when `stop` is requested.
    TranslatedWords translate(std::span<const int> words, const std::stop_token &stop = {});

    /// How far each word of a given translation lies below the best word at its place, given the words before
    /// it: 0 where it is the best. The word after the last is the end of the sentence. A word that is no
    /// candidate counts as infinitely far.
    std::vector<float> shortfalls(std::span<const int> words, std::span<const int> translation);

private:
    std::optional<int> firstInput() const;
    std::vector<int> begin(std::span<const int> words);

    EngineOptions m_options;
    WorkerTeam m_team;
    StudentModel m_student;
    std::unique_ptr<Vocabulary> m_sourceVocabulary;
    std::unique_ptr<Vocabulary> m_targetVocabulary; ///< null if shared
    std::optional<LexicalShortlist> m_shortlist;
    LayerRunner m_runner;
    Encoder m_encoder;
    OutputSearch m_search;
    Decoder m_decoder;
    std::vector<std::uint32_t> m_candidates; ///< of the sentence at hand; empty: all words
};

} // namespace lumaphone::engine
