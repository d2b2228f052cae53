#include "translation/engine/LexicalShortlist.h"

#include "support/engine/GeneratedFolder.h"
#include "support/engine/ModelGenerator.h"
#include "translation/engine/EngineError.h"

#include <QFile>
#include <QTest>

#include <cstring>
#include <optional>

using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

namespace {

const QString name = QStringLiteral("some lex.bin");

std::span<const std::byte> bytesOf(const std::string &text)
{
    return std::as_bytes(std::span(text.data(), text.size()));
}

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

std::optional<EngineError::Case> faultOf(const std::string &bytes, int sourceWords = 3, int targetWords = 40)
{
    try {
        const LexicalShortlist list(bytesOf(bytes), name, sourceWords, targetWords);
        return std::nullopt;
    } catch (const EngineError &error) {
        return error.which();
    }
}

/// How much of a mapped file is in this process's memory; -1 if it is not mapped.
int residentKilobytes(const QString &path)
{
    QFile maps(QStringLiteral("/proc/self/smaps"));
    if (!maps.open(QIODevice::ReadOnly))
        return -1;
    bool isFound = false;
    for (const QByteArray &line : maps.readAll().split('\n')) {
        if (line.endsWith(path.toUtf8()))
            isFound = true;
        else if (isFound && line.startsWith("Rss:"))
            return line.mid(4).trimmed().split(' ').first().toInt();
    }
    return -1;
}

} // namespace

class LexicalShortlistTest : public QObject
{
    Q_OBJECT

private slots:
    void candidatesAreTheFrequentTheListedAndSomeMore()
    {
        const std::string bytes = shortlist(4, {0, 2, 2, 5}, {30, 20, 2, 31, 20});
        const LexicalShortlist list(bytesOf(bytes), name, 3, 40);
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
        const LexicalShortlist list(bytesOf(bytes), name, 30, 40);
        const std::vector<int> sentence = {25, 9};
        QCOMPARE(list.candidates(sentence, true), (std::vector<std::uint32_t> {0, 1, 2, 3, 4, 5, 9, 25}));
        QCOMPARE(list.candidates(sentence, false), (std::vector<std::uint32_t> {0, 1, 2, 3, 4, 5, 6, 7}));
    }

    void theVocabularyIsTheLimit()
    {
        const std::string bytes = shortlist(2, {0, 0}, {});
        const LexicalShortlist list(bytesOf(bytes), name, 1, 5);
        QCOMPARE(list.candidates({}, false), (std::vector<std::uint32_t> {0, 1, 2, 3, 4}));
    }

    void damagedListsAreRefused()
    {
        using enum EngineError::Case;
        const std::string good = shortlist(4, {0, 2, 2, 5}, {30, 20, 2, 31, 20});
        QCOMPARE(faultOf(good), std::nullopt);
        for (std::size_t size = 0; size < good.size(); ++size)
            QVERIFY(faultOf(good.substr(0, size)).has_value());
        QCOMPARE(faultOf(good + 'x'), Damaged);
        QCOMPARE(faultOf(std::string(64, 'x')), NotRecognised);
        QCOMPARE(faultOf(shortlist(41, {0, 0}, {})), Mismatched);
        QCOMPARE(faultOf(shortlist(4, {0}, {})), Mismatched);
        QCOMPARE(faultOf(good, 2), Mismatched);
        QCOMPARE(faultOf(good, 3, 31), Mismatched);
        QCOMPARE(faultOf(shortlist(4, {0, 3, 2, 5}, {30, 20, 2, 31, 20})), Damaged);
        QCOMPARE(faultOf(shortlist(4, {0, 2, 2, 4}, {30, 20, 2, 31, 20})), Damaged);
        QCOMPARE(faultOf(shortlist(4, {0, 1ULL << 63, 1ULL << 63, 5}, {30, 20, 2, 31, 20})), Damaged);
        std::string endless = good;
        const std::uint64_t many = ~0ULL;
        std::memcpy(endless.data() + 40, &many, sizeof many);
        QCOMPARE(faultOf(endless), Truncated);
    }

    void listsDoNotStayInMemory()
    {
        const GeneratedFolder folder;
        const std::string bytes = generateShortlist(4000, 4000, 10, 50, 1);
        const QString path = folder.write(QStringLiteral("lists.bin"), bytes);
        const LexicalShortlist list(path, 4000, 4000);
        QCOMPARE(residentKilobytes(path), 0);
        const LexicalShortlist kept(bytesOf(bytes), name, 4000, 4000);
        for (int word = 0; word + 2 < 4000; word += 31) {
            const std::vector<int> sentence = {word, word + 1, word + 2};
            QCOMPARE(list.candidates(sentence, false), kept.candidates(sentence, false));
            QCOMPARE(residentKilobytes(path), 0);
        }
    }

    void aForeignWordIsFoundInTheLastList()
    {
        std::string bytes = generateShortlist(4000, 4000, 10, 50, 1);
        QCOMPARE(faultOf(bytes, 4000, 4000), std::nullopt);
        const std::uint32_t foreign = 4000;
        std::memcpy(bytes.data() + bytes.size() - sizeof foreign, &foreign, sizeof foreign);
        QCOMPARE(faultOf(bytes, 4000, 4000), EngineError::Case::Mismatched);
    }

    void generatedListsAreSound()
    {
        const std::string bytes = generateShortlist(100, 200, 10, 5, 1);
        const LexicalShortlist list(bytesOf(bytes), name, 100, 200);
        const std::vector<int> sentence = {5, 99, 0};
        const auto candidates = list.candidates(sentence, false);
        QVERIFY(candidates.size() >= 16 && candidates.size() <= 32);
        QCOMPARE(candidates.size() % 8, std::size_t(0));
    }
};

QTEST_GUILESS_MAIN(LexicalShortlistTest)
#include "LexicalShortlistTest.moc"
