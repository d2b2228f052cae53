#include "session/SystemAudioCaptureController.h"

#include "base/AtomicFile.h"
#include "capture/SystemAudioCaptureError.h"
#include "support/CaptionLines.h"
#include "support/LiveSession.h"
#include "support/program/TestProgram.h"

#include <QFile>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <thread>

namespace systemaudiocapturecontrollertest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;
using enum AppleSystemSpeechLanguage;
using enum LumaphoneAudioInputSource;

namespace {

QString t(const char *text)
{
    return QString::fromUtf8(text);
}

const QString unsavedText = t("上一段 Transcript 尚未儲存。請先儲存或清除，再開始新的 Session。");

} // namespace

class SystemAudioCaptureControllerTest : public QObject
{
    Q_OBJECT

private slots:
    void aNewControllerShowsHintsAndTheUsersChoices()
    {
        LiveSession session;
        session.settings.setSourceLanguage(korean);
        session.settings.setAudioInputSource(microphone);
        const auto &controller = session.make();
        QCOMPARE(controller.sourceLanguage(), korean);
        QCOMPARE(controller.audioInputSource(), microphone);
        QVERIFY(!controller.isRunning());
        QVERIFY(controller.captionLines().isEmpty());
        QVERIFY(
            !controller.detectedLanguage() && !controller.sessionStartedAt() && !controller.sessionEndedAt());
        QVERIFY(!controller.savedTranscriptID() && !controller.savedTranscriptTitle());
        QVERIFY(!controller.restoredDraftMessage());
        QCOMPARE(controller.sampleBufferCount(), 0);
        QCOMPARE(controller.transcript(), QString());
        QCOMPARE(controller.translatedText(), t("開始後，Apple Translation 會把辨識結果翻成台灣繁體中文。"));
        QVERIFY(!controller.hasUnsavedTranscript());
        QVERIFY(session.panel.shown.isEmpty());
    }

    void choicesAreStoredInTheSettings()
    {
        LiveSession session;
        auto &controller = session.make();
        const QSignalSpy language(&controller, &SystemAudioCaptureController::sourceLanguageChanged);
        const QSignalSpy source(&controller, &SystemAudioCaptureController::audioInputSourceChanged);
        controller.setSourceLanguage(english);
        controller.setSourceLanguage(english);
        controller.setAudioInputSource(microphone);
        QCOMPARE(session.settings.sourceLanguage(), english);
        QCOMPARE(session.settings.audioInputSource(), microphone);
        QCOMPARE(language.size(), 1);
        QCOMPARE(source.size(), 1);
    }

    void everyPropertyTellsOfItsChanges()
    {
        const QMetaObject &meta = SystemAudioCaptureController::staticMetaObject;
        QStringList names;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            QVERIFY(meta.property(i).hasNotifySignal());
            QCOMPARE(QByteArray(meta.property(i).notifySignal().name()),
                QByteArray(meta.property(i).name()) + "Changed");
            names.append(QLatin1String(meta.property(i).name()));
        }
        QCOMPARE(names.join(QLatin1Char(' ')),
            t("sourceLanguage audioInputSource detectedLanguage isRunning status sampleBufferCount "
              "lastSampleSummary "
              "transcript translatedText captionLines sessionStartedAt sessionEndedAt savedTranscriptID "
              "savedTranscriptTitle restoredDraftMessage"));
    }

    void aSessionStartsWithSystemAudio()
    {
        LiveSession session;
        session.settings.setSourceLanguage(automatic);
        auto &controller = session.make();
        controller.start();
        QVERIFY(!controller.isRunning());
        session.nextPipeline->gate.close();
        settle();
        QCOMPARE(controller.status(), t("正在取得可擷取的螢幕與應用程式..."));
        QVERIFY(!controller.isRunning());
        session.nextPipeline->gate.open();
        QVERIFY(controller.isRunning());
        QCOMPARE(session.pipelinesMade.size(), std::size_t(1));
        QCOMPARE(session.pipelinesMade[0].first, systemAudio);
        QCOMPARE(session.pipelinesMade[0].second, automatic);
        QCOMPARE(controller.status(), t("正在擷取系統音訊，並交給 Apple Speech 轉成原文。"));
        QCOMPARE(controller.translatedText(),
            t("已開始等待 Apple Speech 原文。請播放 YouTube、瀏覽器、播放器或會議 App 的聲音。"));
        QCOMPARE(controller.lastSampleSummary(),
            t("請播放 YouTube、瀏覽器、播放器或會議 App 的聲音。收到音訊 sample buffer 後會更新。"));
        QCOMPARE(controller.sessionStartedAt(), std::optional(session.clock->now()));
        QVERIFY(!controller.sessionEndedAt());
        QCOMPARE(session.panel.shown, QStringList {t("系統音訊 + Apple Speech 已開始 | 正在自動辨識語言。")});
        QVERIFY(session.translator->warmed == std::vector {japanese});
        QCOMPARE(session.screenAudio->requests(), 0);
    }

    void aSessionStartsWithTheMicrophone_data()
    {
        QTest::addColumn<int>("language");
        QTest::addColumn<QString>("shortName");
        QTest::newRow("Japanese") << int(japanese) << t("日文");
        QTest::newRow("English") << int(english) << t("英文");
        QTest::newRow("Korean") << int(korean) << t("韓文");
        QTest::newRow("Mandarin") << int(mandarin) << t("中文");
    }
    void aSessionStartsWithTheMicrophone()
    {
        QFETCH(int, language);
        QFETCH(QString, shortName);
        LiveSession session;
        session.settings.setAudioInputSource(microphone);
        session.settings.setSourceLanguage(AppleSystemSpeechLanguage(language));
        auto &controller = session.make();
        const QSignalSpy status(&controller, &SystemAudioCaptureController::statusChanged);
        QStringList statuses;
        connect(&controller, &SystemAudioCaptureController::statusChanged, this,
            [&] { statuses.append(controller.status()); });
        controller.start();
        settle();
        QVERIFY(controller.isRunning());
        QCOMPARE(statuses,
            (QStringList {t("正在向 macOS 請求麥克風權限..."), t("麥克風權限已允許，正在準備即時字幕..."),
                t("正在準備麥克風輸入..."), t("正在擷取麥克風，並交給 Apple Speech 轉成原文。")}));
        QCOMPARE(session.pipelinesMade[0].first, microphone);
        QCOMPARE(session.panel.shown,
            QStringList {t("麥克風 + Apple Speech 已開始 | 請對著目前選用的麥克風說話。目標原文：")
                + shortName + t("。")});
        QVERIFY(session.translator->warmed == std::vector {AppleSystemSpeechLanguage(language)});
    }

    void systemAudioAccessIsWaitedFor()
    {
        LiveSession session;
        session.screenAudio->isGranted = false;
        auto &controller = session.make();
        controller.start();
        settle();
        QCOMPARE(controller.status(), t("正在向 macOS 請求螢幕與系統錄音權限..."));
        QCOMPARE(session.screenAudio->requests(), 1);
        session.clock->advance(3s);
        QVERIFY(!controller.isRunning());
        session.screenAudio->isGranted = true;
        session.nextPipeline->gate.close();
        session.clock->advance(250ms);
        QCOMPARE(controller.status(), t("正在取得可擷取的螢幕與應用程式..."));
        session.nextPipeline->gate.open();
        QVERIFY(controller.isRunning());
        QCOMPARE(session.screenAudio->requests(), 1);
    }

    void refusedSystemAudioAccessEndsTheStart()
    {
        LiveSession session;
        session.screenAudio->isGranted = false;
        auto &controller = session.make();
        QStringList statuses;
        connect(&controller, &SystemAudioCaptureController::statusChanged, this,
            [&] { statuses.append(controller.status()); });
        controller.start();
        session.clock->advance(5990ms);
        QCOMPARE(statuses.size(), 1);
        session.clock->advance(10ms);
        const QString description
            = SystemAudioCaptureError(SystemAudioCaptureError::Case::screenAudioPermissionDenied)
                  .errorDescription();
        QCOMPARE(
            statuses.value(1), t("Lumaphone 已送出權限請求。請在系統設定允許螢幕與系統錄音後，重新開始。"));
        QCOMPARE(controller.status(), t("系統音訊擷取錯誤：") + description);
        QCOMPARE(session.panel.shown,
            QStringList {t("請檢查系統音訊與語音辨識權限 | 系統音訊擷取錯誤：") + description});
        QCOMPARE(session.screenAudio->checks(), 25);
        QVERIFY(session.pipelinesMade.empty());
        session.screenAudio->isGranted = true;
        controller.start();
        settle();
        QVERIFY(controller.isRunning());
    }

    void refusedMicrophoneAccessEndsTheStart()
    {
        LiveSession session;
        session.microphone->answer = false;
        session.microphone->authorization = CaptureAuthorization::notDetermined;
        session.settings.setAudioInputSource(microphone);
        auto &controller = session.make();
        QStringList statuses;
        connect(&controller, &SystemAudioCaptureController::statusChanged, this,
            [&] { statuses.append(controller.status()); });
        controller.start();
        settle();
        QCOMPARE(
            statuses.value(1), t("Lumaphone 已送出麥克風權限請求。請在系統設定允許麥克風後，重新開始。"));
        QVERIFY(controller.status().startsWith(t("系統音訊擷取錯誤：macOS 尚未允許 Lumaphone 使用麥克風")));
        QVERIFY(!controller.isRunning());
    }

    void aProviderWithoutTranslationStartsNoSession()
    {
        LiveSession session;
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderModel(QString());
        auto &controller = session.make();
        QVERIFY(!controller.canStartLiveTranslation());
        controller.start();
        settle();
        const QString message
            = t("自定義 API 尚未啟用文字翻譯 capability。請先設定 Base URL 與 Model，或切回 Apple Mode。");
        QCOMPARE(controller.status(), message);
        QCOMPARE(session.panel.shown, QStringList {t("自定義 API | ") + message});
        QVERIFY(session.pipelinesMade.empty());
        session.settings.setProviderModel(t("model"));
        QVERIFY(controller.canStartLiveTranslation());
        controller.start();
        settle();
        QVERIFY(controller.isRunning());
        QCOMPARE(controller.status(),
            t("正在擷取系統音訊，使用 Apple Speech 轉成原文，再交給自定義 API 翻成繁中字幕。"));
    }

    void aPipelineThatFailsToStartIsDropped()
    {
        LiveSession session;
        session.nextPipeline->startError = std::make_exception_ptr(PlatformError(t("no such device")));
        auto &controller = session.started();
        QVERIFY(!controller.isRunning());
        QCOMPARE(controller.status(), t("系統音訊擷取錯誤：no such device"));
        QCOMPARE(session.nextPipeline->stops, 1);
        QCOMPARE(session.panel.shown.constLast(),
            t("請檢查系統音訊與語音辨識權限 | 系統音訊擷取錯誤：no such device"));
    }

    void errorsAreTurnedIntoMessages_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<bool>("isMicrophone");
        QTest::addColumn<QString>("message");
        const QString system = t("macOS 拒絕系統音訊/螢幕擷取權限。請到系統設定 > 隱私權與安全性 > "
                                 "螢幕與系統音訊錄製，允許 Lumaphone 後重新開啟 App。");
        const QString mic = t(
            "macOS 拒絕麥克風權限。請到系統設定 > 隱私權與安全性 > 麥克風，允許 Lumaphone 後重新開啟 App。");
        const QString siri
            = t("macOS 目前停用 Siri 與聽寫。請到系統設定開啟 Siri 或鍵盤聽寫後，再重新開始 Lumaphone。");
        QTest::newRow("denied") << "Access DENIED by user" << false << system;
        QTest::newRow("denied, microphone") << "denied" << true << mic;
        QTest::newRow("permission") << "no Permission" << false << system;
        QTest::newRow("TCC in lower case") << "the tcc refused" << true << mic;
        QTest::newRow("Siri") << "Error: siri and dictation are disabled" << false << siri;
        QTest::newRow("Siri, microphone") << "Siri and Dictation are disabled" << true << siri;
        QTest::newRow("the first match wins")
            << "Siri and Dictation are disabled: permission" << false << system;
        QTest::newRow("anything else") << "x" << true << t("系統音訊擷取錯誤：x");
    }
    void errorsAreTurnedIntoMessages()
    {
        QFETCH(QString, description);
        QFETCH(bool, isMicrophone);
        LiveSession session;
        session.settings.setAudioInputSource(isMicrophone ? microphone : systemAudio);
        const auto error = std::make_exception_ptr(PlatformError(description));
        QTEST(session.make().systemAudioErrorMessage(error), "message");
    }

    void startingWhileRunningOrStartingDoesNothing()
    {
        LiveSession session;
        session.nextPipeline->gate.close();
        auto &controller = session.started();
        controller.start();
        settle();
        session.nextPipeline->gate.open();
        controller.start();
        settle();
        QCOMPARE(session.pipelinesMade.size(), std::size_t(1));
        QVERIFY(controller.isRunning());
    }

    void unsavedLinesRefuseANewSession()
    {
        LiveSession session;
        auto &controller = session.started();
        session.final("はい");
        settle();
        controller.stop(true);
        QVERIFY(controller.hasUnsavedTranscript());
        const auto lines = controller.captionLines();
        const auto startedAt = controller.sessionStartedAt();
        session.clock->advance(1s);
        controller.start();
        settle();
        QCOMPARE(controller.status(), unsavedText);
        QCOMPARE(session.panel.shown.constLast(), t("避免新的 Session 覆蓋尚未儲存的內容 | ") + unsavedText);
        QVERIFY(controller.captionLines() == lines);
        QCOMPARE(controller.sessionStartedAt(), startedAt);
        QCOMPARE(session.pipelinesMade.size(), std::size_t(1));
    }

    void aSavedSessionMayBeFollowedByAnother()
    {
        LiveSession session;
        auto &controller = session.started();
        session.final("はい");
        settle();
        controller.stop(true);
        controller.markTranscriptSaved(countedUuid(77), t("會議"));
        QCOMPARE(controller.status(), t("Transcript 已儲存：會議"));
        QCOMPARE(controller.savedTranscriptID(), std::optional(countedUuid(77)));
        QCOMPARE(controller.savedTranscriptTitle(), std::optional(t("會議")));
        QVERIFY(!controller.hasUnsavedTranscript());
        session.nextPipeline = std::make_shared<ScriptedPipeline>();
        controller.start();
        settle();
        QVERIFY(controller.isRunning());
        QVERIFY(controller.captionLines().isEmpty());
        QVERIFY(!controller.savedTranscriptID() && !controller.savedTranscriptTitle());
        QVERIFY(!controller.sessionEndedAt() && !controller.detectedLanguage());
        QCOMPARE(controller.transcript(), QString());
        // What the session before translated last is forgotten.
        session.final("はい");
        settle();
        QCOMPARE(session.translator->calls.size(), std::size_t(2));
    }

    void stoppingDuringTheStartEndsIt()
    {
        LiveSession session;
        session.nextPipeline->gate.close();
        auto &controller = session.started();
        controller.stop(true);
        QCOMPARE(session.nextPipeline->stops, 1);
        session.nextPipeline->gate.open();
        settle();
        QVERIFY(!controller.isRunning());
        QCOMPARE(controller.status(), t("系統音訊即時翻譯已停止，這次 Session 尚未產生字幕。"));
        QVERIFY(!controller.sessionStartedAt());
    }

    void aControllerThatIsGoneStopsItsPipeline()
    {
        LiveSession session;
        session.started();
        session.controller.reset();
        QCOMPARE(session.nextPipeline->stops, 1);
        session.nextPipeline->onEvent(pipeline_event::Speech {t("遲到"), japanese, true});
        settle();
    }

    void samplesAreCounted()
    {
        LiveSession session;
        auto &controller = session.started();
        controller.handlePipelineEvent(pipeline_event::AudioSample {{t("1600 frames")}});
        controller.handlePipelineEvent(pipeline_event::AudioSample {{t("800 frames")}});
        QCOMPARE(controller.sampleBufferCount(), 2);
        QCOMPARE(controller.lastSampleSummary(), t("800 frames"));
        QCOMPARE(
            controller.status(), t("已收到 2 個系統音訊 sample buffer，正在等待 Apple Speech 辨識出文字。"));
        session.partial("はい");
        const QString status = controller.status();
        controller.handlePipelineEvent(pipeline_event::AudioSample {{t("400 frames")}});
        QCOMPARE(controller.status(), status);
        QCOMPARE(controller.sampleBufferCount(), 3);
    }

    void recognisedTextIsTrimmedAndPublished()
    {
        LiveSession session;
        auto &controller = session.started();
        session.speech(t("\u3000 はい\n"), false, korean);
        QCOMPARE(controller.transcript(), t("はい"));
        QCOMPARE(controller.detectedLanguage(), std::optional(korean));
        QCOMPARE(controller.status(), t("Apple Speech 即時轉錄中，正在更新台灣繁中翻譯。"));
        QCOMPARE(controller.captionLines()[0].sourceText, t("はい"));
        session.speech(t("はい "), true, japanese);
        QCOMPARE(controller.status(), t("Apple Speech 收到完整句子，正在翻成台灣繁中。"));
        QCOMPARE(controller.captionLines().size(), 1);
        QVERIFY(controller.captionLines()[0].isFinal);
    }

    void blankTextChangesNothing()
    {
        LiveSession session;
        auto &controller = session.started();
        const QString status = controller.status();
        session.speech(t(" \u3000\n\u2029"), true, korean);
        QCOMPARE(controller.status(), status);
        QCOMPARE(controller.transcript(), QString());
        QVERIFY(!controller.detectedLanguage());
        QVERIFY(controller.captionLines().isEmpty());
    }

    void aFinalTextClosesItsLine()
    {
        LiveSession session;
        auto &controller = session.started();
        session.final("はい");
        session.clock->advance(12s);
        session.partial("はい");
        QCOMPARE(controller.captionLines().size(), 2);
    }

    void thePanelKeepsTheLastTranslationUnderANewText()
    {
        LiveSession session;
        session.started();
        session.final("はい");
        QCOMPARE(session.panel.shown.constLast(), t("はい | 正在自動辨識語言。"));
        settle();
        QCOMPARE(session.panel.shown.constLast(), t("はい | 譯:はい"));
        session.partial("Something else");
        QCOMPARE(session.panel.shown.constLast(), t("Something else | 譯:はい"));
        session.partial("はい");
        QCOMPARE(session.panel.shown.constLast(), t("はい | 譯:はい"));
    }

    void aClosedPanelStaysClosedUntilThereIsATranslation()
    {
        LiveSession session;
        session.started();
        session.panel.open = false;
        session.panel.shown.clear();
        session.final("はい");
        settle();
        QVERIFY(session.panel.shown.isEmpty());
        session.final("はい");
        QCOMPARE(session.panel.shown, QStringList {t("はい | 譯:はい")});
    }

    void viewsHearWhichLineChanged()
    {
        LiveSession session;
        auto &controller = session.started();
        const QSignalSpy inserted(&controller, &SystemAudioCaptureController::lineInserted);
        const QSignalSpy changed(&controller, &SystemAudioCaptureController::lineChanged);
        const QSignalSpy reset(&controller, &SystemAudioCaptureController::linesReset);
        const QSignalSpy lines(&controller, &SystemAudioCaptureController::captionLinesChanged);
        session.partial("はい");
        session.final("はい");
        settle();
        controller.clearCaptions();
        QCOMPARE(inserted.size(), 1);
        QCOMPARE(changed.size(), 2);
        QCOMPARE(reset.size(), 1);
        QCOMPARE(lines.size(), 4);
    }

    void stoppingFinishesTheLineAndTheSession()
    {
        LiveSession session;
        auto &controller = session.started();
        session.partial("はい");
        session.clock->advance(5s);
        controller.stop(true);
        QVERIFY(!controller.isRunning());
        QCOMPARE(session.nextPipeline->stops, 1);
        QVERIFY(controller.captionLines()[0].isFinal);
        QCOMPARE(controller.sessionEndedAt(), std::optional(session.clock->now()));
        QCOMPARE(controller.status(),
            t("Session 已停止，剛剛的字幕已保留。可以儲存 Transcript，或複製全文後再清除。"));
        const auto endedAt = controller.sessionEndedAt();
        session.clock->advance(5s);
        controller.markTranscriptSaved(countedUuid(1), t("標題"));
        controller.stop(false);
        QCOMPARE(controller.status(), t("Transcript 已儲存：標題"));
        QCOMPARE(controller.sessionEndedAt(), endedAt);
        controller.stop(true);
        QCOMPARE(controller.status(), t("Session 已停止，Transcript 已儲存：標題"));
    }

    void eventsOfAStoppedSessionAreIgnored()
    {
        LiveSession session;
        auto &controller = session.started();
        const auto old = session.nextPipeline;
        std::thread other([&] { old->onEvent(pipeline_event::Speech {t("はい"), japanese, false}); });
        QVERIFY(waitUntil([&] { return !controller.captionLines().isEmpty(); }));
        other.join();
        old->onEvent(pipeline_event::Speech {t("quite late"), japanese, true});
        controller.stop(true);
        settle();
        QCOMPARE(controller.captionLines().size(), 1);
        old->onEvent(pipeline_event::Failed {t("壞了")});
        settle();
        QCOMPARE(controller.captionLines()[0].sourceText, t("はい"));
        QVERIFY(!controller.status().contains(t("壞了")));
    }

    void eventsOfTheSessionBeforeAreIgnored()
    {
        LiveSession session;
        auto &controller = session.started();
        const auto tellOfOldSession = session.nextPipeline->onEvent;
        controller.stop(true);
        session.nextPipeline = std::make_shared<ScriptedPipeline>();
        controller.start();
        settle();
        QVERIFY(controller.isRunning());
        tellOfOldSession(pipeline_event::Speech {t("はい"), japanese, true});
        tellOfOldSession(pipeline_event::Failed {t("壞了")});
        settle();
        QVERIFY(controller.isRunning());
        QVERIFY(controller.captionLines().isEmpty());
    }

    void aFailureEndsTheSessionAndKeepsItsLines()
    {
        LiveSession session;
        auto &controller = session.started();
        session.partial("はい");
        const auto lines = controller.captionLines();
        session.nextPipeline->onEvent(pipeline_event::Failed {t("擷取中斷")});
        settle();
        QVERIFY(!controller.isRunning());
        QCOMPARE(session.nextPipeline->stops, 1);
        QCOMPARE(controller.status(), t("擷取中斷"));
        QCOMPARE(session.panel.shown.constLast(), t("Apple Speech 或系統音訊錯誤 | 擷取中斷"));
        QVERIFY(controller.captionLines() == lines);
        QVERIFY(!controller.sessionEndedAt());
    }

    void fallingBehindIsToldUntilItIsOver()
    {
        LiveSession session;
        auto &controller = session.started();
        controller.handlePipelineEvent(pipeline_event::Pace {true});
        QVERIFY(controller.isBehind());
        QCOMPARE(controller.status(), t("這台電腦暫時來不及辨識，字幕會晚幾秒出現。"));
        controller.handlePipelineEvent(pipeline_event::Pace {false});
        QVERIFY(!controller.isBehind());
        QCOMPARE(controller.status(), t("字幕已經跟上聲音。"));
        controller.handlePipelineEvent(pipeline_event::Pace {true});
        controller.stop(true);
        QVERIFY(!controller.isBehind());
    }

    void anOutputThatIsWaitedForIsTheStatusUntilItIsBack()
    {
        LiveSession session;
        session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {2s, QString()};
        };
        auto &controller = session.started();
        session.final("はい");
        session.nextPipeline->onEvent(pipeline_event::Awaited {t("耳機")});
        settle();
        QVERIFY(controller.isTranslating());
        const QString waiting = t("聲音輸出「耳機」中斷了，正在等它回來；已有的字幕都還在。");
        QCOMPARE(controller.status(), waiting);
        session.clock->advance(15s);
        QVERIFY(!controller.isTranslating());
        QCOMPARE(controller.translatedText(), session.translationOfLine(0));
        QCOMPARE(controller.status(), waiting);
        QVERIFY(controller.isRunning());
        session.nextPipeline->onEvent(pipeline_event::Awaited {});
        settle();
        QCOMPARE(controller.status(), t("聲音回來了，字幕繼續。"));
        session.final("いいえ");
        QCOMPARE(controller.captionLines().size(), 2);
    }

    void anOutputThatDoesNotComeBackEndsTheSessionAndKeepsItsLines()
    {
        LiveSession session;
        auto &controller = session.started();
        session.final("はい");
        session.nextPipeline->onEvent(pipeline_event::Awaited {t("耳機")});
        session.nextPipeline->onEvent(pipeline_event::Failed {t("等不到聲音輸出「耳機」回來。")});
        settle();
        QVERIFY(!controller.isRunning());
        QCOMPARE(controller.status(), t("等不到聲音輸出「耳機」回來。"));
        QCOMPARE(controller.captionLines().size(), 1);
        session.clock->advance(15s);
        QVERIFY(!session.translationOfLine(0).isEmpty());
    }

    void aStopForgetsTheOutputThatIsWaitedFor()
    {
        LiveSession session;
        auto &controller = session.started();
        session.nextPipeline->onEvent(pipeline_event::Awaited {t("耳機")});
        settle();
        controller.stop(true);
        QCOMPARE(controller.status(), t("系統音訊即時翻譯已停止，這次 Session 尚未產生字幕。"));
    }

    void clearingEmptiesTheSession()
    {
        LiveSession session;
        auto &controller = session.started();
        session.partial("はい");
        controller.clearCaptions();
        QCOMPARE(controller.status(), t("字幕已清除，正在等待新的語音。"));
        QVERIFY(controller.captionLines().isEmpty());
        QCOMPARE(controller.transcript(), QString());
        QCOMPARE(controller.translatedText(), t("開始後，Apple Translation 會把辨識結果翻成台灣繁體中文。"));
        QVERIFY(controller.isRunning());
        session.clock->advance(5s);
        QVERIFY(session.translator->calls.empty());
        controller.stop(true);
        QCOMPARE(controller.status(), t("系統音訊即時翻譯已停止，這次 Session 尚未產生字幕。"));
        controller.clearCaptions();
        QCOMPARE(controller.status(), t("字幕已清除。"));
    }

    void theDraftFollowsTheSession()
    {
        QTemporaryDir folder;
        LiveSession session(folder.path());
        auto &controller = session.started();
        const LumaphoneSessionDraftStore store(folder.path());
        QVERIFY(!store.load());
        session.partial("はい");
        QCOMPARE(store.load()->lines.size(), 1);
        QVERIFY(!store.load()->endedAt);
        session.final("はい");
        settle();
        QCOMPARE(store.load()->lines[0].translatedText, t("譯:はい"));
        QCOMPARE(store.load()->detectedLanguage, std::optional(japanese));
        controller.stop(true);
        QVERIFY(store.load()->endedAt);
        controller.markTranscriptSaved(countedUuid(1), t("標題"));
        QVERIFY(store.load());
        controller.stop(false);
        QVERIFY(!QFile::exists(store.draftPath()));
    }

    void whatIsShownIsInTheDraftAlready()
    {
        QTemporaryDir folder;
        LiveSession session(folder.path());
        auto &controller = session.started();
        const LumaphoneSessionDraftStore store(folder.path());
        int told = 0;
        int kept = 0;
        const auto look = [&](qsizetype index) {
            ++told;
            const auto draft = store.load();
            kept += draft && draft->lines.value(index) == controller.captionLines().at(index) ? 1 : 0;
        };
        using Controller = SystemAudioCaptureController;
        connect(&controller, &Controller::lineInserted, &controller, look);
        connect(&controller, &Controller::lineChanged, &controller, look);
        session.partial("は");
        session.final("はい");
        settle();
        session.clock->stepWallClock(20s);
        session.partial("いいえ");
        controller.stop(true);
        QCOMPARE(told, 5); // opened, final, translated; opened, closed
        QCOMPARE(kept, told);
    }

    void clearingAndStartingRemoveTheDraft()
    {
        QTemporaryDir folder;
        LiveSession session(folder.path());
        auto &controller = session.started();
        const LumaphoneSessionDraftStore store(folder.path());
        session.final("はい");
        QVERIFY(store.load());
        controller.clearCaptions();
        QVERIFY(!QFile::exists(store.draftPath()));
        controller.stop(false);
        session.final("はい");
        controller.markTranscriptSaved(countedUuid(1), t("標題"));
        QVERIFY(store.load());
        controller.start();
        settle();
        QVERIFY(!QFile::exists(store.draftPath()));
    }

    void aDraftIsRestored()
    {
        QTemporaryDir folder;
        LumaphoneSessionDraft draft {
            .lines = {captionLine(1, t("今日は")), captionLine(2, t("雨"), false)},
            .sourceLanguage = english,
            .detectedLanguage = korean,
            .startedAt = captionLine(1, QString()).createdAt,
            .endedAt = std::nullopt,
            .updatedAt = captionLine(9, QString()).createdAt,
        };
        LumaphoneSessionDraftStore(folder.path()).save(draft);
        LiveSession session(folder.path());
        auto &controller = session.make();
        QVERIFY(controller.captionLines() == draft.lines);
        QCOMPARE(controller.sourceLanguage(), english);
        QCOMPARE(session.settings.sourceLanguage(), english);
        QCOMPARE(controller.detectedLanguage(), std::optional(korean));
        QCOMPARE(controller.sessionStartedAt(), draft.startedAt);
        QCOMPARE(controller.sessionEndedAt(), std::nullopt);
        QCOMPARE(controller.transcript(), t("雨"));
        QCOMPARE(controller.translatedText(), t("譯文 雨"));
        QCOMPARE(controller.restoredDraftMessage(), std::optional(t("已恢復上一段尚未儲存的字幕。")));
        QCOMPARE(
            controller.status(), t("已恢復上一段尚未儲存的 Transcript，請儲存或清除後再開始新的 Session。"));
        QVERIFY(controller.hasUnsavedTranscript());
        controller.start();
        settle();
        QCOMPARE(controller.status(), unsavedText);
        controller.clearCaptions();
        QVERIFY(!controller.restoredDraftMessage());
    }

    void whereNothingIsTranslatedNoTranslationIsPromised()
    {
        LiveSession session;
        session.translator->isWanted = false;
        auto &controller = session.started();
        session.partial("はい");
        QCOMPARE(controller.status(), t("Apple Speech 即時轉錄中。"));
        session.final("はい");
        QCOMPARE(controller.status(), t("Apple Speech 收到完整句子。"));
        settle();
        QVERIFY(session.translator->calls.empty());
    }

    void thePanelKnowsTheLanguageOfWhatWasSaid()
    {
        LiveSession session;
        session.started();
        QCOMPARE(session.panel.language, std::optional<AppleSystemSpeechLanguage>());
        session.speech(t("안녕하세요"), false, korean);
        QCOMPARE(session.panel.language, std::optional(korean));
        session.speech(t("おはよう"), true, japanese);
        settle();
        QCOMPARE(session.panel.shown.constLast(), t("おはよう | 譯:おはよう"));
        QCOMPARE(session.panel.language, std::optional(japanese));
        session.controller->handlePipelineEvent(pipeline_event::Failed {t("壞了")});
        QCOMPARE(session.panel.language, std::optional<AppleSystemSpeechLanguage>());
    }

    void anEmptyOrBrokenDraftIsLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("no lines") << QByteArray(
            R"({"lines":[],"sourceLanguage":"english","updatedAt":"2026-03-01T09:30:00Z"})");
        QTest::newRow("broken") << QByteArray("{");
    }
    void anEmptyOrBrokenDraftIsLeftAlone()
    {
        QFETCH(QByteArray, bytes);
        QTemporaryDir folder;
        const QString path = LumaphoneSessionDraftStore(folder.path()).draftPath();
        replaceFile(path, bytes, Durability::renamed);
        LiveSession session(folder.path());
        auto &controller = session.make();
        QVERIFY(controller.captionLines().isEmpty());
        QVERIFY(!controller.restoredDraftMessage());
        QCOMPARE(controller.sourceLanguage(),
            LumaphoneSettings(session.defaults, session.keychain).sourceLanguage());
        QCOMPARE(readFile(path), std::optional(bytes));
        controller.stop(false);
        QVERIFY(!QFile::exists(path));
    }

    void withoutADraftFolderTheSessionGoesOn()
    {
        LiveSession session(QStringLiteral("/dev/null/Drafts"));
        auto &controller = session.started();
        session.final("はい");
        settle();
        controller.stop(true);
        QCOMPARE(session.translationOfLine(0), t("譯:はい"));
    }

    void aSessionTellsWhileItStarts()
    {
        LiveSession session;
        auto &controller = session.make();
        QSignalSpy changed(&controller, &SystemAudioCaptureController::isStartingChanged);
        session.nextPipeline->gate.close();
        controller.start();
        QVERIFY(controller.isStarting());
        settle();
        QVERIFY(controller.isStarting());
        QVERIFY(!controller.isRunning());
        session.nextPipeline->gate.open();
        settle();
        QVERIFY(!controller.isStarting());
        QVERIFY(controller.isRunning());
        QCOMPARE(changed.size(), 2);
    }

    void onlySoundThatIsNotSilentIsTold()
    {
        LiveSession session;
        auto &controller = session.started();
        QSignalSpy sound(&controller, &SystemAudioCaptureController::soundArrived);
        controller.handlePipelineEvent(pipeline_event::AudioSample {{t("silence"), true}});
        QCOMPARE(sound.size(), 0);
        controller.handlePipelineEvent(pipeline_event::AudioSample {{t("sound"), false}});
        QCOMPARE(sound.size(), 1);
        QCOMPARE(controller.sampleBufferCount(), 2);
    }

    void accessToTheComputersSoundCanBeAskedForAhead()
    {
        LiveSession session;
        auto &controller = session.make();
        const QString before = controller.status();
        controller.requestSystemAudioAccessIfNeeded();
        settle();
        QCOMPARE(controller.status(), before);
        session.screenAudio->isGranted = false;
        controller.requestSystemAudioAccessIfNeeded();
        QCOMPARE(controller.status(), t("正在向 macOS 請求螢幕與系統錄音權限..."));
        session.screenAudio->isGranted = true;
        session.clock->advance(std::chrono::seconds(1));
        settle();
        QCOMPARE(controller.status(), t("系統音訊權限已允許，正在準備即時字幕..."));
        QVERIFY(!controller.isRunning());
    }
};

LUMAPHONE_TEST(SystemAudioCaptureControllerTest)

} // namespace systemaudiocapturecontrollertest

#include "SystemAudioCaptureControllerTest.moc"
