#include "translation/engine/Vocabulary.h"

#include "support/engine/GeneratedFolder.h"
#include "support/engine/VocabularyTrainer.h"
#include "support/program/TestProgram.h"
#include "translation/engine/EngineError.h"
#include "translation/engine/VocabularyCheck.h"

#include <QTest>

namespace vocabularytest {

using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

namespace {

const QString name = QStringLiteral("some vocabulary.spm");

std::vector<int> wordsOf(const std::vector<Vocabulary::Piece> &pieces)
{
    std::vector<int> words;
    for (const Vocabulary::Piece &piece : pieces)
        words.push_back(piece.word);
    return words;
}

bool isRefused(const std::string &bytes)
{
    try {
        const Vocabulary vocabulary(bytes, name);
        return false;
    } catch (const EngineError &error) {
        return error.errorDescription().contains(name);
    }
}

} // namespace

class VocabularyTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_trained = trainVocabulary(900); }

    void textsComeBack()
    {
        const Vocabulary vocabulary(m_trained, name);
        QCOMPARE(vocabulary.endOfSentence(), 0);
        QCOMPARE(vocabulary.unknown(), 1);
        for (const std::string text : {"My sister often bought bread.", "妹はよくパンと牛乳を買いました。",
                 "LUMAPHON_TERM_0 costs 3,500 yen 🙂", "https://example.org/a?b=c_d"}) {
            const auto pieces = vocabulary.encode(text);
            QCOMPARE(vocabulary.decode(wordsOf(pieces)).text, text);
            QCOMPARE(pieces.front().begin, std::size_t(0));
            QCOMPARE(pieces.back().end, text.size());
        }
        QVERIFY(vocabulary.encode("").empty());
    }

    void spellingsSayWhereWordsEnd()
    {
        const Vocabulary vocabulary(namingVocabulary(100), name);
        const std::vector<int> words = {7, 42, 99};
        const auto spelling = vocabulary.decode(words);
        QCOMPARE(spelling.text, std::string("w00007 w00042 w00099"));
        QCOMPARE(spelling.ends, (std::vector<std::size_t> {6, 13, 20}));
        QCOMPARE(wordsNamedIn(spelling.text), words);
        QCOMPARE(wordsOf(vocabulary.encode(spelling.text)), words);
    }

    void paddingKeepsTheWords()
    {
        const Vocabulary plain(m_trained, name);
        const Vocabulary padded(paddedVocabulary(m_trained, 2000), name);
        QCOMPARE(padded.size(), 2000);
        const std::string text = "The teacher from Kyoto forgot the umbrella.";
        QCOMPARE(wordsOf(padded.encode(text)), wordsOf(plain.encode(text)));
    }

    void anyTruncationIsRefusedOrHarmless()
    {
        int refused = 0;
        for (std::size_t size = 0; size < m_trained.size(); size += 61)
            refused += isRefused(m_trained.substr(0, size));
        QVERIFY(refused > 100);
        QVERIFY(isRefused(""));
        QVERIFY(isRefused("no vocabulary"));
        QVERIFY(!isRefused(m_trained));
    }

    void charactersRulesThatLeadOutsideAreRefused()
    {
        // The rules lie behind the pieces; a flipped high bit in a trie unit sends a link far away.
        const std::size_t end = m_trained.size();
        int refused = 0;
        for (std::size_t position = end - 200000; position < end; position += 509) {
            std::string flipped = m_trained;
            flipped[position] = static_cast<char>(flipped[position] ^ 0x40);
            try {
                checkVocabularyFile(flipped, name);
            } catch (const EngineError &) {
                ++refused;
            }
        }
        QVERIFY(refused > 20);
    }

    void aMissingFileIsNamed()
    {
        const GeneratedFolder folder;
        QVERIFY_THROWS_EXCEPTION(EngineError, Vocabulary(folder.path(QStringLiteral("missing.spm"))));
    }

private:
    std::string m_trained;
};

LUMAPHONE_TEST(VocabularyTest)

} // namespace vocabularytest

#include "VocabularyTest.moc"
