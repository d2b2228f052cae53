#include "translation/engine/SentenceModel.h"

#include <algorithm>
#include <limits>

namespace lumaphone::engine {
namespace {

const Kernels &kernelsFor(const EngineOptions &options)
{
    if (options.kernels)
        return *options.kernels;
    return options.arithmetic == EngineOptions::Arithmetic::saturating ? fastestSaturatingKernels()
                                                                       : fastestKernels();
}

StudentModel loaded(const ModelFiles &files, const Kernels &kernels, WorkerTeam &team)
{
    StudentModel student {ModelFile(files.model)};
    if (files.shortlist.isEmpty() && kernels.multiplyDigits)
        student.splitOutput(team);
    return student;
}

/// A model may have a few rows more than its vocabulary has words, never fewer.
void checkSize(const Vocabulary &vocabulary, int rows)
{
    if (vocabulary.size() > rows)
        throw EngineError(EngineError::Case::mismatched, vocabulary.path(),
            QStringLiteral("%1 words for a model of %2").arg(vocabulary.size()).arg(rows));
}

} // namespace

SentenceModel::SentenceModel(const ModelFiles &files, const EngineOptions &options)
    : m_options(options)
    , m_team(std::max(1, options.threads))
    , m_student(loaded(files, kernelsFor(options), m_team))
    , m_sourceVocabulary(std::make_unique<Vocabulary>(files.sourceVocabulary))
    , m_targetVocabulary(files.targetVocabulary.isEmpty() || files.targetVocabulary == files.sourceVocabulary
              ? nullptr
              : std::make_unique<Vocabulary>(files.targetVocabulary))
    , m_runner(m_student, kernelsFor(options), m_team, mostSourceTokens)
    , m_encoder(m_student, m_runner)
    , m_search(m_student.output(), m_runner.biasFor(m_student.output()), kernelsFor(options), m_team)
    , m_decoder(m_student, m_runner, m_search)
{
    checkSize(sourceVocabulary(), m_student.source().rows);
    checkSize(targetVocabulary(), m_student.target().rows);
    if (!files.shortlist.isEmpty())
        m_shortlist.emplace(files.shortlist, m_student.source().rows, m_student.target().rows);
}

std::optional<int> SentenceModel::firstInput() const
{
    if (m_options.firstInput == EngineOptions::FirstInput::endOfSentence)
        return targetVocabulary().endOfSentence();
    return std::nullopt;
}

std::vector<int> SentenceModel::begin(std::span<const int> words)
{
    if (words.size() >= std::size_t(mostSourceTokens))
        qFatal("a sentence of %zu words is longer than the model takes", words.size());
    std::vector<int> source(words.begin(), words.end());
    source.push_back(sourceVocabulary().endOfSentence());
    m_candidates
        = m_shortlist ? m_shortlist->candidates(source, !m_targetVocabulary) : std::vector<std::uint32_t>();
    m_decoder.start(m_encoder.encode(source));
    return source;
}

TranslatedWords SentenceModel::translate(std::span<const int> words, const std::stop_token &stop)
{
    const std::vector<int> source = begin(words);
    TranslatedWords translated;
    translated.sourceTokens = int(source.size());
    std::optional<int> previous = firstInput();
    while (translated.words.size() < 2 * source.size()) {
        if (stop.stop_requested())
            throw EngineError(EngineError::Case::cancelled, m_student.path(), {});
        m_decoder.step(previous);
        const Vocabulary &target = targetVocabulary();
        const int word = m_decoder.choose(m_candidates, target.size(), target.unknown()).word;
        if (word < 0 || word == target.endOfSentence())
            break;
        translated.words.push_back(word);
        const auto looked = m_decoder.alignment();
        translated.alignment.insert(translated.alignment.end(), looked.begin(), looked.end());
        previous = word;
    }
    return translated;
}

std::vector<float> SentenceModel::shortfalls(std::span<const int> words, std::span<const int> translation)
{
    const std::vector<int> source = begin(words);
    const Vocabulary &target = targetVocabulary();
    std::vector<float> shortfalls;
    std::optional<int> previous = firstInput();
    for (std::size_t index = 0; index < std::min(translation.size() + 1, 2 * source.size()); ++index) {
        m_decoder.step(previous);
        const BestWord best = m_decoder.choose(m_candidates, target.size(), target.unknown());
        const int word = index < translation.size() ? translation[index] : target.endOfSentence();
        const bool isCandidate = word >= 0 && word < target.size() && word != target.unknown()
            && (m_candidates.empty()
                || std::binary_search(m_candidates.begin(), m_candidates.end(), std::uint32_t(word)));
        shortfalls.push_back(isCandidate ? best.score - m_decoder.scores()[std::size_t(word)]
                                         : std::numeric_limits<float>::infinity());
        previous = word;
    }
    return shortfalls;
}

} // namespace lumaphone::engine
