#include "translation/engine/LexicalShortlist.h"

#include "support/engine/GeneratedFolder.h"
#include "support/engine/ModelGenerator.h"
#include "support/program/TestProgram.h"
#include "translation/engine/EngineError.h"

#include <QTest>

#include <algorithm>
#include <cstring>
#include <optional>

namespace lexicalshortlisttest {

using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

namespace {

std::string shortlist(
    std::uint64_t always, const std::vector<std::uint64_t> &offsets, const std::vector<std::uint32_t> &words)
{
    std::string bytes;
    const auto append = [&bytes](auto number) {
        bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
    };
    for (const std::uint64_t number : {std::uint64_t(0xF11A48D5013417F5), std::uint64_t(0), always,
             std::uint64_t(3), std::uint64_t(offsets.size()), std::uint64_t(words.size())})
        append(number);
    for (const std::uint64_t offset : offsets)
        append(offset);
    for (const std::uint32_t word : words)
        append(word);
    return bytes;
}

template<class Action> std::optional<EngineError::Case> faultOf(const Action &action)
{
    try {
        action();
        return std::nullopt;
    } catch (const EngineError &error) {
        return error.which();
    }
}

} // namespace

class LexicalShortlistTest : public QObject
{
    Q_OBJECT

private slots:
    void candidatesAreTheFrequentTheListedAndSomeMore()
    {
        const std::string bytes = shortlist(4, {0, 2, 2, 5}, {30, 20, 2, 31, 20});
        const LexicalShortlist list = listOf(bytes);
        const std::vector<int> sentence = {2, 0};
        QCOMPARE(list.candidates(sentence, false), (std::vector<std::uint32_t> {0, 1, 2, 3, 4, 20, 30, 31}));
        // With one vocabulary the source's own words count: 0 and 2 are frequent anyway.
        const std::vector<int> one = {1};
        QCOMPARE(list.candidates(one, false), (std::vector<std::uint32_t> {0, 1, 2, 3, 4, 5, 6, 7}));
        const std::vector<int> listedElsewhere = {0, 0};
        QCOMPARE(
            list.candidates(listedElsewhere, false), (std::vector<std::uint32_t> {0, 1, 2, 3, 4, 5, 20, 30}));
    }

    void aSharedVocabularyAddsTheSourcesWords()
    {
        const std::string bytes = shortlist(1, {0, 0, 0, 0}, {});
        const LexicalShortlist list = listOf(bytes, 30);
        const std::vector<int> sentence = {25, 9};
        QCOMPARE(list.candidates(sentence, true), (std::vector<std::uint32_t> {0, 1, 2, 3, 4, 5, 9, 25}));
        QCOMPARE(list.candidates(sentence, false), (std::vector<std::uint32_t> {0, 1, 2, 3, 4, 5, 6, 7}));
    }

    void theVocabularyIsTheLimit()
    {
        const std::string bytes = shortlist(2, {0, 0}, {});
        const LexicalShortlist list = listOf(bytes, 1, 5);
        QCOMPARE(list.candidates({}, false), (std::vector<std::uint32_t> {0, 1, 2, 3, 4}));
    }

    void damagedListsAreRefused()
    {
        using enum EngineError::Case;
        const std::string good = shortlist(4, {0, 2, 2, 5}, {30, 20, 2, 31, 20});
        QCOMPARE(faultIn(good), std::nullopt);
        for (std::size_t size = 0; size < good.size(); ++size)
            QVERIFY(faultIn(good.substr(0, size)).has_value());
        QCOMPARE(faultIn(good + 'x'), damaged);
        QCOMPARE(faultIn(std::string(64, 'x')), notRecognised);
        QCOMPARE(faultIn(shortlist(41, {0, 0}, {})), mismatched);
        QCOMPARE(faultIn(shortlist(4, {0}, {})), mismatched);
        QCOMPARE(faultIn(good, 2), mismatched);
        QCOMPARE(faultIn(good, 3, 31), mismatched);
        QCOMPARE(faultIn(shortlist(4, {0, 3, 2, 5}, {30, 20, 2, 31, 20})), damaged);
        QCOMPARE(faultIn(shortlist(4, {0, 2, 2, 4}, {30, 20, 2, 31, 20})), damaged);
        QCOMPARE(faultIn(shortlist(4, {0, 1ULL << 63, 1ULL << 63, 5}, {30, 20, 2, 31, 20})), damaged);
        std::string endless = good;
        const std::uint64_t many = ~0ULL;
        std::memcpy(endless.data() + 40, &many, sizeof many);
        QCOMPARE(faultIn(endless), truncated);
    }

    void whatChangesInUseIsNoticed()
    {
        using enum EngineError::Case;
        const std::string good = shortlist(4, {0, 2, 2, 5}, {30, 20, 2, 31, 20});
        const LexicalShortlist list = listOf(good);
        const auto fault = [&](const std::vector<int> &sentence) {
            return faultOf([&] { list.candidates(sentence, false); });
        };
        QCOMPARE(fault({0, 2}), std::nullopt);
        overwrite(good.substr(0, good.size() - 1));
        QCOMPARE(fault({0}), std::nullopt);
        QCOMPARE(fault({0, 2}), truncated);
        overwrite(good.substr(0, 50));
        QCOMPARE(fault({0}), truncated);
        overwrite({});
        QCOMPARE(fault({0}), truncated);
        overwrite(shortlist(4, {0, 2, 2, 5}, {30, 40, 2, 31, 20}));
        QCOMPARE(fault({2}), std::nullopt);
        QCOMPARE(fault({0}), mismatched);
        overwrite(shortlist(4, {2, 0, 2, 1ULL << 60}, {30, 20, 2, 31, 20}));
        QCOMPARE(fault({0}), damaged);
        QCOMPARE(fault({2}), damaged);
        overwrite(good);
        QCOMPARE(fault({0, 2}), std::nullopt);
    }

    void aFileThatIsNoneIsUnreadable()
    {
        for (const QString &path : {m_folder.path(QStringLiteral("missing")), m_folder.path(QString())})
            QCOMPARE(
                faultOf([&] { const LexicalShortlist list(path, 3, 40); }), EngineError::Case::unreadable);
    }

    void everyListIsFoundWhereItLies()
    {
        constexpr int words = 4000;
        constexpr int length = 50;
        const std::string bytes = generateShortlist(words, words, 10, length, 1);
        const LexicalShortlist list = listOf(bytes, words, words);
        const char *lists = bytes.data() + (6 + words + 1) * sizeof(std::uint64_t);
        for (int word = 0; word < words; word += 31) {
            std::vector<std::uint32_t> expected(length);
            std::memcpy(expected.data(), lists + std::size_t(word) * length * sizeof(std::uint32_t),
                length * sizeof(std::uint32_t));
            const std::vector<int> sentence = {word};
            const auto candidates = list.candidates(sentence, false);
            QVERIFY(std::includes(candidates.begin(), candidates.end(), expected.begin(), expected.end()));
            QVERIFY(candidates.size() < length + 10 + 8);
        }
    }

    void aForeignWordIsFoundInTheLastList()
    {
        std::string bytes = generateShortlist(4000, 4000, 10, 50, 1);
        QCOMPARE(faultIn(bytes, 4000, 4000), std::nullopt);
        const std::uint32_t foreign = 4000;
        std::memcpy(bytes.data() + bytes.size() - sizeof foreign, &foreign, sizeof foreign);
        QCOMPARE(faultIn(bytes, 4000, 4000), EngineError::Case::mismatched);
    }

    void generatedListsAreSound()
    {
        const std::string bytes = generateShortlist(100, 200, 10, 5, 1);
        const LexicalShortlist list = listOf(bytes, 100, 200);
        const std::vector<int> sentence = {5, 99, 0};
        const auto candidates = list.candidates(sentence, false);
        QVERIFY(candidates.size() >= 16 && candidates.size() <= 32);
        QCOMPARE(candidates.size() % 8, std::size_t(0));
    }

private:
    /// Writes over the file itself, which keeps its place on the disk.
    QString overwrite(const std::string &bytes) const
    {
        return m_folder.write(QStringLiteral("lex.bin"), bytes);
    }

    LexicalShortlist listOf(const std::string &bytes, int sourceWords = 3, int targetWords = 40) const
    {
        return LexicalShortlist(overwrite(bytes), sourceWords, targetWords);
    }

    std::optional<EngineError::Case> faultIn(
        const std::string &bytes, int sourceWords = 3, int targetWords = 40) const
    {
        return faultOf([&] { listOf(bytes, sourceWords, targetWords); });
    }

    GeneratedFolder m_folder;
};

LUMAPHONE_TEST(LexicalShortlistTest)

} // namespace lexicalshortlisttest

#include "LexicalShortlistTest.moc"
