#include "speech/framework/RecognizedText.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace recognizedtexttest {

using namespace lumaphone;
using Language = SpokenLanguage;

class RecognizedTextTest : public QObject
{
    Q_OBJECT

private slots:
    void textsAreCleaned_data()
    {
        QTest::addColumn<Language>("language");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << Language::english << ""
                               << "";
        QTest::newRow("blank") << Language::english << "  \n "
                               << "";
        QTest::newRow("English") << Language::english << " good  morning everyone. "
                                 << "good morning everyone.";
        QTest::newRow("blank before a mark") << Language::english << "well , yes ."
                                             << "well, yes.";
        QTest::newRow("punctuation only") << Language::english << ". ,!"
                                          << "";
        QTest::newRow("East Asian punctuation only") << Language::japanese << "。、！"
                                                     << "";
        QTest::newRow("dashes") << Language::english << "— - …"
                                << "";
        QTest::newRow("event marks only") << Language::mandarin << "<|BGM|><|withitn|>"
                                          << "";
        QTest::newRow("event pictures only") << Language::english << "🎼😊👏"
                                             << "";
        QTest::newRow("event marks and text") << Language::english << "<|en|><|Speech|>hello"
                                              << "hello";
        QTest::newRow("a picture and text") << Language::japanese << "🎼 こんにちは。"
                                            << "こんにちは。";
        QTest::newRow("a number") << Language::english << "42"
                                  << "42";
        QTest::newRow("Japanese") << Language::japanese << "今日 は いい 天気 です ね 。"
                                  << "今日はいい天気ですね。";
        QTest::newRow("Japanese and a name") << Language::japanese << "これは Qt Quick です"
                                             << "これはQt Quickです";
        QTest::newRow("long vowel") << Language::japanese << "ニュ ース"
                                    << "ニュース";
        QTest::newRow("Mandarin") << Language::mandarin << "今天 天气 很好"
                                  << "今天天气很好";
        QTest::newRow("Mandarin and numbers") << Language::mandarin << "一共 20 个"
                                              << "一共20个";
        QTest::newRow("Korean") << Language::korean << " 오늘은  날씨가 좋습니다 ."
                                << "오늘은 날씨가 좋습니다.";
        QTest::newRow("Korean question") << Language::korean << "얼마입니까 ?"
                                         << "얼마입니까?";
    }
    void textsAreCleaned()
    {
        QFETCH(Language, language);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(cleanRecognizedText(text, language), expected);
        QCOMPARE(cleanRecognizedText(expected, language), expected);
    }

    void musicAndSilenceAreNoSpeech_data()
    {
        QTest::addColumn<QString>("event");
        QTest::addColumn<QString>("language");
        QTest::addColumn<bool>("expected");
        QTest::newRow("speech") << "Speech"
                                << "ja" << true;
        QTest::newRow("nothing named") << ""
                                       << "" << true;
        QTest::newRow("laughing while speaking") << "Laughter"
                                                 << "en" << true;
        QTest::newRow("music") << "BGM"
                               << "en" << false;
        QTest::newRow("no speech as the event") << "nospeech"
                                                << "zh" << false;
        QTest::newRow("no speech as the language") << "Speech"
                                                   << "nospeech" << false;
    }
    void musicAndSilenceAreNoSpeech()
    {
        QFETCH(QString, event);
        QFETCH(QString, language);
        QTEST(mayBeSpeech(event, language), "expected");
    }

    void aRepeatedTailIsCut_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("nothing repeated") << "He was not ill."
                                          << "He was not ill.";
        QTest::newRow("people repeat words") << "No, no, no, no!"
                                             << "No, no, no, no!";
        QTest::newRow("but not for ever") << "He said no no no No, no."
                                          << "He said no";
        QTest::newRow("twice the same") << "I know. I know."
                                        << "I know. I know.";
        QTest::newRow("three times") << "And so he said I know, I know, I know."
                                     << "And so he said I know";
        QTest::newRow("begun once more") << "to be kind to be kind to be kind to"
                                         << "to be kind to";
        QTest::newRow("in the middle") << "no no no no no he said"
                                       << "no no no no no he said";
        QTest::newRow("Han") << "今天很好很好很好"
                             << "今天很好";
        QTest::newRow("empty") << ""
                               << "";
    }
    void aRepeatedTailIsCut()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(withoutRepeatedTail(text), expected);
    }

    void nobodySpeaksThatFast_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<bool>("expected");
        QTest::newRow("nothing") << "" << 0.0 << true;
        QTest::newRow("a short answer") << "Yes, I do." << 0.3 << true;
        QTest::newRow("usual speech") << "He was not an ill-disposed young man." << 2.0 << true;
        QTest::newRow("quick speech") << "one two three four five six seven" << 1.0 << true;
        QTest::newRow("a sentence in a click")
            << "Thank you very much for watching this video." << 0.3 << false;
        QTest::newRow("Han") << "今天天氣很好" << 0.8 << true;
        QTest::newRow("a sentence of Han in a click") << "感謝大家今天收看我們的節目" << 0.3 << false;
    }
    void nobodySpeaksThatFast()
    {
        QFETCH(QString, text);
        QFETCH(double, seconds);
        QFETCH(bool, expected);
        QCOMPARE(canBeSaid(text, std::chrono::duration<double>(seconds)), expected);
    }

    void noiseIsFoundToSayTooLittle_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<bool>("expected");
        QTest::newRow("a word") << "thigh" << 0.5 << true;
        QTest::newRow("a word in the beginning of noise") << "ah" << 1.45 << false;
        QTest::newRow("a word in twenty seconds") << "thigh" << 20.0 << false;
        QTest::newRow("slow speech") << "he was not an ill" << 6.0 << true;
        QTest::newRow("a few words in noise") << "the thigh tipped" << 6.0 << false;
        QTest::newRow("nothing") << "" << 10.0 << false;
    }
    void noiseIsFoundToSayTooLittle()
    {
        QFETCH(QString, text);
        QFETCH(double, seconds);
        QFETCH(bool, expected);
        QCOMPARE(fills(text, std::chrono::duration<double>(seconds)), expected);
    }

    void aSentenceThatWasCutReadsAsOne_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isBefore");
        QTest::addColumn<bool>("isBehind");
        QTest::addColumn<QString>("expected");
        QTest::newRow("whole") << "The man was late." << false << false << "The man was late.";
        QTest::newRow("it goes on") << "The man was late." << false << true << "The man was late";
        QTest::newRow("it began before") << "The man was late." << true << false << "the man was late.";
        QTest::newRow("both") << "To be ill." << true << true << "to be ill";
        QTest::newRow("a question stays") << "Was he?" << false << true << "Was he?";
        QTest::newRow("dots stay") << "Was he..." << false << true << "Was he...";
        QTest::newRow("names keep their capital") << "John was late." << true << false << "John was late.";
        QTest::newRow("so do I") << "I was late." << true << false << "I was late.";
        QTest::newRow("and what may be a name") << "May was late." << true << false << "May was late.";
        QTest::newRow("a quotation") << "“The man” was late." << true << false << "“the man” was late.";
        QTest::newRow("Han") << "今天很好。" << true << true << "今天很好";
        QTest::newRow("empty") << "" << true << true << "";
    }
    void aSentenceThatWasCutReadsAsOne()
    {
        QFETCH(QString, text);
        QFETCH(bool, isBefore);
        QFETCH(bool, isBehind);
        QFETCH(QString, expected);
        QCOMPARE(writtenAsPart(text, {isBefore, isBehind}), expected);
    }
};

LUMAPHONE_TEST(RecognizedTextTest)

} // namespace recognizedtexttest

#include "RecognizedTextTest.moc"
