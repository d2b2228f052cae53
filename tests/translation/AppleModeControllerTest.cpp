#include "translation/AppleModeController.h"

#include "support/Coroutines.h"
#include "support/FakeMicrophoneCapture.h"
#include "support/ScriptedTranslationFramework.h"
#include "support/program/TestProgram.h"

#include <QMetaProperty>
#include <QObject>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace applemodecontrollertest {

using namespace lumaphone;

namespace {

class SilentModule final : public SpeechModule
{
public:
    std::optional<SpeechResult> nextResult(const std::stop_token &) override { return std::nullopt; }
};

class PickySpeech final : public SpeechFramework
{
public:
    SpeechAuthorization authorizationStatus() override { return SpeechAuthorization::notDetermined; }
    QCoro::Task<SpeechAuthorization> requestAuthorization() override
    {
        co_return SpeechAuthorization::denied;
    }
    QCoro::Task<std::optional<QString>> supportedLocale(QString) override { co_return std::nullopt; }
    QCoro::Task<> reserve(QString) override { co_return; }
    QCoro::Task<> release(QString) override { co_return; }
    std::shared_ptr<SpeechModule> makeTranscriber(const QString &locale, const SpeechModuleOptions &) override
    {
        locales.append(locale);
        if (refuses) {
            throw SpeechFrameworkError(QStringLiteral("no"));
        }
        return std::make_shared<SilentModule>();
    }
    std::shared_ptr<SpeechAnalyzer> makeAnalyzer(std::vector<std::shared_ptr<SpeechModule>>) override
    {
        return nullptr;
    }

    bool refuses = false;
    QStringList locales;
};

} // namespace

class AppleModeControllerTest : public QObject
{
    Q_OBJECT

private slots:
    void itBeginsWithItsFirstTexts()
    {
        const auto controller = makeController();
        QCOMPARE(controller->isRunning(), false);
        QCOMPARE(controller->status(), QStringLiteral("Apple Mode 尚未開始"));
        QCOMPARE(controller->transcript(), QString());
        QCOMPARE(
            controller->translatedText(), QStringLiteral("開始 Apple Mode 後，台灣繁中翻譯會顯示在這裡。"));
        QVERIFY(!controller->recognitionRequest());
        QVERIFY(!controller->recognitionTask());
        QVERIFY(!controller->hasTranslationWorkerTask());
        QVERIFY(!controller->latestTranslationSourceText());
        QCOMPARE(controller->translationBurstStartedAt(), AppleModeController::distantPast());
        QVERIFY(controller->translationBurstStartedAt().daysTo(QDateTime::currentDateTimeUtc()) > 365 * 1000);
        QCOMPARE(controller->lastTranslationSource(), QString());
    }

    void itHoldsAnIdleEngineAndAnEnglishRecognizer()
    {
        const auto controller = makeController();
        QCOMPARE(m_microphones->recording().recordersMade(), 1);
        QVERIFY(m_microphones->recording().steps.isEmpty());
        QVERIFY(controller->speechRecognizer());
        QCOMPARE(m_speech.locales, QStringList {QStringLiteral("en-US")});
        QCOMPARE(m_microphones->requests(), 0);
    }

    void aRefusedLocaleLeavesItWithoutRecognizer()
    {
        m_speech.refuses = true;
        QVERIFY(!makeController()->speechRecognizer());
    }

    void itsTranslatorHasACacheOfItsOwn()
    {
        const auto one = makeController();
        const auto two = makeController();
        for (const auto &controller : {one, two}) {
            for (int i = 0; i < 2; ++i) {
                test::waitFor(controller->translator().translate(
                    QStringLiteral("Hello"), QStringLiteral("en"), QStringLiteral("zh-Hant")));
            }
        }
        QCOMPARE(m_translation.translations.size(), 2);
    }

    void publishedStateNotifiesOnlyWhenItChanges_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("isRunning") << QByteArray("isRunning") << QVariant(true);
        QTest::newRow("status") << QByteArray("status") << QVariant(QStringLiteral("x"));
        QTest::newRow("transcript") << QByteArray("transcript") << QVariant(QStringLiteral("x"));
        QTest::newRow("translatedText") << QByteArray("translatedText") << QVariant(QStringLiteral("x"));
    }
    void publishedStateNotifiesOnlyWhenItChanges()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        const auto controller = makeController();
        const QMetaObject *meta = controller->metaObject();
        const QMetaProperty published = meta->property(meta->indexOfProperty(property));
        QSignalSpy spy(controller.get(), published.notifySignal());
        QVERIFY(controller->setProperty(property, value));
        QCOMPARE(controller->property(property), value);
        QCOMPARE(spy.count(), 1);
        QVERIFY(controller->setProperty(property, value));
        QCOMPARE(spy.count(), 1);
    }

    void init()
    {
        m_speech = {};
        m_microphones = std::make_unique<test::FakeMicrophoneCapture>();
        m_microphones->authorization = CaptureAuthorization::notDetermined;
    }

private:
    std::shared_ptr<AppleModeController> makeController()
    {
        return std::make_shared<AppleModeController>(*m_microphones, m_speech, m_translation);
    }

    std::unique_ptr<test::FakeMicrophoneCapture> m_microphones;
    PickySpeech m_speech;
    test::ScriptedTranslationFramework m_translation;
};

LUMAPHONE_TEST(AppleModeControllerTest)

} // namespace applemodecontrollertest

#include "AppleModeControllerTest.moc"
