#include "speech/hosted/LanguageArbiter.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace languagearbitertest {

using namespace lumaphone;

namespace {

using Language = SpokenLanguage;
using Choice = std::optional<SpokenLanguage>;

const std::vector<Language> all {Language::japanese, Language::english, Language::korean, Language::mandarin};

LanguageArbiter::Hearing volatileText(
    std::int64_t segment, double seconds, Choice language, const QString &text = "x")
{
    return {segment, LanguageArbiter::Seconds(seconds), false, language, text};
}

LanguageArbiter::Hearing finalText(
    std::int64_t segment, double seconds, Choice language, const QString &text = "x")
{
    return {segment, LanguageArbiter::Seconds(seconds), true, language, text};
}

} // namespace

class LanguageArbiterTest : public QObject
{
    Q_OBJECT

private slots:
    void aSingleCandidateIsAlwaysRight()
    {
        LanguageArbiter arbiter({Language::korean});
        QVERIFY(arbiter.decide(volatileText(0, 0.1, Language::english)) == Language::korean);
        QVERIFY(arbiter.decide(finalText(0, 0.3, {}, "今日は")) == Language::korean);
    }

    void volatileTextsWaitForASecondOfSpeech()
    {
        LanguageArbiter arbiter(all);
        QVERIFY(!arbiter.decide(volatileText(0, 0.5, Language::japanese)));
        QVERIFY(!arbiter.decide(volatileText(0, 0.99, Language::japanese)));
        QVERIFY(arbiter.decide(volatileText(0, 1.0, Language::japanese)) == Language::japanese);
    }

    void aSegmentChangesItsLanguageOnlyAfterTwoAgreeingDecodes()
    {
        LanguageArbiter arbiter(all);
        QVERIFY(arbiter.decide(volatileText(0, 1.3, Language::japanese)) == Language::japanese);
        QVERIFY(!arbiter.decide(volatileText(0, 1.7, Language::mandarin)));
        QVERIFY(arbiter.decide(volatileText(0, 2.1, Language::japanese)) == Language::japanese);
        QVERIFY(!arbiter.decide(volatileText(0, 2.5, Language::mandarin)));
        QVERIFY(!arbiter.decide(volatileText(0, 2.9, Language::english)));
        QVERIFY(!arbiter.decide(volatileText(0, 3.3, Language::mandarin)));
        QVERIFY(arbiter.decide(volatileText(0, 3.7, Language::mandarin)) == Language::mandarin);
        QVERIFY(arbiter.decide(volatileText(0, 4.1, Language::mandarin)) == Language::mandarin);
    }

    void aSegmentChangesItsLanguageOnlyAfterOnePointTwoSeconds()
    {
        LanguageArbiter arbiter(all);
        QVERIFY(arbiter.decide(volatileText(0, 1.0, Language::japanese)) == Language::japanese);
        QVERIFY(!arbiter.decide(volatileText(0, 1.05, Language::korean)));
        QVERIFY(!arbiter.decide(volatileText(0, 1.1, Language::korean)));
        QVERIFY(arbiter.decide(volatileText(0, 1.2, Language::korean)) == Language::korean);
    }

    void theNextSegmentStartsAfresh()
    {
        LanguageArbiter arbiter(all);
        QVERIFY(arbiter.decide(volatileText(0, 2, Language::japanese)) == Language::japanese);
        QVERIFY(arbiter.decide(volatileText(90000, 2, Language::english)) == Language::english);
    }

    void theWholeSegmentDecidesTheFinalText()
    {
        LanguageArbiter arbiter(all);
        QVERIFY(arbiter.decide(volatileText(0, 2, Language::japanese)) == Language::japanese);
        QVERIFY(arbiter.decide(volatileText(0, 3, Language::japanese)) == Language::japanese);
        QVERIFY(arbiter.decide(finalText(0, 3.1, Language::mandarin)) == Language::mandarin);
    }

    void aShortSegmentKeepsTheLanguageUnlessItsScriptSaysOtherwise_data()
    {
        QTest::addColumn<Language>("previous");
        QTest::addColumn<Language>("named");
        QTest::addColumn<QString>("text");
        QTest::addColumn<Language>("expected");
        QTest::newRow("nothing against it")
            << Language::japanese << Language::mandarin << "好" << Language::japanese;
        QTest::newRow("Latin letters say little")
            << Language::japanese << Language::english << "ok" << Language::japanese;
        QTest::newRow("kana") << Language::english << Language::japanese << "はい" << Language::japanese;
        QTest::newRow("kana, named wrongly")
            << Language::mandarin << Language::mandarin << "はい" << Language::japanese;
        QTest::newRow("katakana") << Language::korean << Language::english << "テスト" << Language::japanese;
        QTest::newRow("Hangul") << Language::english << Language::korean << "네" << Language::korean;
        QTest::newRow("Hangul, named wrongly")
            << Language::japanese << Language::english << "네" << Language::korean;
        QTest::newRow("Han is no English")
            << Language::english << Language::mandarin << "好" << Language::mandarin;
        QTest::newRow("Han is no Korean")
            << Language::korean << Language::japanese << "今日" << Language::japanese;
        QTest::newRow("the same") << Language::korean << Language::korean << "네" << Language::korean;
    }
    void aShortSegmentKeepsTheLanguageUnlessItsScriptSaysOtherwise()
    {
        QFETCH(Language, previous);
        QFETCH(Language, named);
        QFETCH(QString, text);
        QFETCH(Language, expected);
        LanguageArbiter arbiter(all);
        QVERIFY(arbiter.decide(finalText(0, 3, previous)) == previous);
        QVERIFY(arbiter.decide(finalText(50000, 0.8, named, text)) == expected);
    }

    void aShortFirstSegmentIsWhatTheNetworkSays()
    {
        LanguageArbiter arbiter(all);
        QVERIFY(arbiter.decide(finalText(0, 0.5, Language::english, "yes")) == Language::english);
    }

    void withoutANameTheScriptDecides_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("expected");
        QTest::newRow("kana and Han") << "今日はいい天気ですね" << int(Language::japanese);
        QTest::newRow("Hangul") << "안녕하세요" << int(Language::korean);
        QTest::newRow("Han") << "今天天气很好" << int(Language::mandarin);
        QTest::newRow("Latin") << "good morning" << int(Language::english);
        QTest::newRow("Latin in Japanese") << "OpenAIの" << int(Language::japanese);
        QTest::newRow("none") << "123" << -1;
    }
    void withoutANameTheScriptDecides()
    {
        QFETCH(QString, text);
        QFETCH(int, expected);
        LanguageArbiter arbiter(all);
        const auto language = arbiter.decide(finalText(0, 3, {}, text));
        QCOMPARE(language ? int(*language) : -1, expected);
    }

    void whatIsNoCandidateIsNotShown()
    {
        LanguageArbiter arbiter({Language::english, Language::korean});
        QVERIFY(!arbiter.decide(volatileText(0, 2, Language::japanese)));
        QVERIFY(!arbiter.decide(finalText(0, 2, Language::japanese, "こんにちは")));
        QVERIFY(arbiter.decide(finalText(9, 2, Language::english)) == Language::english);
    }

    /// Over scripted decodes: a segment's shown language never changes back and forth between neighbours, and
    /// its final text of a second or more is what the network said.
    void theLanguageDoesNotFlap()
    {
        std::mt19937 random(5);
        for (int round = 0; round < 500; ++round) {
            LanguageArbiter arbiter(all);
            for (std::int64_t segment = 0; segment < 20; ++segment) {
                Choice shown;
                Choice last;
                double seconds = 0.25;
                const int decodes = 1 + int(random() % 15);
                for (int i = 0; i < decodes; ++i, seconds += 0.4) {
                    const Choice named = all[random() % all.size()];
                    const Choice decided = arbiter.decide(volatileText(segment, seconds, named));
                    QVERIFY(!decided || decided == named);
                    QVERIFY(!decided || seconds >= 1.0);
                    // A change is backed by the decode before.
                    QVERIFY(!decided || !shown || decided == shown || (last == decided && seconds >= 1.2));
                    shown = decided ? decided : shown;
                    last = named;
                }
                const Choice named = all[random() % all.size()];
                const auto final = arbiter.decide(finalText(segment, seconds, named));
                QVERIFY(final.has_value());
                QVERIFY(seconds < 1.0 || final == named);
            }
        }
    }
};

LUMAPHONE_TEST(LanguageArbiterTest)

} // namespace languagearbitertest

#include "LanguageArbiterTest.moc"
