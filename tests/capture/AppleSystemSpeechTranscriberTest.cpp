#include "capture/AppleSystemSpeechTranscriber.h"

#include "capture/AppleSystemSpeechTranscriberError.h"
#include "capture/FakeSpeechFramework.h"
#include "capture/RecordingTranscriberDelegate.h"
#include "support/Coroutines.h"
#include "support/TestSound.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <atomic>
#include <cmath>
#include <future>
#include <limits>
#include <thread>

namespace applesystemspeechtranscribertest {

using namespace lumaphone;
using namespace lumaphone::test;

using enum AppleSystemSpeechLanguage;
using Error = AppleSystemSpeechTranscriberError;

namespace {

constexpr const char *automaticFailure = "自動辨識找不到可用的 Apple Speech 本機語音辨識資產。請先在 macOS "
                                         "開啟 Siri 或鍵盤聽寫，或手動指定已安裝聽寫資源的原文語言。";
constexpr const char *dictationSetup
    = "macOS 還沒加入這個語言的聽寫資源。請到「系統設定 > 鍵盤 > "
      "聽寫」，在「語言」旁按「編輯」並勾選要辨識的語言；等 macOS 準備完成後，重新開始 Lumaphone。";

const QStringList allLocales {
    QStringLiteral("ja_JP"), QStringLiteral("en_US"), QStringLiteral("ko_KR"), QStringLiteral("zh_TW")};

} // namespace

class AppleSystemSpeechTranscriberTest : public QObject
{
    Q_OBJECT

private:
    std::shared_ptr<FakeSpeechFramework> m_framework;
    std::shared_ptr<MainQueue> m_mainQueue;
    std::shared_ptr<DetachedTasks> m_detachedTasks;
    std::shared_ptr<RecordingTranscriberDelegate> m_delegate;
    std::shared_ptr<AppleSystemSpeechTranscriber> m_transcriber;

    std::optional<Error> start(std::vector<AppleSystemSpeechLanguage> languages)
    {
        return thrownBy<Error>([&] { test::waitFor(m_transcriber->start(languages)); });
    }

    void emitResult(const char *locale, const QString &text, bool isFinal)
    {
        m_framework->module(QString::fromLatin1(locale))->emitResult(text, isFinal);
    }

    bool delegateHears(const QStringList &lines)
    {
        return waitUntil([&] { return m_delegate->lines() == lines; });
    }

    bool analyzerTakes(int inputs)
    {
        return waitUntil([&] { return m_framework->analyzer().inputs() == inputs; });
    }

private slots:
    void init()
    {
        m_framework = std::make_shared<FakeSpeechFramework>();
        m_mainQueue = MainQueue::create();
        m_detachedTasks = std::make_shared<DetachedTasks>();
        m_delegate = std::make_shared<RecordingTranscriberDelegate>();
        m_transcriber = AppleSystemSpeechTranscriber::create(m_framework, m_mainQueue, m_detachedTasks);
        m_transcriber->setDelegate(m_delegate);
    }

    void cleanup()
    {
        m_transcriber = nullptr;
        m_detachedTasks = nullptr;
        settle();
        QCOMPARE(m_framework->reserved(), QStringList());
        m_framework = nullptr;
    }

    void oneLanguageRuns()
    {
        QVERIFY(!start({korean}));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("ko_KR")});
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("ko_KR")});
        QCOMPARE(m_framework->analyzer().preparedRateHz(), 16000.0);
        const SpeechModuleOptions options {.reportsVolatileResults = true, .reportsFastResults = true};
        QVERIFY(m_framework->module(QStringLiteral("ko_KR"))->options() == options);
        QCOMPARE(m_framework->authorizationRequests(), 0);
    }

    void whoeverIsNotAuthorizedIsAsked_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("starts");
        const auto row
            = [](const char *name, SpeechAuthorization status, SpeechAuthorization answer, bool starts) {
                  QTest::newRow(name) << static_cast<int>(status) << static_cast<int>(answer) << starts;
              };
        using enum SpeechAuthorization;
        row("allows", notDetermined, authorized, true);
        row("refuses", notDetermined, denied, false);
        row("refused before, allows now", denied, authorized, true);
        row("refused before, refuses again", denied, denied, false);
        row("restricted", restricted, restricted, false);
        row("does not decide", notDetermined, notDetermined, false);
    }

    void whoeverIsNotAuthorizedIsAsked()
    {
        QFETCH(const int, status);
        QFETCH(const int, answer);
        QFETCH(const bool, starts);
        m_framework->authorization = static_cast<SpeechAuthorization>(status);
        m_framework->answer = static_cast<SpeechAuthorization>(answer);
        const auto error = start({english});
        QCOMPARE(m_framework->authorizationRequests(), 1);
        QCOMPARE(!error, starts);
        if (error) {
            QVERIFY(error->errorCase() == Error::Case::notAuthorized);
            QCOMPARE(error->errorDescription(), QStringLiteral("請在系統設定允許 Lumaphone 使用語音辨識。"));
            QVERIFY(m_framework->reservationLog().isEmpty());
        }
    }

    void nothingButAutomaticHasNoRecognizer_data()
    {
        QTest::addColumn<int>("automatics");
        QTest::newRow("automatic alone") << 1;
        QTest::newRow("no language at all") << 0;
    }

    void nothingButAutomaticHasNoRecognizer()
    {
        QFETCH(const int, automatics);
        const auto error
            = start(std::vector<AppleSystemSpeechLanguage>(static_cast<std::size_t>(automatics), automatic));
        QVERIFY(error && error->errorCase() == Error::Case::recognizerUnavailable);
        QCOMPARE(error->errorDescription(), QStringLiteral("目前無法使用 Apple Speech 語音辨識。"));
    }

    void automaticIsTakenOutOfTheList()
    {
        QVERIFY(!start({automatic, korean, automatic, english}));
        QCOMPARE(m_framework->locales(), (QStringList {QStringLiteral("ko_KR"), QStringLiteral("en_US")}));
    }

    void anUnsupportedLocaleHasNoRecognizer()
    {
        m_framework->supportOnly({QStringLiteral("en-US")});
        const auto error = start({japanese});
        QVERIFY(error && error->errorCase() == Error::Case::recognizerUnavailable);
    }

    void aFailedReservationNamesTheLanguage_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("detail");
        QTest::newRow("as the framework says")
            << QStringLiteral("The disk is full.") << QStringLiteral("The disk is full.");
        QTest::newRow("GeneralASR") << QStringLiteral("No GeneralASR asset for ja_JP")
                                    << QString::fromUtf8(dictationSetup);
        QTest::newRow("GeneralASR, lower case, inside")
            << QStringLiteral("Error 15: no generalasr asset!") << QString::fromUtf8(dictationSetup);
    }

    void aFailedReservationNamesTheLanguage()
    {
        QFETCH(const QString, message);
        QFETCH(const QString, detail);
        m_framework->reservationFailures[QStringLiteral("ja_JP")] = message;
        const auto error = start({japanese});
        QVERIFY(error && error->errorCase() == Error::Case::assetUnavailable);
        QCOMPARE(error->language(), QStringLiteral("日文"));
        QCOMPARE(error->detail(), detail);
        QCOMPARE(error->errorDescription(), QStringLiteral("日文語音辨識資產不可用：") + detail);
        QVERIFY(m_framework->analyzers().empty());
    }

    void aFailedPreparationOfOneLanguageIsThrownAndReleased()
    {
        m_framework->preparationFailures[{QStringLiteral("zh_TW")}] = QStringLiteral("no memory");
        const auto error = start({mandarin});
        QVERIFY(error && error->errorCase() == Error::Case::assetUnavailable);
        QCOMPARE(error->errorDescription(), QStringLiteral("中文語音辨識資產不可用：no memory"));
        QCOMPARE(m_framework->reserved(), QStringList());
    }

    void allFourLanguagesRunTogether()
    {
        QVERIFY(!start(recognitionCandidates(automatic)));
        QCOMPARE(m_framework->locales(), allLocales);
        emitResult("ja_JP", QStringLiteral("こんにちは"), false);
        QVERIFY(delegateHears({QStringLiteral("japanese volatile こんにちは")}));
        emitResult("zh_TW", QStringLiteral("空你幾哇"), true);
        QVERIFY(delegateHears(
            {QStringLiteral("japanese volatile こんにちは"), QStringLiteral("mandarin final 空你幾哇")}));
    }

    void automaticRunsWithEnglishAlone_data()
    {
        QTest::addColumn<bool>("supported");
        QTest::newRow("the others are unsupported") << false;
        QTest::newRow("the others cannot be reserved") << true;
    }

    void automaticRunsWithEnglishAlone()
    {
        QFETCH(const bool, supported);
        if (supported) {
            for (const char *locale : {"ja_JP", "ko_KR", "zh_TW"}) {
                m_framework->reservationFailures[QString::fromLatin1(locale)]
                    = QStringLiteral("not installed");
            }
        } else {
            m_framework->supportOnly({QStringLiteral("en-US")});
        }
        QVERIFY(!start(recognitionCandidates(automatic)));
        QCOMPARE(m_framework->analyzers().size(), std::size_t(1));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("en_US")});
        emitResult("en_US", QStringLiteral("hello"), true);
        QVERIFY(delegateHears({QStringLiteral("english final hello")}));
    }

    void whenTheJointAttemptFailsTheFirstLanguageThatWorksIsUsed()
    {
        m_framework->preparationFailures[allLocales] = QStringLiteral("too many models");
        m_framework->preparationFailures[{QStringLiteral("ja_JP")}] = QStringLiteral("broken");
        m_framework->preparationFailures[{QStringLiteral("en_US")}] = QStringLiteral("broken");
        QVERIFY(!start(recognitionCandidates(automatic)));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("ko_KR")});
        // The reservations of the failed attempts are not left behind.
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("ko_KR")});
        QCOMPARE(m_framework->reservationLog().count(QStringLiteral("reserve zh_TW")), 1);
        emitResult("ko_KR", QStringLiteral("안녕하세요"), true);
        QVERIFY(delegateHears({QStringLiteral("korean final 안녕하세요")}));
    }

    void whenNoLanguageWorksAutomaticIsUnavailable_data()
    {
        QTest::addColumn<bool>("supported");
        QTest::newRow("none is supported") << false;
        QTest::newRow("none can be reserved") << true;
    }

    void whenNoLanguageWorksAutomaticIsUnavailable()
    {
        QFETCH(const bool, supported);
        if (supported) {
            for (const QString &locale : allLocales) {
                m_framework->reservationFailures[locale] = QStringLiteral("not installed");
            }
        } else {
            m_framework->supportOnly({});
        }
        const auto error = start(recognitionCandidates(automatic));
        QVERIFY(error && error->errorCase() == Error::Case::automaticLanguagesUnavailable);
        QCOMPARE(error->errorDescription(), QString::fromUtf8(automaticFailure));
        QCOMPARE(m_framework->reserved(), QStringList());
    }

    void aJointPreparationFailureOfTwoIsForgottenWhenBothFailAlone()
    {
        const QString ja = QStringLiteral("ja_JP");
        const QString en = QStringLiteral("en_US");
        m_framework->preparationFailures[{ja, en}] = QStringLiteral("a");
        m_framework->preparationFailures[{ja}] = QStringLiteral("b");
        m_framework->preparationFailures[{en}] = QStringLiteral("c");
        const auto error = start({japanese, english});
        QVERIFY(error && error->errorCase() == Error::Case::automaticLanguagesUnavailable);
        QCOMPARE(m_framework->analyzers().size(), std::size_t(3));
        QCOMPARE(m_framework->reservationLog(),
            (QStringList {QStringLiteral("reserve ja_JP"), QStringLiteral("reserve en_US"),
                QStringLiteral("release ja_JP"), QStringLiteral("release en_US"),
                QStringLiteral("reserve ja_JP"), QStringLiteral("release ja_JP"),
                QStringLiteral("reserve en_US"), QStringLiteral("release en_US")}));
    }

    void textsAreTrimmedAndBlankOnesSkipped()
    {
        QVERIFY(!start({english}));
        emitResult("en_US", QStringLiteral(" \n\t "), true);
        emitResult("en_US", QString(), false);
        emitResult("en_US", QStringLiteral("\u3000 hello world\r\n"), false);
        QVERIFY(delegateHears({QStringLiteral("english volatile hello world")}));
    }

    void soundReachesTheAnalyzer()
    {
        QVERIFY(!start({english}));
        TestSound sound(analysisDescription, std::vector {0.0, 100 / 32767.0, -1.0});
        m_transcriber->append(sound.buffer());
        m_transcriber->append(sound.buffer());
        QVERIFY(analyzerTakes(2));
        QVERIFY(m_framework->analyzer().samples()
            == (std::vector<std::int16_t> {0, 100, -32767, 0, 100, -32767}));
    }

    void soundBeforeStartAndAfterStopGoesNowhere()
    {
        TestSound sound(analysisDescription, std::vector<double>(160, 0.5));
        m_transcriber->append(sound.buffer());
        QVERIFY(!start({english}));
        m_transcriber->append(sound.buffer());
        QVERIFY(analyzerTakes(1));
        m_transcriber->stop();
        m_transcriber->append(sound.buffer());
        m_detachedTasks->wait();
        QCOMPARE(m_framework->analyzer().inputs(), 1);
        QVERIFY(m_framework->analyzer().isCancelled());
    }

    void whatCannotBeConvertedIsDropped_data()
    {
        QTest::addColumn<int>("defect");
        QTest::newRow("no frames") << 0;
        QTest::newRow("a negative number of frames") << 1;
        QTest::newRow("no description") << 2;
        QTest::newRow("no planes") << 3;
        QTest::newRow("no rate") << 4;
        QTest::newRow("more frames than bytes") << 5;
        QTest::newRow("an absurd number of frames") << 6;
    }

    void whatCannotBeConvertedIsDropped()
    {
        QFETCH(const int, defect);
        QVERIFY(!start({english}));
        TestSound sound(analysisDescription, std::vector<double>(160, 0.5));
        AudioSampleBuffer broken = sound.buffer();
        switch (defect) {
        case 0:
            broken.frames = 0;
            break;
        case 1:
            broken.frames = -5;
            break;
        case 2:
            broken.description.reset();
            break;
        case 3:
            broken.planes = {};
            break;
        case 4:
            broken.description->sampleRateHz = 0;
            break;
        case 5:
            broken.frames = 161;
            break;
        default:
            broken.frames = std::numeric_limits<std::int64_t>::max();
        }
        m_transcriber->append(broken);
        m_transcriber->append(sound.buffer());
        QVERIFY(analyzerTakes(1));
        QCOMPARE(m_framework->analyzer().samples().size(), std::size_t(160));
        QVERIFY(m_delegate->lines().isEmpty());
    }

    void aSlowAnalyzerGetsTheNewest32()
    {
        m_framework->holdsAnalyzers = true;
        QVERIFY(!start({english}));
        for (int i = 1; i <= 40; ++i) {
            TestSound sound(analysisDescription, std::vector {i / 32767.0});
            m_transcriber->append(sound.buffer());
        }
        m_framework->analyzer().release();
        QVERIFY(analyzerTakes(32));
        QCOMPARE(m_framework->analyzer().samples().front(), std::int16_t(9));
        QCOMPARE(m_framework->analyzer().samples().back(), std::int16_t(40));
    }

    void buffersComeRoundInOrderAfter48()
    {
        QVERIFY(!start({english}));
        TestSound sound(analysisDescription, std::vector<double>(160, 0.5));
        for (int i = 1; i <= 120; ++i) {
            m_transcriber->append(sound.buffer());
            QVERIFY(analyzerTakes(i));
        }
        const auto buffers = m_framework->analyzer().buffers();
        // The analyzer lets go of a buffer just after counting it, so the newest slot is checked by order
        // only.
        for (std::size_t i = 48; i < buffers.size(); ++i) {
            QCOMPARE(buffers[i], buffers[i - 48]);
        }
    }

    void aNewFormatReplacesTheConverterOnce()
    {
        QVERIFY(!start({english}));
        const AudioStreamDescription wide {48000, 2, SampleType::float32, true};
        const auto play = [this](const AudioStreamDescription &description, double seconds) {
            const auto total = static_cast<std::int64_t>(seconds * description.sampleRateHz);
            const auto block = static_cast<std::size_t>(description.sampleRateHz / 50);
            for (std::int64_t position = 0; position < total; position += static_cast<std::int64_t>(block)) {
                TestSound sound(description, tone(440, 0.5, description.sampleRateHz, position, block));
                QVERIFY(m_transcriber->waitForRoom({}));
                m_transcriber->append(sound.buffer());
            }
        };
        play(analysisDescription, 1);
        play(wide, 1);
        // What a converter holds back is lost when it is replaced. Were it replaced at every buffer, almost
        // nothing of the second second would arrive.
        std::promise<void> ended;
        QVERIFY(m_transcriber->waitForRoom({}));
        m_transcriber->finishInput([&ended] { ended.set_value(); });
        ended.get_future().wait();
        QVERIFY(std::abs(static_cast<int>(m_framework->analyzer().samples().size()) - 32000) <= 2);
    }

    void aFailingAnalyzerIsReported()
    {
        QVERIFY(!start({english}));
        m_framework->analyzer().fail(QStringLiteral("the engine broke"));
        QVERIFY(delegateHears({QStringLiteral("failed: the engine broke")}));
    }

    void aFailingModuleIsReportedAndTheOthersGoOn()
    {
        QVERIFY(!start({english, korean}));
        m_framework->module(QStringLiteral("en_US"))->fail(QStringLiteral("no more words"));
        QVERIFY(delegateHears({QStringLiteral("failed: no more words")}));
        emitResult("ko_KR", QStringLiteral("네"), true);
        QVERIFY(delegateHears({QStringLiteral("failed: no more words"), QStringLiteral("korean final 네")}));
    }

    void withoutDelegateThereIsSilence()
    {
        QVERIFY(!start({english}));
        const std::weak_ptr<RecordingTranscriberDelegate> gone = m_delegate;
        m_delegate = nullptr;
        QVERIFY(gone.expired());
        emitResult("en_US", QStringLiteral("hello"), true);
        m_framework->module(QStringLiteral("en_US"))->fail(QStringLiteral("broken"));
        m_framework->analyzer().fail(QStringLiteral("broken"));
        m_transcriber->stop();
        m_detachedTasks->wait();
    }

    void stoppingTwiceOrBeforeStartingIsFine()
    {
        m_transcriber->stop();
        QVERIFY(!start({english}));
        m_transcriber->stop();
        m_transcriber->stop();
        QCOMPARE(m_framework->reservationLog(),
            (QStringList {QStringLiteral("reserve en_US"), QStringLiteral("release en_US")}));
    }

    void aTranscriberStartsAgainWithOtherLanguages()
    {
        QVERIFY(!start({english}));
        m_transcriber->stop();
        QVERIFY(!start({japanese}));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("ja_JP")});
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("ja_JP")});
        emitResult("ja_JP", QStringLiteral("はい"), true);
        QVERIFY(delegateHears({QStringLiteral("japanese final はい")}));
    }

    void startingWhileRunningEndsTheFirstSession()
    {
        QVERIFY(!start({english}));
        QVERIFY(!start({korean}));
        m_detachedTasks->wait();
        QCOMPARE(m_framework->analyzers().size(), std::size_t(2));
        QVERIFY(m_framework->analyzers().front()->isCancelled());
        QVERIFY(!m_framework->analyzer().isCancelled());
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("ko_KR")});
    }

    void aRefusedStartLeavesTheRunningSessionAlone()
    {
        QVERIFY(!start({english}));
        m_framework->authorization = SpeechAuthorization::denied;
        m_framework->answer = SpeechAuthorization::denied;
        QVERIFY(start({korean}));
        emitResult("en_US", QStringLiteral("still here"), true);
        QVERIFY(delegateHears({QStringLiteral("english final still here")}));
    }

    void aStopDuringTheStartLeavesNothingBehind()
    {
        m_framework->reservationGate.close();
        auto starting = m_transcriber->start({english});
        QCOMPARE(m_framework->reservationGate.waiting(), std::size_t(1));
        m_transcriber->stop();
        m_framework->reservationGate.open();
        test::waitFor(std::move(starting));
        QVERIFY(m_framework->analyzers().empty());
        QCOMPARE(m_framework->reserved(), QStringList());
    }

    void aStopWhileTheNetworksLoadLetsThemGo()
    {
        m_framework->preparationGate.close();
        auto starting = m_transcriber->start({english});
        QCOMPARE(m_framework->preparationGate.waiting(), std::size_t(1));
        m_transcriber->stop();
        m_detachedTasks->wait();
        QVERIFY(m_framework->analyzer().isCancelled());
        m_framework->preparationGate.open();
        test::waitFor(std::move(starting));
        QCOMPARE(m_framework->reserved(), QStringList());
        emitResult("en_US", QStringLiteral("too late"), true);
        QVERIFY(!start({english}));
        QVERIFY(!m_framework->analyzer().isCancelled());
    }

    void aSecondStartOvertakesTheFirst()
    {
        m_framework->reservationGate.close();
        auto first = m_transcriber->start({english});
        auto second = m_transcriber->start({korean});
        m_framework->reservationGate.open();
        test::waitFor(std::move(first));
        test::waitFor(std::move(second));
        QCOMPARE(m_framework->analyzers().size(), std::size_t(1));
        QCOMPARE(m_framework->locales(), QStringList {QStringLiteral("ko_KR")});
        QCOMPARE(m_framework->reserved(), QStringList {QStringLiteral("ko_KR")});
    }

    void aStopDuringAuthorizationEndsTheStart()
    {
        m_framework->authorization = SpeechAuthorization::notDetermined;
        m_framework->answer = SpeechAuthorization::denied;
        m_framework->authorizationGate.close();
        auto starting = m_transcriber->start({english});
        m_transcriber->stop();
        m_framework->authorizationGate.open();
        test::waitFor(std::move(starting));
        QVERIFY(m_framework->reservationLog().isEmpty());
    }

    void aTranscriberCanBeDestroyedWhileRunning()
    {
        QVERIFY(!start({english, korean}));
        TestSound sound(analysisDescription, std::vector<double>(160, 0.5));
        m_transcriber->append(sound.buffer());
        const std::weak_ptr<AppleSystemSpeechTranscriber> weak = m_transcriber;
        m_transcriber = nullptr;
        QVERIFY(weak.expired());
        m_detachedTasks->wait();
        QVERIFY(m_framework->analyzer().isCancelled());
        emitResult("en_US", QStringLiteral("hello"), true);
        settle();
        QVERIFY(m_delegate->lines().isEmpty());
    }

    void aResultTaskMayHoldTheLastReference()
    {
        std::promise<void> entered;
        std::promise<void> proceed;
        const std::shared_future<void> mayProceed = proceed.get_future().share();
        m_delegate->onCallback = [&entered, mayProceed] {
            entered.set_value();
            mayProceed.wait();
        };
        QVERIFY(!start({english, korean}));
        emitResult("en_US", QStringLiteral("last words"), true);
        entered.get_future().wait();
        const std::weak_ptr<AppleSystemSpeechTranscriber> weak = m_transcriber;
        m_transcriber = nullptr;
        m_detachedTasks = nullptr;
        QVERIFY(!weak.expired());
        proceed.set_value();
        QVERIFY(waitUntil([&] { return weak.expired() && m_framework->reserved().isEmpty(); }));
        QVERIFY(waitUntil([&] { return m_framework->analyzer().isCancelled(); }));
    }

    void aCallbackMayStopTheTranscriberBehindTheMainThread()
    {
        QVERIFY(!start({english}));
        m_delegate->onCallback = [this] {
            m_mainQueue->post([this] { m_transcriber->stop(); });
        };
        emitResult("en_US", QStringLiteral("stop it"), true);
        QVERIFY(waitUntil([&] { return m_framework->reserved().isEmpty(); }));
        QVERIFY(delegateHears({QStringLiteral("english final stop it")}));
    }

    void finishedInputBringsTheLastTextsAndThenTheEnd()
    {
        QVERIFY(!start({english, korean}));
        m_framework->module(QStringLiteral("en_US"))->setLastText(QStringLiteral("the end"));
        m_framework->module(QStringLiteral("ko_KR"))->setLastText(QStringLiteral("끝"));
        TestSound sound(analysisDescription, std::vector<double>(160, 0.5));
        QVERIFY(m_transcriber->waitForRoom({}));
        m_transcriber->append(sound.buffer());
        std::promise<QStringList> ended;
        m_transcriber->finishInput([&] { ended.set_value(m_delegate->lines()); });
        QStringList lines = ended.get_future().get();
        lines.sort();
        QCOMPARE(lines,
            (QStringList {QStringLiteral("english final the end"), QStringLiteral("korean final 끝")}));
        QCOMPARE(m_framework->analyzer().inputs(), 1);
        // The sound is complete: nothing more is taken.
        m_transcriber->append(sound.buffer());
        QVERIFY(!m_transcriber->waitForRoom({}));
    }

    void waitingForRoomEndsWithTheSession_data()
    {
        QTest::addColumn<int>("how");
        QTest::newRow("the analyzer takes one") << 0;
        QTest::newRow("the caller gives up") << 1;
        QTest::newRow("the transcriber is stopped") << 2;
        QTest::newRow("the analyzer fails") << 3;
    }

    void waitingForRoomEndsWithTheSession()
    {
        QFETCH(const int, how);
        m_framework->holdsAnalyzers = true;
        QVERIFY(!start({english}));
        TestSound sound(analysisDescription, std::vector<double>(160, 0.5));
        for (int i = 0; i < 32; ++i) {
            QVERIFY(m_transcriber->waitForRoom({}));
            m_transcriber->append(sound.buffer());
        }
        std::stop_source giveUp;
        auto room = std::async(std::launch::async, [transcriber = m_transcriber, stop = giveUp.get_token()] {
            return transcriber->waitForRoom(stop);
        });
        switch (how) {
        case 0:
            m_framework->analyzer().release();
            break;
        case 1:
            giveUp.request_stop();
            break;
        case 2:
            m_transcriber->stop();
            break;
        default:
            m_framework->analyzer().fail(QStringLiteral("broken"));
        }
        QCOMPARE(room.get(), how == 0);
    }

    void afterAFailureThereIsNoGoodEnd()
    {
        QVERIFY(!start({english}));
        m_framework->module(QStringLiteral("en_US"))->fail(QStringLiteral("broken"));
        QVERIFY(delegateHears({QStringLiteral("failed: broken")}));
        std::atomic<int> ends = 0;
        m_transcriber->finishInput([&] { ++ends; });
        QVERIFY(waitUntil([&] { return m_framework->analyzer().hasEnded(); }));
        m_transcriber->stop();
        m_detachedTasks->wait();
        QCOMPARE(ends.load(), 0);
    }

    void soundMayComeWhileTheMainThreadStopsAndStarts()
    {
        std::jthread capture([transcriber = m_transcriber](const std::stop_token &stop) {
            TestSound sound({48000, 2, SampleType::float32, true}, std::vector<double>(480, 0.5));
            while (!stop.stop_requested()) {
                transcriber->append(sound.buffer());
            }
        });
        for (int i = 0; i < 20; ++i) {
            QVERIFY(!start({english}));
            emitResult("en_US", QString::number(i), false);
            m_transcriber->stop();
        }
        capture.request_stop();
    }
};

LUMAPHONE_TEST(AppleSystemSpeechTranscriberTest)

} // namespace applesystemspeechtranscribertest

#include "AppleSystemSpeechTranscriberTest.moc"
