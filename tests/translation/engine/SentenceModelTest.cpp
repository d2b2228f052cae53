#include "translation/engine/SentenceModel.h"

#include "support/engine/GeneratedFolder.h"
#include "support/engine/VocabularyTrainer.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>
#include <random>

namespace sentencemodeltest {

using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

namespace {

std::vector<std::vector<int>> randomSentences(int count, int words)
{
    std::mt19937 random(5);
    std::vector<std::vector<int>> sentences;
    for (int index = 0; index < count; ++index) {
        std::vector<int> sentence(1 + random() % 25);
        for (int &word : sentence)
            word = int(2 + random() % unsigned(words - 2));
        sentences.push_back(sentence);
    }
    return sentences;
}

int faultOf(const ModelFiles &files)
{
    try {
        const SentenceModel model(files, {});
        return -1;
    } catch (const EngineError &error) {
        return int(error.which());
    }
}

} // namespace

class SentenceModelTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_files = m_folder.smallModel();
        m_shortlist = m_folder.write(QStringLiteral("lex.bin"), generateShortlist(1000, 1000, 30, 10, 1));
    }

    void everyKernelAndEveryNumberOfThreadsTranslatesAlike_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("greatestWeight");
        QTest::newRow("output that is not split") << 64 << 127;
        QTest::newRow("output in digits") << 128 << 127;
        QTest::newRow("output of another scale in digits") << 128 << 100;
    }

    void everyKernelAndEveryNumberOfThreadsTranslatesAlike()
    {
        QFETCH(int, width);
        QFETCH(int, greatestWeight);
        ModelShape shape;
        shape.width = width;
        shape.greatestWeight = greatestWeight;
        const GeneratedFolder folder;
        const ModelFiles files = folder.smallModel(shape);
        const auto sentences = randomSentences(12, 1000);
        std::vector<std::vector<int>> expected;
        Kernels plainKernels = portableKernels();
        plainKernels.multiplyDigits = nullptr;
        EngineOptions plain;
        plain.threads = 1;
        plain.kernels = &plainKernels;
        SentenceModel reference(files, plain);
        QVERIFY(!reference.student().output().digits);
        for (const auto &sentence : sentences)
            expected.push_back(reference.translate(sentence).words);
        for (const Kernels *kernels : availableKernels()) {
            for (const int threads : {1, 2, 3}) {
                EngineOptions options;
                options.threads = threads;
                options.kernels = kernels;
                SentenceModel model(files, options);
                QCOMPARE(model.student().output().digits != nullptr, width == 128);
                QCOMPARE(model.student().target().digits != nullptr, width == 128 && greatestWeight == 127);
                for (std::size_t index = 0; index < sentences.size(); ++index)
                    QVERIFY2(model.translate(sentences[index]).words == expected[index], kernels->name);
            }
        }
    }

    void onlyAnOutputThatIsSearchedAsAWholeIsSplit()
    {
        ModelShape shape;
        shape.width = 128;
        const GeneratedFolder folder;
        ModelFiles files = folder.smallModel(shape);
        const auto isSplit = [&](EngineOptions::Arithmetic arithmetic) {
            EngineOptions options;
            options.arithmetic = arithmetic;
            return SentenceModel(files, options).student().output().digits != nullptr;
        };
        QVERIFY(isSplit(EngineOptions::Arithmetic::exact));
        QVERIFY(!isSplit(EngineOptions::Arithmetic::saturating));
        files.shortlist = m_shortlist;
        QVERIFY(!isSplit(EngineOptions::Arithmetic::exact));
    }

    void theShortlistBoundsTheWords()
    {
        ModelFiles files = m_files;
        files.shortlist = m_shortlist;
        SentenceModel model(files, {});
        const LexicalShortlist list(m_shortlist, 1000, 1000);
        for (const auto &sentence : randomSentences(10, 1000)) {
            std::vector<int> source = sentence;
            source.push_back(0);
            const auto candidates = list.candidates(source, true);
            for (const int word : model.translate(sentence).words)
                QVERIFY(std::binary_search(candidates.begin(), candidates.end(), std::uint32_t(word)));
        }
    }

    void translationsEndInTime()
    {
        SentenceModel model(m_files, {});
        for (const int length : {0, 1, 5, mostSourceTokens - 1}) {
            const std::vector<int> words(std::size_t(length), 7);
            const TranslatedWords translated = model.translate(words);
            QVERIFY(int(translated.words.size()) <= 2 * (length + 1));
            QCOMPARE(translated.sourceTokens, length + 1);
            QCOMPARE(translated.alignment.size(), translated.words.size() * std::size_t(length + 1));
            for (const int word : translated.words)
                QVERIFY(word != 1 && word > 0 && word < 1000);
        }
    }

    void alignmentsAreShares()
    {
        SentenceModel model(m_files, {});
        const std::vector<int> words = {5, 6, 7, 8};
        const TranslatedWords translated = model.translate(words);
        for (std::size_t word = 0; word < translated.words.size(); ++word) {
            float sum = 0;
            for (int token = 0; token < translated.sourceTokens; ++token)
                sum += translated.alignment[word * std::size_t(translated.sourceTokens) + std::size_t(token)];
            QVERIFY(std::abs(sum - 1) < 1e-4F);
        }
    }

    void nothingRemainsOfTheSentenceBefore()
    {
        const auto sentences = randomSentences(6, 1000);
        SentenceModel used(m_files, {});
        for (const auto &sentence : sentences)
            used.translate(sentence);
        SentenceModel fresh(m_files, {});
        QVERIFY(used.translate(sentences.front()).words == fresh.translate(sentences.front()).words);
    }

    void itsOwnWordsFallShortOfNothing()
    {
        SentenceModel model(m_files, {});
        const std::vector<int> source = {40, 41, 42};
        std::vector<int> words = model.translate(source).words;
        for (const float shortfall : model.shortfalls(source, words))
            QVERIFY(shortfall <= 0.0F || words.size() == 8); // cut off rather than ended
        QVERIFY(!words.empty());
        words.front() = words.front() == 500 ? 501 : 500;
        QVERIFY(model.shortfalls(source, words).front() > 0.0F);
    }

    void aStopIsHeeded()
    {
        SentenceModel model(m_files, {});
        std::stop_source stop;
        stop.request_stop();
        const std::vector<int> words = {5, 6};
        try {
            model.translate(words, stop.get_token());
            QFAIL("went on");
        } catch (const EngineError &error) {
            QCOMPARE(error.which(), EngineError::Case::cancelled);
        }
    }

    void filesOfDifferentModelsAreRefused()
    {
        ModelFiles files = m_files;
        files.sourceVocabulary
            = m_folder.write(QStringLiteral("large.spm"), paddedVocabulary(trainVocabulary(900), 1001));
        QCOMPARE(faultOf(files), int(EngineError::Case::mismatched));
        files = m_files;
        files.shortlist
            = m_folder.write(QStringLiteral("large.lex"), generateShortlist(2000, 1000, 30, 10, 1));
        QCOMPARE(faultOf(files), int(EngineError::Case::mismatched));
        files = m_files;
        files.model = m_files.sourceVocabulary;
        QCOMPARE(faultOf(files), int(EngineError::Case::notRecognised));
        files = m_files;
        files.sourceVocabulary = m_files.model;
        QVERIFY(faultOf(files) >= 0);
        QCOMPARE(faultOf(m_files), -1);
    }

private:
    GeneratedFolder m_folder;
    ModelFiles m_files;
    QString m_shortlist;
};

LUMAPHONE_TEST(SentenceModelTest)

} // namespace sentencemodeltest

#include "SentenceModelTest.moc"
