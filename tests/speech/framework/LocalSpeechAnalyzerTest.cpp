#include "speech/framework/LocalSpeechAnalyzer.h"

#include "speech/framework/ScriptedSpeechEngine.h"
#include "support/Coroutines.h"
#include "support/Gate.h"
#include "support/program/TestProgram.h"

#include <QStringList>
#include <QTest>

#include <pthread.h>

#include <array>
#include <atomic>
#include <future>

namespace localspeechanalyzertest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const auto english = QStringLiteral("en-US");
const auto japanese = QStringLiteral("ja-JP");
constexpr SpeechModuleOptions withVolatileResults {true, true};

AnalyzerInput soundOf(std::int16_t value, std::size_t frames = 160)
{
    const auto buffer = std::make_shared<PcmBuffer>(frames);
    buffer->setFrameLength(frames);
    std::fill(buffer->storage().begin(), buffer->storage().end(), value);
    return {buffer};
}

/// What a module gave: its texts (final ones end in a full stop), and its error if there was one.
struct Results
{
    QStringList texts;
    QString error;
};

Results readAll(const std::shared_ptr<SpeechModule> &module)
{
    Results results;
    try {
        while (const auto result = module->nextResult({})) {
            results.texts.append(result->isFinal ? result->text + QLatin1Char('.') : result->text);
        }
    } catch (const SpeechFrameworkError &error) {
        results.error = error.errorDescription();
    }
    return results;
}

/// Says the value of the first sample of each piece, as a volatile text, and "end" at the end.
RecognizerScript sayingValues(const QString &locale)
{
    RecognizerScript script;
    script.localeIdentifiers = {locale};
    script.accept = [locale](std::span<const std::int16_t> samples, const RecognitionSink &sink) {
        sink(locale, {QString::number(samples.front()), false});
    };
    script.finish = [locale](const RecognitionSink &sink) {
        sink(locale, {QStringLiteral("end"), true});
    };
    return script;
}

/// An analyzer over scripts, with the threads of its caller: one that runs start(), one per module that
/// reads.
class Analysis
{
public:
    explicit Analysis(std::vector<RecognizerScript> scripts,
        std::size_t queueCapacity = LocalSpeechAnalyzer::defaultQueueCapacity,
        SpeechModuleOptions options = withVolatileResults)
    {
        const auto engine = std::make_shared<ScriptedSpeechEngine>(std::move(scripts));
        std::vector<LocalSpeechAnalyzer::Assignment> assignments;
        for (const QString &locale : engine->installedLocales()) {
            m_modules.push_back(std::make_shared<LocalSpeechModule>(locale, options));
            assignments.push_back({m_modules.back(), engine});
        }
        m_analyzer
            = std::make_shared<LocalSpeechAnalyzer>(std::move(assignments), m_mainQueue, queueCapacity);
    }
    ~Analysis()
    {
        m_analyzer->cancelAndFinishNow();
        m_input.finish();
    }

    LocalSpeechAnalyzer &analyzer() { return *m_analyzer; }
    AnalyzerInputStream &input() { return m_input; }

    void prepare() { test::waitFor(m_analyzer->prepareToAnalyze(PcmBuffer::sampleRateHz)); }

    void start(const std::stop_token &stop = {})
    {
        m_running = std::async(std::launch::async, [this, stop] { m_analyzer->start(m_input, stop); });
        for (const auto &module : m_modules) {
            m_readers.push_back(std::async(std::launch::async, readAll, module));
        }
    }

    /// Waits for start(). Throws what it threw.
    void waitForEnd() { m_running.get(); }

    /// Waits for the end of the results of a module, in the order of the scripts' locales.
    Results results(std::size_t module = 0) { return m_readers.at(module).get(); }

    /// Gives the values as one piece of sound each, ends the input and waits for start().
    void run(const std::vector<std::int16_t> &values)
    {
        start();
        for (const std::int16_t value : values) {
            m_input.yield(soundOf(value));
        }
        m_input.finish();
        waitForEnd();
    }

private:
    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();
    std::vector<std::shared_ptr<LocalSpeechModule>> m_modules;
    std::shared_ptr<LocalSpeechAnalyzer> m_analyzer;
    AnalyzerInputStream m_input;
    std::future<void> m_running;
    std::vector<std::future<Results>> m_readers;
};

} // namespace

class LocalSpeechAnalyzerTest : public QObject
{
    Q_OBJECT

private slots:
    void everyModuleReceivesTheTextsOfItsLocale()
    {
        Analysis analysis({sayingValues(english), sayingValues(japanese)});
        analysis.prepare();
        analysis.run({1, 2, 3});
        const QStringList expected {
            QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("end.")};
        QCOMPARE(analysis.results(0).texts, expected);
        QCOMPARE(analysis.results(1).texts, expected);
    }

    void volatileTextsAreReportedOnlyWhenAskedFor()
    {
        Analysis analysis(
            {sayingValues(english)}, LocalSpeechAnalyzer::defaultQueueCapacity, SpeechModuleOptions {});
        analysis.run({1, 2});
        QCOMPARE(analysis.results().texts, QStringList {QStringLiteral("end.")});
    }

    void oneRecognizerMayServeSeveralLocales()
    {
        RecognizerScript script;
        script.localeIdentifiers = {english, japanese};
        script.accept = [](std::span<const std::int16_t> samples, const RecognitionSink &sink) {
            sink(samples.front() > 0 ? english : japanese, {QString::number(samples.front()), true});
        };
        Analysis analysis({script});
        analysis.prepare();
        analysis.run({1, -2, 3});
        QCOMPARE(analysis.results(0).texts, (QStringList {QStringLiteral("1."), QStringLiteral("3.")}));
        QCOMPARE(analysis.results(1).texts, QStringList {QStringLiteral("-2.")});
    }

    void aRecognizerMaySpeakFromAThreadOfItsOwn()
    {
        RecognizerScript script;
        script.localeIdentifiers = {english};
        script.accept = [](std::span<const std::int16_t>, const RecognitionSink &sink) {
            std::thread([&sink] { sink(english, {QStringLiteral("aside"), true}); }).join();
        };
        Analysis analysis({script});
        analysis.run({1});
        QCOMPARE(analysis.results().texts, QStringList {QStringLiteral("aside.")});
    }

    void everyRecognizerHasANamedThread()
    {
        const auto sayingThreadName = [](const QString &locale) {
            RecognizerScript script;
            script.localeIdentifiers = {locale};
            script.finish = [locale](const RecognitionSink &sink) {
                std::array<char, 16> name {};
                pthread_getname_np(pthread_self(), name.data(), name.size());
                sink(locale, {QString::fromLatin1(name.data()), true});
            };
            return script;
        };
        Analysis analysis({sayingThreadName(english), sayingThreadName(japanese)});
        analysis.run({});
        QCOMPARE(analysis.results(0).texts, QStringList {QStringLiteral("speech-en-US.")});
        QCOMPARE(analysis.results(1).texts, QStringList {QStringLiteral("speech-ja-JP.")});
    }

    void modelsAreLoadedOnceAndOffTheMainThread()
    {
        const std::thread::id mainThread = std::this_thread::get_id();
        std::atomic<int> loads = 0;
        std::atomic<bool> onMainThread = false;
        RecognizerScript script = sayingValues(english);
        script.load = [&] {
            ++loads;
            onMainThread = std::this_thread::get_id() == mainThread;
        };
        Analysis analysis({script});
        analysis.prepare();
        QCOMPARE(loads.load(), 1);
        QVERIFY(!onMainThread);
        analysis.run({1});
        QCOMPARE(loads.load(), 1);
    }

    void cancellingWaitsForAModelThatLoads()
    {
        Gate reached;
        Gate loading;
        std::atomic<bool> hasLoaded = false;
        RecognizerScript script = sayingValues(english);
        script.load = [&] {
            reached.open();
            loading.wait();
            hasLoaded = true;
        };
        script.cancel = [&] {
            loading.open();
        };
        Analysis analysis({script});
        auto prepared = analysis.analyzer().prepareToAnalyze(PcmBuffer::sampleRateHz);
        reached.wait();
        analysis.analyzer().cancelAndFinishNow();
        QVERIFY(hasLoaded); // nobody is in it any more
        test::waitFor(std::move(prepared));
    }

    void aModelIsNotLoadedForAnAnalyzerThatWasCancelled()
    {
        std::atomic<int> loads = 0;
        RecognizerScript script = sayingValues(english);
        script.load = [&] {
            ++loads;
        };
        Analysis analysis({script});
        analysis.analyzer().cancelAndFinishNow();
        analysis.prepare();
        QCOMPARE(loads.load(), 0);
    }

    void anotherSampleRateIsRefused()
    {
        Analysis analysis({sayingValues(english)});
        const auto error = thrownBy<SpeechFrameworkError>(
            [&] { test::waitFor(analysis.analyzer().prepareToAnalyze(48000)); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("語音辨識只接受 16000 Hz 的聲音。"));
    }

    void aFailureToLoadFailsThePreparation()
    {
        RecognizerScript broken = sayingValues(japanese);
        broken.load = [] {
            throw SpeechFrameworkError(QStringLiteral("模型損壞"));
        };
        Analysis analysis({sayingValues(english), broken});
        const auto error = thrownBy<SpeechFrameworkError>([&] { analysis.prepare(); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("模型損壞"));
    }

    void aFailureEndsOnlyTheResultsOfItsModule_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("error");
        for (const QString &place :
            {QStringLiteral("load"), QStringLiteral("accept"), QStringLiteral("finish")}) {
            const QByteArray in = " in " + place.toLatin1();
            QTest::newRow("a localized error" + in) << place << "localized"
                                                    << "引擎故障";
            QTest::newRow("another std::exception" + in) << place << "standard"
                                                         << "engine failure";
            QTest::newRow("no std::exception" + in) << place << "other"
                                                    << "發生未知的錯誤。";
        }
    }

    void aFailureEndsOnlyTheResultsOfItsModule()
    {
        QFETCH(QString, place);
        QFETCH(QString, kind);
        QFETCH(QString, error);
        const std::function<void()> fail = [kind] {
            if (kind == QStringLiteral("localized")) {
                throw SpeechFrameworkError(QStringLiteral("引擎故障"));
            }
            if (kind == QStringLiteral("standard")) {
                throw std::runtime_error("engine failure");
            }
            throw 42;
        };
        RecognizerScript broken;
        broken.localeIdentifiers = {japanese};
        if (place == QStringLiteral("load")) {
            broken.load = fail;
        } else if (place == QStringLiteral("accept")) {
            broken.accept = [fail](std::span<const std::int16_t>, const RecognitionSink &) {
                fail();
            };
        } else {
            broken.finish = [fail](const RecognitionSink &) {
                fail();
            };
        }
        Analysis analysis({sayingValues(english), broken});
        analysis.run({1, 2});
        QCOMPARE(analysis.results(1).error, error);
        const Results others = analysis.results(0);
        QCOMPARE(others.error, QString());
        QCOMPARE(others.texts.size(), 3);
    }

    void textsBeforeAFailureAreStillRead()
    {
        RecognizerScript script = sayingValues(english);
        script.finish = [](const RecognitionSink &) {
            throw SpeechFrameworkError(QStringLiteral("故障"));
        };
        Analysis analysis({script});
        analysis.run({7});
        const Results results = analysis.results();
        QCOMPARE(results.texts, QStringList {QStringLiteral("7")});
        QCOMPARE(results.error, QStringLiteral("故障"));
    }

    void aFailedRecognizerDoesNotHoldUpTheSound()
    {
        RecognizerScript broken;
        broken.localeIdentifiers = {japanese};
        broken.accept = [](std::span<const std::int16_t>, const RecognitionSink &) {
            throw SpeechFrameworkError(QStringLiteral("故障"));
        };
        constexpr std::size_t roomForOnePiece = 1;
        Analysis analysis({broken, sayingValues(english)}, roomForOnePiece);
        analysis.run(std::vector<std::int16_t>(50, 1));
        QCOMPARE(analysis.results(1).texts.size(), 51);
    }

    void aSlowRecognizerDoesNotHoldUpTheOthers()
    {
        Gate gate;
        RecognizerScript slow = sayingValues(english);
        slow.accept = [&gate, accept = slow.accept](
                          std::span<const std::int16_t> samples, const RecognitionSink &sink) {
            gate.wait();
            accept(samples, sink);
        };
        std::promise<void> allHeard;
        RecognizerScript quick = sayingValues(japanese);
        quick.accept = [&allHeard](std::span<const std::int16_t> samples, const RecognitionSink &sink) {
            sink(japanese, {QString::number(samples.front()), true});
            if (samples.front() == 20) {
                allHeard.set_value();
            }
        };
        Analysis analysis({slow, quick});
        analysis.start();
        for (std::int16_t value = 1; value <= 20; ++value) {
            analysis.input().yield(soundOf(value));
        }
        allHeard.get_future().wait(); // while the slow one has not said a word
        gate.open();
        analysis.input().finish();
        analysis.waitForEnd();
        QCOMPARE(analysis.results(0).texts.size(), 21);
        QCOMPARE(analysis.results(1).texts.size(), 21);
    }

    void aFullQueueHoldsUpTheInputAndLosesNothing()
    {
        Gate gate;
        std::atomic<int> accepted = 0;
        RecognizerScript slow;
        slow.localeIdentifiers = {english};
        slow.accept = [&](std::span<const std::int16_t> samples, const RecognitionSink &) {
            gate.wait();
            accepted += int(samples.size());
        };
        constexpr std::size_t piece = 400;
        constexpr std::size_t capacity = 1000;
        constexpr int pieces = 200;
        // One at the gate, three in the queue, one waiting for room.
        constexpr int takenWhileShut = 5;
        std::atomic<int> taken = 0;
        Analysis analysis({slow}, capacity);
        analysis.start();
        {
            // The last owner of a buffer is the analyzer: its destruction tells that it has been copied.
            const auto give = [&] {
                auto *buffer = new PcmBuffer(piece);
                buffer->setFrameLength(piece);
                analysis.input().yield(
                    {std::shared_ptr<const PcmBuffer>(buffer, [&taken](const PcmBuffer *old) {
                        ++taken;
                        delete old;
                    })});
            };
            for (int i = 0; i < pieces; ++i) {
                give();
            }
        }
        QVERIFY(waitUntil([&] { return taken == takenWhileShut - 1; }));
        for (int i = 0; i < 1000; ++i) {
            std::this_thread::yield();
        }
        QCOMPARE(taken.load(), takenWhileShut - 1);
        QCOMPARE(accepted.load(), 0);
        gate.open();
        analysis.input().finish();
        analysis.waitForEnd();
        QCOMPARE(accepted.load(), pieces * int(piece));
        QCOMPARE(taken.load(), pieces);
    }

    void buffersCanBeReusedBehindTheAnalyzer()
    {
        Gate gate;
        RecognizerScript late = sayingValues(english);
        late.accept = [&gate, accept = late.accept](
                          std::span<const std::int16_t> samples, const RecognitionSink &sink) {
            gate.wait();
            accept(samples, sink);
        };
        Analysis analysis({late});
        analysis.start();
        const auto reused = std::make_shared<PcmBuffer>(160);
        reused->setFrameLength(160);
        std::fill(reused->storage().begin(), reused->storage().end(), std::int16_t(1));
        const auto isReleased = std::make_shared<std::promise<void>>();
        analysis.input().yield({std::shared_ptr<const PcmBuffer>(
            reused.get(), [isReleased](const PcmBuffer *) { isReleased->set_value(); })});
        analysis.input().yield(soundOf(2));
        isReleased->get_future().wait();
        std::fill(reused->storage().begin(), reused->storage().end(), std::int16_t(9));
        gate.open();
        analysis.input().finish();
        analysis.waitForEnd();
        QCOMPARE(analysis.results().texts,
            (QStringList {QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("end.")}));
    }

    void cancellingEndsTheResultsWithoutALastText()
    {
        Gate gate;
        Gate reached;
        RecognizerScript stuck = sayingValues(english);
        stuck.accept = [&](std::span<const std::int16_t>, const RecognitionSink &sink) {
            sink(english, {QStringLiteral("begun"), false});
            reached.open();
            gate.wait();
            sink(english, {QStringLiteral("too late"), true});
        };
        stuck.cancel = [&gate] {
            gate.open();
        };
        Analysis analysis({stuck});
        analysis.start();
        analysis.input().yield(soundOf(1));
        analysis.input().yield(soundOf(2));
        reached.wait();
        analysis.analyzer().cancelAndFinishNow();
        analysis.analyzer().cancelAndFinishNow();
        analysis.waitForEnd();
        QCOMPARE(analysis.results().texts, QStringList {QStringLiteral("begun")});
    }

    void cancellingDoesNotWaitForAStuckRecognizer()
    {
        Gate gate;
        Gate reached;
        RecognizerScript stuck;
        stuck.localeIdentifiers = {english};
        stuck.accept = [&](std::span<const std::int16_t>, const RecognitionSink &) {
            reached.open();
            gate.wait();
        };
        Analysis analysis({stuck});
        analysis.start();
        analysis.input().yield(soundOf(1));
        reached.wait();
        analysis.analyzer().cancelAndFinishNow();
        analysis.waitForEnd();
        QCOMPARE(analysis.results().texts, QStringList());
        gate.open(); // the analyzer's end waits for the recogniser
    }

    void cancellingWakesAnInputThatWaitsForRoom()
    {
        Gate gate;
        RecognizerScript stuck;
        stuck.localeIdentifiers = {english};
        stuck.accept = [&](std::span<const std::int16_t>, const RecognitionSink &) {
            gate.wait();
        };
        stuck.cancel = [&gate] {
            gate.open();
        };
        Analysis analysis({stuck}, 1);
        analysis.start();
        for (int i = 0; i < 10; ++i) {
            analysis.input().yield(soundOf(1));
        }
        analysis.analyzer().cancelAndFinishNow();
        analysis.waitForEnd();
        QCOMPARE(analysis.results().error, QString());
    }

    void cancellingFromManyThreadsIsCancellingOnce()
    {
        Analysis analysis({sayingValues(english), sayingValues(japanese)});
        analysis.start();
        std::vector<std::future<void>> cancellers;
        for (int i = 0; i < 4; ++i) {
            cancellers.push_back(
                std::async(std::launch::async, [&analysis] { analysis.analyzer().cancelAndFinishNow(); }));
        }
        for (std::int16_t i = 0; i < 100; ++i) {
            analysis.input().yield(soundOf(i));
        }
        for (auto &canceller : cancellers) {
            canceller.get();
        }
        analysis.waitForEnd();
        QVERIFY(!analysis.results(0).texts.contains(QStringLiteral("end.")));
        QVERIFY(!analysis.results(1).texts.contains(QStringLiteral("end.")));
    }

    void anAnalyzerCancelledBeforeItsStartDoesNothing()
    {
        Analysis analysis({sayingValues(english)});
        analysis.analyzer().cancelAndFinishNow();
        analysis.run({1});
        QCOMPARE(analysis.results().texts, QStringList());
    }

    void cancellingAfterTheEndChangesNothing()
    {
        Analysis analysis({sayingValues(english)});
        analysis.run({1});
        analysis.analyzer().cancelAndFinishNow();
        QCOMPARE(analysis.results().texts, (QStringList {QStringLiteral("1"), QStringLiteral("end.")}));
    }

    void aStopRequestEndsTheAnalysis()
    {
        std::stop_source stop;
        Analysis analysis({sayingValues(english)});
        analysis.start(stop.get_token());
        stop.request_stop();
        analysis.waitForEnd();
        QVERIFY(!analysis.results().texts.contains(QStringLiteral("end.")));
    }

    void aFailureOfTheInputIsThrownToTheCaller()
    {
        Analysis analysis({sayingValues(english)});
        analysis.start();
        analysis.input().fail(std::make_exception_ptr(SpeechFrameworkError(QStringLiteral("聲音中斷"))));
        const auto error = thrownBy<SpeechFrameworkError>([&] { analysis.waitForEnd(); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("聲音中斷"));
        QVERIFY(!analysis.results().texts.contains(QStringLiteral("end.")));
    }
};

LUMAPHONE_TEST(LocalSpeechAnalyzerTest)

} // namespace localspeechanalyzertest

#include "LocalSpeechAnalyzerTest.moc"
