#include "speech/framework/LocalSpeechFramework.h"

#include "speech/framework/ScriptedSpeechEngine.h"
#include "speech/pocketsphinx/PocketSphinxEngine.h"
#include "support/Coroutines.h"
#include "support/program/TestProgram.h"

#include <QTemporaryDir>
#include <QTest>

namespace localspeechframeworktest {

using namespace lumaphone;
using namespace lumaphone::test;

class LocalSpeechFrameworkTest : public QObject
{
    Q_OBJECT

    std::shared_ptr<MainQueue> m_mainQueue = MainQueue::create();

    /// Has a model for `locales` and answers all sound with `text`.
    static std::shared_ptr<SpeechEngine> engineSaying(const QString &text, std::vector<QString> locales)
    {
        std::vector<RecognizerScript> scripts;
        for (const QString &locale : locales) {
            RecognizerScript script;
            script.localeIdentifiers = {locale};
            script.finish = [text, locale](const RecognitionSink &sink) {
                sink(locale, {text, true});
            };
            scripts.push_back(script);
        }
        return std::make_shared<ScriptedSpeechEngine>(std::move(scripts));
    }

    static QString errorOfReserving(LocalSpeechFramework &framework, const QString &locale)
    {
        const auto error = thrownBy<SpeechFrameworkError>([&] { test::waitFor(framework.reserve(locale)); });
        return error ? error->errorDescription() : QString();
    }

private slots:
    void recognitionNeedsNoPermission()
    {
        LocalSpeechFramework framework({}, m_mainQueue);
        QCOMPARE(framework.authorizationStatus(), SpeechAuthorization::authorized);
        QCOMPARE(test::waitFor(framework.requestAuthorization()), SpeechAuthorization::authorized);
    }

    void aLocaleIsSupportedWhetherOrNotAModelIsInstalled()
    {
        LocalSpeechFramework framework({}, m_mainQueue);
        QCOMPARE(test::waitFor(framework.supportedLocale(QStringLiteral("ja_JP"))), QStringLiteral("ja-JP"));
        QVERIFY(!test::waitFor(framework.supportedLocale(QStringLiteral("fr-FR"))));
    }

    void reservationsAreCounted()
    {
        LocalSpeechFramework framework({engineSaying({}, {QStringLiteral("en-US")})}, m_mainQueue);
        const QString english = QStringLiteral("en-US");
        test::waitFor(framework.reserve(english));
        test::waitFor(framework.reserve(QStringLiteral("en_US")));
        QCOMPARE(framework.reservations(english), 2);
        test::waitFor(framework.release(english));
        QCOMPARE(framework.reservations(english), 1);
        test::waitFor(framework.release(english));
        QCOMPARE(framework.reservations(english), 0);
        test::waitFor(framework.release(english));
        QCOMPARE(framework.reservations(english), 0);
        test::waitFor(framework.reserve(english));
        QCOMPARE(framework.reservations(english), 1);
    }

    void aLocaleWithoutAModelCannotBeReserved()
    {
        QTemporaryDir empty;
        LocalSpeechFramework framework({std::make_shared<PocketSphinxEngine>(empty.path())}, m_mainQueue);
        QCOMPARE(errorOfReserving(framework, QStringLiteral("ja-JP")),
            QStringLiteral("尚未安裝「日文」（ja-JP）的語音辨識模型。"));
        QCOMPARE(errorOfReserving(framework, QStringLiteral("en")),
            QStringLiteral(
                "尚未安裝「英文」（en-US）的語音辨識模型。請安裝 Debian 套件 pocketsphinx-en-us。"));
        QCOMPARE(errorOfReserving(framework, QStringLiteral("fr-FR")),
            QStringLiteral("尚未安裝「fr-FR」的語音辨識模型。"));
        QCOMPARE(framework.reservations(QStringLiteral("ja-JP")), 0);
    }

    void theSystemsModelOfEnglishCanBeReserved()
    {
        LocalSpeechFramework framework({std::make_shared<PocketSphinxEngine>()}, m_mainQueue);
        QCOMPARE(errorOfReserving(framework, QStringLiteral("en-US")), QString());
        QCOMPARE(framework.reservations(QStringLiteral("en-US")), 1);
    }

    void theFirstEngineWithAModelServesALocale()
    {
        const QString japanese = QStringLiteral("ja-JP");
        LocalSpeechFramework framework({engineSaying(QStringLiteral("first"), {QStringLiteral("en-US")}),
                                           engineSaying(QStringLiteral("second"), {japanese}),
                                           engineSaying(QStringLiteral("third"), {japanese})},
            m_mainQueue);
        const auto module = framework.makeTranscriber(japanese, {});
        const auto analyzer = framework.makeAnalyzer({module});
        test::waitFor(analyzer->prepareToAnalyze(16000));
        AnalyzerInputStream input;
        input.finish();
        analyzer->start(input, {});
        QCOMPARE(module->nextResult({}).value_or(SpeechResult()).text, QStringLiteral("second"));
        QVERIFY(!module->nextResult({}));
    }

    void aLocaleWithoutAModelCannotBePrepared()
    {
        LocalSpeechFramework framework({}, m_mainQueue);
        const auto analyzer = framework.makeAnalyzer({framework.makeTranscriber(QStringLiteral("ko"), {})});
        const auto error
            = thrownBy<SpeechFrameworkError>([&] { test::waitFor(analyzer->prepareToAnalyze(16000)); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("尚未安裝「韓文」（ko-KR）的語音辨識模型。"));
    }
};

LUMAPHONE_TEST(LocalSpeechFrameworkTest)

} // namespace localspeechframeworktest

#include "LocalSpeechFrameworkTest.moc"
