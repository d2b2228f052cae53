#include "app/live/LiveTexts.h"

#include "support/CaptionLines.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace livetextstest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

using enum AppleSystemSpeechLanguage;

const SessionFacts idleFacts;
const SessionFacts startingFacts {.isStarting = true};
const SessionFacts runningFacts {.isRunning = true};
const SessionFacts silentFacts {.isRunning = true, .isWithoutSound = true};
const SessionFacts unsavedFacts {.hasLines = true};
const SessionFacts savedFacts {.hasLines = true, .isSaved = true};
const SessionFacts restoredFacts {.hasLines = true, .isRestored = true};
const SessionFacts failedFacts {.hasFailed = true};
const SessionFacts brokenOffFacts {.hasLines = true, .hasFailed = true};

LumaphoneCaptionLine line(const QString &source, const QString &translation)
{
    LumaphoneCaptionLine line = captionLine(1, source);
    line.translatedText = translation;
    return line;
}

} // namespace

class LiveTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void thePhaseFollowsTheFacts_data()
    {
        QTest::addColumn<SessionFacts>("facts");
        QTest::addColumn<int>("phase");
        QTest::addColumn<QString>("stateText");
        QTest::addColumn<bool>("unsaved");
        QTest::addColumn<bool>("reviewing");
        const auto row = [](const char *name, const SessionFacts &facts, SessionPhase phase, const char *text,
                             bool unsaved, bool reviewing) {
            QTest::newRow(name) << facts << int(phase) << QString::fromUtf8(text) << unsaved << reviewing;
        };
        row("idle", idleFacts, SessionPhase::idle, "尚未開始", false, false);
        row("starting", startingFacts, SessionPhase::starting, "正在準備", false, false);
        row("running", runningFacts, SessionPhase::running, "正在聽", false, false);
        row("running, silent", silentFacts, SessionPhase::runningWithoutSound, "沒有聲音", false, false);
        row("running with lines", {.isRunning = true, .hasLines = true}, SessionPhase::running, "正在聽",
            false, false);
        row("stopped", unsavedFacts, SessionPhase::unsaved, "已停止，尚未儲存", true, true);
        row("saved", savedFacts, SessionPhase::saved, "已儲存", false, true);
        row("restored", restoredFacts, SessionPhase::restored, "已恢復，尚未儲存", true, true);
        row("could not start", failedFacts, SessionPhase::failed, "無法繼續", false, false);
        row("broke off with lines", brokenOffFacts, SessionPhase::failed, "已中斷，尚未儲存", true, true);
        row("starting after saved lines", {.isStarting = true, .hasLines = true, .isSaved = true},
            SessionPhase::starting, "正在準備", false, false);
    }

    void thePhaseFollowsTheFacts()
    {
        QFETCH(const SessionFacts, facts);
        QFETCH(const int, phase);
        QFETCH(const QString, stateText);
        QFETCH(const bool, unsaved);
        QFETCH(const bool, reviewing);
        QCOMPARE(int(sessionPhase(facts)), phase);
        QCOMPARE(livetexts::stageStateText(facts), stateText);
        QCOMPARE(hasUnsavedTranscript(facts), unsaved);
        QCOMPARE(isReviewing(facts), reviewing);
    }

    void theStageShowsTheNewestLine_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("translation");
        QTest::addColumn<QString>("shown");
        QTest::newRow("translated") << "おはよう"
                                    << "早安。"
                                    << "早安。";
        QTest::newRow("pending") << "おはよう"
                                 << "翻譯中..."
                                 << "正在整理成台灣繁中...";
        QTest::newRow("almost the placeholder") << "おはよう"
                                                << "翻譯中…"
                                                << "翻譯中…";
        QTest::newRow("no translation") << "おはよう"
                                        << ""
                                        << "";
    }

    void theStageShowsTheNewestLine()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, translation);
        QFETCH(const QString, shown);
        const LumaphoneCaptionLine newest = line(source, translation);
        for (const SessionFacts &facts : {runningFacts, unsavedFacts}) {
            QCOMPARE(livetexts::sourceText(&newest, facts, LumaphoneAudioInputSource::systemAudio), source);
            const auto state = isPending(newest) ? TranslationState::pending : TranslationState::arrived;
            QCOMPARE(livetexts::translationText(&newest, state, facts), shown);
        }
    }

    void aLineThatWaitsForNothingDoesNotSayThatItDoes()
    {
        const LumaphoneCaptionLine newest = line("おはよう", "翻譯中...");
        for (const SessionFacts &facts : {runningFacts, unsavedFacts}) {
            QCOMPARE(
                livetexts::translationText(&newest, TranslationState::failed, facts), "這一句沒有翻譯。");
        }
    }

    void anEmptyStageSaysWhatToDo()
    {
        const auto source = [](const SessionFacts &facts, LumaphoneAudioInputSource input) {
            return livetexts::sourceText(nullptr, facts, input);
        };
        const auto shownWithoutLine = [](const SessionFacts &facts) {
            return livetexts::translationText(nullptr, TranslationState::unwanted, facts);
        };
        using enum LumaphoneAudioInputSource;
        QCOMPARE(shownWithoutLine(idleFacts), "準備好就開始。");
        QCOMPARE(shownWithoutLine(startingFacts), "準備好就開始。");
        QCOMPARE(shownWithoutLine(runningFacts), "字幕會在這裡跟上。");
        QCOMPARE(
            source(idleFacts, systemAudio), "按開始後，Lumaphone 會開始聽系統音訊，把聽到的話寫在這裡。");
        QCOMPARE(source(idleFacts, microphone), "按開始後，Lumaphone 會開始聽麥克風，把聽到的話寫在這裡。");
        QCOMPARE(source(runningFacts, systemAudio), "請播放 YouTube、瀏覽器、播放器或會議 App 的聲音。");
        QCOMPARE(source(runningFacts, microphone), "請對著目前選用的麥克風說話。");
        QCOMPARE(
            livetexts::withoutSoundText(systemAudio), "系統音訊沒有聲音進來。請確認正在播放，而且沒有靜音。");
        QCOMPARE(livetexts::withoutSoundText(microphone),
            "麥克風沒有聲音進來。請確認麥克風沒有靜音，而且選對了輸入裝置。");
    }

    void theLanguageIsTheChosenOneUnlessItWasDetected_data()
    {
        QTest::addColumn<AppleSystemSpeechLanguage>("chosen");
        QTest::addColumn<std::optional<AppleSystemSpeechLanguage>>("detected");
        QTest::addColumn<QString>("text");
        using Detected = std::optional<AppleSystemSpeechLanguage>;
        QTest::newRow("nothing detected") << automatic << Detected() << "自動辨識";
        QTest::newRow("Japanese detected") << automatic << Detected(japanese) << "自動：日文";
        QTest::newRow("English detected") << automatic << Detected(english) << "自動：英文";
        QTest::newRow("Korean detected") << automatic << Detected(korean) << "自動：韓文";
        QTest::newRow("Mandarin detected") << automatic << Detected(mandarin) << "自動：中文";
        QTest::newRow("English chosen, Japanese detected") << english << Detected(japanese) << "英文";
        QTest::newRow("Japanese chosen") << japanese << Detected() << "日文";
        QTest::newRow("Korean chosen") << korean << Detected(korean) << "韓文";
        QTest::newRow("Mandarin chosen") << mandarin << Detected() << "中文";
    }

    void theLanguageIsTheChosenOneUnlessItWasDetected()
    {
        QFETCH(const AppleSystemSpeechLanguage, chosen);
        QFETCH(const std::optional<AppleSystemSpeechLanguage>, detected);
        QFETCH(const QString, text);
        QCOMPARE(livetexts::languageStatusText(chosen, detected), text);
    }

    void aPendingTranslationIsExactlyThePlaceholder()
    {
        QVERIFY(!livetexts::hasPendingTranslation({}));
        QVERIFY(livetexts::hasPendingTranslation({line("a", "甲"), line("b", "翻譯中...")}));
        QVERIFY(!livetexts::hasPendingTranslation({line("a", "翻譯中... "), line("b", "")}));
        QCOMPARE(livetexts::cardStatusText(true, 0), "還有句子正在收尾");
        QCOMPARE(livetexts::cardStatusText(true, 2), "還有句子正在收尾");
        QCOMPARE(livetexts::cardStatusText(false, 2), "有 2 句沒有翻譯");
        QCOMPARE(livetexts::cardStatusText(false, 0), "已整理成字幕稿");
    }

    void theCommandBarSaysWhatItsButtonsDo_data()
    {
        QTest::addColumn<SessionFacts>("facts");
        QTest::addColumn<QString>("startStop");
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("save");
        QTest::addColumn<QString>("startNew");
        const QString play = "play.circle.fill";
        const QString stop = "stop.circle.fill";
        QTest::newRow("idle") << idleFacts << "開始" << play << "儲存字幕紀錄"
                              << "開始新的字幕";
        QTest::newRow("running") << runningFacts << "停止" << stop << "儲存字幕紀錄"
                                 << "開始新的字幕";
        QTest::newRow("stopped with unsaved lines") << unsavedFacts << "重開" << play << "儲存字幕紀錄"
                                                    << "捨棄上一段並立刻開始新的字幕";
        QTest::newRow("saved") << savedFacts << "開始" << play << "更新字幕紀錄"
                               << "開始新的字幕";
        QTest::newRow("restored") << restoredFacts << "重開" << play << "儲存字幕紀錄"
                                  << "捨棄上一段並立刻開始新的字幕";
        QTest::newRow("failed without lines") << failedFacts << "開始" << play << "儲存字幕紀錄"
                                              << "開始新的字幕";
    }

    void theCommandBarSaysWhatItsButtonsDo()
    {
        QFETCH(const SessionFacts, facts);
        QTEST(livetexts::startStopText(facts), "startStop");
        QTEST(livetexts::startStopSymbol(facts), "symbol");
        QTEST(livetexts::saveHelp(facts), "save");
        QTEST(livetexts::newCaptionsHelp(facts), "startNew");
    }
};

LUMAPHONE_TEST(LiveTextsTest)

} // namespace livetextstest

#include "LiveTextsTest.moc"
