#include "support/program/TestProgram.h"
#include "translation/engine/Translator.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTest>

#include <algorithm>
#include <iostream>

namespace phrasebooktest {

using namespace lumaphone;
using namespace lumaphone::engine;

namespace {

const QDir folder(QStringLiteral(LUMAPHONE_PHRASE_BOOK));

QList<QStringList> rows(const QString &name)
{
    QFile file(folder.filePath(name));
    QList<QStringList> rows;
    if (file.open(QIODevice::ReadOnly)) {
        for (const QString &line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
            if (!line.startsWith('#')) {
                rows.append(line.split('\t'));
            }
        }
    }
    return rows;
}

std::shared_ptr<TranslationModel> leg(const QString &pair, const QString &source, const QString &target = {})
{
    return std::make_shared<TranslationModel>(ModelFiles {folder.filePath("model." + pair + ".bin"),
        folder.filePath(source), target.isEmpty() ? QString() : folder.filePath(target), {}});
}

/// How much two texts have in common: the F score of their characters and pairs of characters, 0 to 1.
double likeness(const QString &a, const QString &b)
{
    const auto pieces = [](const QString &text) {
        QHash<QString, int> counts;
        for (qsizetype index = 0; index < text.size(); ++index) {
            ++counts[text.mid(index, 1)];
            if (index + 1 < text.size()) {
                ++counts[text.mid(index, 2)];
            }
        }
        return counts;
    };
    const auto ofA = pieces(a);
    const auto ofB = pieces(b);
    int common = 0;
    for (auto piece = ofA.begin(); piece != ofA.end(); ++piece) {
        common += std::min(piece.value(), ofB.value(piece.key()));
    }
    return 2.0 * common / std::max<qsizetype>(1, 2 * a.size() - 1 + 2 * b.size() - 1);
}

struct Score
{
    int identical = 0;
    int total = 0;
    double likenesses = 0;

    double mean() const { return likenesses / total; }
};

} // namespace

/// The trained models of the phrase book: from a sentence to Taiwan's Chinese, through English where need be.
class PhraseBookTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const auto toChinese = leg("enzh", "srcvocab.enzh.spm", "trgvocab.enzh.spm");
        m_translators["en"] = translator({toChinese});
        m_translators["ja"] = translator({leg("jaen", "vocab.jaen.spm"), toChinese});
        m_translators["ko"] = translator({leg("koen", "vocab.koen.spm"), toChinese});
    }

    void theModelsAreSmall()
    {
        qint64 bytes = 0;
        for (const QFileInfo &file : folder.entryInfoList({"*.bin", "*.spm"})) {
            bytes += file.size();
        }
        QVERIFY(bytes > 1'000'000);
        QVERIFY2(bytes < 3'500'000, qPrintable(QString::number(bytes)));
    }

    void spokenSentencesAreTranslated_data() { languages(); }
    void spokenSentencesAreTranslated()
    {
        QFETCH(QString, language);
        Score score;
        for (const QStringList &row : rows("spoken.tsv")) {
            if (row[0] == language) {
                add(score, language, row[1], row[2]);
            }
        }
        print(language, score);
        QVERIFY(score.total >= 24);
        QVERIFY(score.identical * 100 >= score.total * 85);
    }

    void sentencesItHasNeverSeenAreTranslatedSensibly_data() { languages(); }
    void sentencesItHasNeverSeenAreTranslatedSensibly()
    {
        QFETCH(QString, language);
        const QStringList columns {"en", "ja", "ko"};
        Score score;
        for (const QStringList &row : rows("held-out.tsv")) {
            add(score, language, row[columns.indexOf(language)], row[3]);
        }
        print(language, score);
        QVERIFY(score.total >= 30);
        QVERIFY(score.identical * 100 >= score.total * 60);
        QVERIFY(score.mean() >= 0.75);
    }

private:
    static std::shared_ptr<Translator> translator(const std::vector<std::shared_ptr<TranslationModel>> &legs)
    {
        return std::make_shared<Translator>(legs, WrittenChinese::traditional);
    }
    static void languages()
    {
        QTest::addColumn<QString>("language");
        for (const char *language : {"en", "ja", "ko"}) {
            QTest::newRow(language) << language;
        }
    }
    void add(Score &score, const QString &language, const QString &sentence, const QString &expected)
    {
        const QString translation = m_translators[language]->translate(sentence);
        const QString wanted = m_wording.rewrite(expected);
        ++score.total;
        score.identical += translation == wanted ? 1 : 0;
        score.likenesses += likeness(translation, wanted);
        if (translation != wanted) {
            std::cout << "  " << sentence.toStdString() << " -> " << translation.toStdString() << ", not "
                      << wanted.toStdString() << std::endl;
        }
    }
    static void print(const QString &language, const Score &score)
    {
        std::cout << language.toStdString() << ": " << score.identical << " of " << score.total
                  << " as expected, likeness " << score.mean() << std::endl;
    }

    const TaiwanWording m_wording {WrittenChinese::traditional};
    QHash<QString, std::shared_ptr<Translator>> m_translators;
};

LUMAPHONE_TEST(PhraseBookTest)

} // namespace phrasebooktest

#include "PhraseBookTest.moc"
