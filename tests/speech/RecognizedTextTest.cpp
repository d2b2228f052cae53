#include "speech/RecognizedText.h"

#include <QTest>

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
};

QTEST_GUILESS_MAIN(RecognizedTextTest)
#include "RecognizedTextTest.moc"
