#include "translation/engine/TranslationModel.h"

#include "support/engine/GeneratedFolder.h"
#include "support/engine/SampleSentences.h"
#include "support/engine/VocabularyTrainer.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <thread>

namespace translationmodeltest {

using namespace lumaphone::engine;
using namespace lumaphone::engine::test;

class TranslationModelTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_files = m_folder.smallModel(); }

    void nothingGivesNothing()
    {
        TranslationModel model(m_files);
        QCOMPARE(model.translate(QString()), QString());
        QCOMPARE(model.translate(QStringLiteral(" \n ")), QString());
    }

    void sentencesAreTranslatedOneByOne()
    {
        TranslationModel model(m_files);
        const QString first = QStringLiteral("My sister often bought bread.");
        const QString second = QStringLiteral("The library closes early today.");
        const QString a = model.translate(first);
        const QString b = model.translate(second);
        QVERIFY(!a.isEmpty() && !b.isEmpty() && a != b);
        const QString both = model.translate(first + QLatin1Char(' ') + second);
        QVERIFY(both == a + b || both == a + QLatin1Char(' ') + b);
        QCOMPARE(model.translate(first + QLatin1Char('\n') + second), a + QLatin1Char('\n') + b);
    }

    void sentencesBeyondTheModelsLengthAreCutBetweenWords()
    {
        const Vocabulary vocabulary(m_files.sourceVocabulary);
        QStringList words;
        for (const std::string &sentence : englishSentences()) {
            words.append(QString::fromStdString(sentence).chopped(1).split(QLatin1Char(' ')));
            if (words.size() > 400)
                break;
        }
        const QString text = words.join(QLatin1Char(' '));
        const auto whole = vocabulary.encode(text.toStdString());
        const auto chunks = chunked(text, vocabulary, 127);
        QVERIFY(chunks.size() >= qsizetype(whole.size() / 127));
        std::size_t at = 0;
        for (const SourceChunk &chunk : chunks) {
            QVERIFY(!chunk.words.empty() && chunk.words.size() <= 127);
            QVERIFY(text.toUtf8().at(qsizetype(whole[at].begin)) == ' ' || at == 0);
            for (const int word : chunk.words)
                QCOMPARE(word, whole[at++].word);
        }
        QCOMPARE(at, whole.size());
        TranslationModel model(m_files);
        QVERIFY(!model.translate(text).isEmpty());
    }

    void textWithoutAnyPlaceToCutIsCutAllTheSame()
    {
        const Vocabulary vocabulary(m_files.sourceVocabulary);
        const QString text = QString(900, QChar(0x9F98));
        int words = 0;
        for (const SourceChunk &chunk : chunked(text, vocabulary, 127)) {
            QVERIFY(chunk.words.size() <= 127);
            words += int(chunk.words.size());
        }
        QVERIFY(words >= 900);
        TranslationModel(m_files).translate(text);
    }

    void cutsPreferTheEndOfAClause()
    {
        const Vocabulary vocabulary(m_files.sourceVocabulary);
        const QString text = QStringLiteral("the river the river the river, the river the river");
        const auto whole = vocabulary.encode(text.toStdString());
        const auto chunks = chunked(text, vocabulary, int(whole.size()) - 2);
        QCOMPARE(chunks.size(), 2);
        const auto cut = whole[chunks.front().words.size()].begin;
        QCOMPARE(text.mid(qsizetype(cut)), QStringLiteral(" the river the river"));
    }

    // A model with random weights copies nothing: whatever comes through has been protected.
    void placeholdersAndAddressesComeThrough_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("terms");
        const QString a = QStringLiteral("LUMAPHON_TERM_0");
        const QString b = QStringLiteral("LUMAPHON_TERM_1");
        const QString c = QStringLiteral("LUMAPHON_TERM_10");
        const QString url = QStringLiteral("https://example.org/a/b.html?c=d_e&f=1");
        QTest::newRow("one") << QStringLiteral("My sister met LUMAPHON_TERM_0 today.") << QStringList {a};
        QTest::newRow("alone") << a << QStringList {a};
        QTest::newRow("in Japanese") << QStringLiteral("妹はLUMAPHON_TERM_0に会いました。")
                                     << QStringList {a};
        QTest::newRow("several") << QStringLiteral(
            "LUMAPHON_TERM_0 and LUMAPHON_TERM_1, not LUMAPHON_TERM_10")
                                 << QStringList {a, b, c};
        QTest::newRow("the same twice")
            << QStringLiteral("LUMAPHON_TERM_0 or LUMAPHON_TERM_0") << QStringList {a, a};
        QTest::newRow("an address") << QStringLiteral("The teacher sent %1 to everyone.").arg(url)
                                    << QStringList {url};
        QTest::newRow("mail") << QStringLiteral("Ask someone@example.org.")
                              << QStringList {QStringLiteral("someone@example.org")};
        QTest::newRow("in two sentences")
            << QStringLiteral("Ask LUMAPHON_TERM_0. Then LUMAPHON_TERM_1 came.") << QStringList {a, b};
        const QString endless = QStringLiteral("https://example.org/") + QStringLiteral("x7/q").repeated(200);
        QTest::newRow("an address longer than the model takes")
            << QStringLiteral("See %1 for more about the weather.").arg(endless) << QStringList {endless};
    }

    void placeholdersAndAddressesComeThrough()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, terms);
        TranslationModel model(m_files);
        QString rest = model.translate(text);
        // Longest first: a placeholder may be the beginning of another.
        std::sort(terms.begin(), terms.end(),
            [](const QString &x, const QString &y) { return x.size() > y.size(); });
        for (const QString &term : terms) {
            const qsizetype position = rest.indexOf(term);
            QVERIFY2(position >= 0, qPrintable(term + QStringLiteral(" is not in ") + rest));
            rest.replace(position, term.size(), QStringLiteral("\n"));
        }
        QVERIFY2(!rest.contains(QStringLiteral("LUMAPHON")), qPrintable(rest));
    }

    void numbersAreTheModelsOwnAffairIfItCanSpellThem()
    {
        const Vocabulary vocabulary(m_files.sourceVocabulary);
        const auto chunks = chunked(QStringLiteral("She paid 3,500 yen in 2024."), vocabulary, 127);
        QCOMPARE(chunks.size(), 1);
        QVERIFY(chunks.front().terms.isEmpty());
        for (const int word : chunks.front().words)
            QVERIFY(word != vocabulary.unknown());
    }

    void numbersThatTheVocabularyCannotSpellComeThrough()
    {
        ModelFiles files = m_files;
        files.sourceVocabulary = m_folder.write(QStringLiteral("named.spm"), namingVocabulary(1000));
        TranslationModel model(files);
        const QString translated = model.translate(QStringLiteral("w00012 3,500 w00040 2024"));
        QVERIFY2(translated.contains(QStringLiteral("3,500")) && translated.contains(QStringLiteral("2024")),
            qPrintable(translated));
    }

    void callersOnSeveralThreadsTakeTurns()
    {
        TranslationModel model(m_files);
        const QString text = QStringLiteral("My sister often bought bread.");
        const QString expected = model.translate(text);
        QString first;
        QString second;
        {
            const std::jthread one([&] { first = model.translate(text); });
            const std::jthread two([&] { second = model.translate(text); });
        }
        QCOMPARE(first, expected);
        QCOMPARE(second, expected);
    }

    void aStopIsHeeded()
    {
        TranslationModel model(m_files);
        std::stop_source stop;
        stop.request_stop();
        QVERIFY_THROWS_EXCEPTION(EngineError, model.translate(QStringLiteral("Hello."), stop.get_token()));
        QVERIFY(!model.translate(QStringLiteral("Hello.")).isEmpty());
    }

private:
    GeneratedFolder m_folder;
    ModelFiles m_files;
};

LUMAPHONE_TEST(TranslationModelTest)

} // namespace translationmodeltest

#include "TranslationModelTest.moc"
