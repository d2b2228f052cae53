#include "translation/LumaphoneAppleTranslationService.h"

#include "support/Coroutines.h"
#include "support/ScriptedTranslationFramework.h"
#include "support/program/TestProgram.h"
#include "translation/LumaphoneAppleTranslationError.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QTest>

#include <memory>

namespace lumaphoneappletranslationservicetest {

using namespace lumaphone;
using test::ScriptedTranslationFramework;

namespace {

const QString en = QStringLiteral("en");
const QString ja = QStringLiteral("ja");
const QString zhHant = QStringLiteral("zh-Hant");

/// The text of the error that a task ended with; null when it ended well or has not ended.
struct Outcome
{
    bool ended = false;
    QString value;
    QString error;
};

QCoro::Task<> observe(QCoro::Task<QString> task, std::shared_ptr<Outcome> outcome)
{
    try {
        outcome->value = co_await task;
    } catch (const std::exception &error) {
        outcome->error = localizedDescription(error);
    }
    outcome->ended = true;
}

std::shared_ptr<Outcome> begin(QCoro::Task<QString> task)
{
    auto outcome = std::make_shared<Outcome>();
    observe(std::move(task), outcome);
    return outcome;
}

} // namespace

class LumaphoneAppleTranslationServiceTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_framework = std::make_unique<ScriptedTranslationFramework>();
        m_service = std::make_unique<LumaphoneAppleTranslationService>(*m_framework);
    }

    void aTextIsTrimmedTranslatedAndReturnedAsItCame()
    {
        m_framework->translation = [](const QString &) {
            return QStringLiteral(" 你好。\n");
        };
        QCOMPARE(translated(QStringLiteral(" \nHello\u3000"), en), QStringLiteral(" 你好。\n"));
        QCOMPARE(m_framework->translations,
            (QList<ScriptedTranslationFramework::Call> {
                {QStringLiteral("en->zh-Hant"), QStringLiteral("Hello")}}));
    }

    void blankTextNeedsNoFramework()
    {
        QCOMPARE(translated(QStringLiteral("  \n "), en), QString());
        QCOMPARE(translated(QString(), en), QString());
        QVERIFY(m_framework->statusQuestions.isEmpty());
    }

    void aTextInTheTargetLanguageIsReturnedTrimmed_data()
    {
        QTest::addColumn<QString>("source");
        QTest::newRow("zh") << QStringLiteral("zh");
        QTest::newRow("zh-TW") << QStringLiteral("zh-TW");
        QTest::newRow("zh_Hant_TW") << QStringLiteral("zh_Hant_TW");
        QTest::newRow("zh-Hant") << QStringLiteral("zh-Hant");
    }
    void aTextInTheTargetLanguageIsReturnedTrimmed()
    {
        QFETCH(QString, source);
        m_framework->availability = LanguageAvailabilityStatus::unsupported;
        QCOMPARE(translated(QStringLiteral(" 你好 "), source), QStringLiteral("你好"));
        test::waitFor(m_service->prepare(source, zhHant));
        QVERIFY(m_framework->statusQuestions.isEmpty());
        QVERIFY(m_framework->sessionsMade.isEmpty());
    }

    void aSimplifiedSourceIsAnotherLanguage()
    {
        translated(QStringLiteral("你好"), QStringLiteral("zh-Hans"));
        QCOMPARE(m_framework->sessionsMade, QStringList {QStringLiteral("zh-Hans->zh-Hant")});
    }

    void aFinishedTranslationIsRemembered()
    {
        const QString first = translated(QStringLiteral("Hello"), en);
        QCOMPARE(translated(QStringLiteral(" Hello\n"), en), first);
        QCOMPARE(m_framework->translations.size(), 1);
    }

    void canonicallyEquivalentTextsAreTheSame()
    {
        translated(QStringLiteral("caf\u00E9"), en);
        translated(QStringLiteral("cafe\u0301"), en);
        QCOMPARE(m_framework->translations.size(), 1);
    }

    void anEmptyTranslationIsRememberedToo()
    {
        m_framework->translation = [](const QString &) {
            return QString();
        };
        QCOMPARE(translated(QStringLiteral("Hello"), en), QString());
        QCOMPARE(translated(QStringLiteral("Hello"), en), QString());
        QCOMPARE(m_framework->translations.size(), 1);
    }

    void identifiersCountAsTheyArePassed()
    {
        translated(QStringLiteral("Hello"), en);
        test::waitFor(m_service->translate(QStringLiteral("Hello"), en, QStringLiteral("zh-hant")));
        test::waitFor(m_service->translate(QStringLiteral("Hello"), QStringLiteral("EN"), zhHant));
        const QStringList pairs {
            QStringLiteral("en->zh-Hant"), QStringLiteral("en->zh-hant"), QStringLiteral("EN->zh-Hant")};
        QCOMPARE(m_framework->statusQuestions, pairs);
        QCOMPARE(m_framework->sessionsMade, pairs);
        QCOMPARE(m_framework->translations.size(), 3);
    }

    void aPairHasOneSessionAndOneAnswer()
    {
        translated(QStringLiteral("one"), en);
        translated(QStringLiteral("two"), en);
        test::waitFor(m_service->prepare(en, zhHant));
        QCOMPARE(m_framework->statusQuestions.size(), 1);
        QCOMPARE(m_framework->sessionsMade.size(), 1);
        translated(QStringLiteral("one"), ja);
        QCOMPARE(m_framework->sessionsMade.size(), 2);
    }

    void anUnsupportedPairStaysUnsupported()
    {
        m_framework->availability = LanguageAvailabilityStatus::unsupported;
        const auto first = test::thrownBy<LumaphoneAppleTranslationError>(
            [&] { translated(QStringLiteral("Hello"), QStringLiteral("en-US")); });
        QVERIFY(first);
        QCOMPARE(first->errorCase(), LumaphoneAppleTranslationError::Case::unsupportedPair);
        QCOMPARE(first->source(), QStringLiteral("en-US"));
        QCOMPARE(first->target(), zhHant);
        QCOMPARE(
            first->errorDescription(), QStringLiteral("Apple Translation 不支援 en-US 到 zh-Hant 的翻譯。"));

        m_framework->availability = LanguageAvailabilityStatus::installed;
        QVERIFY(test::thrownBy<LumaphoneAppleTranslationError>(
            [&] { translated(QStringLiteral("Hello"), QStringLiteral("en-US")); }));
        QVERIFY(test::thrownBy<LumaphoneAppleTranslationError>(
            [&] { test::waitFor(m_service->prepare(QStringLiteral("en-US"), zhHant)); }));
        QCOMPARE(m_framework->statusQuestions.size(), 1);
        QVERIFY(m_framework->sessionsMade.isEmpty());

        LumaphoneAppleTranslationService another(*m_framework);
        test::waitFor(another.prepare(QStringLiteral("en-US"), zhHant));
        QCOMPARE(m_framework->statusQuestions.size(), 2);
    }

    void aSupportedPairIsAnswerEnough()
    {
        m_framework->availability = LanguageAvailabilityStatus::supported;
        m_framework->isReady = false;
        translated(QStringLiteral("Hello"), en);
        QCOMPARE(m_framework->preparations.size(), 1);
        QCOMPARE(m_framework->translations.size(), 1);
    }

    void theFirstOfTwoAnswersAtOnceIsKept()
    {
        m_framework->statusGate.close();
        m_framework->availability = LanguageAvailabilityStatus::installed;
        const auto early = begin(m_service->translate(QStringLiteral("a"), en, zhHant));
        m_framework->availability = LanguageAvailabilityStatus::unsupported;
        const auto late = begin(m_service->translate(QStringLiteral("b"), en, zhHant));
        QCOMPARE(m_framework->statusGate.waiting(), 2);

        m_framework->statusGate.letLastThrough();
        QVERIFY(late->ended);
        QVERIFY(late->error.contains(QStringLiteral("不支援")));
        m_framework->statusGate.open();
        QVERIFY(early->ended);
        QVERIFY(early->error.contains(QStringLiteral("不支援")));
        QVERIFY(test::thrownBy<LumaphoneAppleTranslationError>([&] { translated(QStringLiteral("c"), en); }));
        QCOMPARE(m_framework->statusQuestions.size(), 2);
    }

    void twoFirstCallsAtOnceBothComplete()
    {
        m_framework->statusGate.close();
        m_framework->isReady = false;
        m_framework->preparingMakesReady = false;
        const auto one = begin(m_service->translate(QStringLiteral("one"), en, zhHant));
        const auto two = begin(m_service->translate(QStringLiteral("two"), en, zhHant));
        QVERIFY(!one->ended && !two->ended);
        m_framework->statusGate.open();
        QVERIFY(one->ended && two->ended);
        QCOMPARE(one->value, QStringLiteral("en->zh-Hant:one"));
        QCOMPARE(two->value, QStringLiteral("en->zh-Hant:two"));
        QCOMPARE(m_framework->preparations.size(), 2);
    }

    void equalCallsAtOnceAreBothTranslated()
    {
        m_framework->translateGate.close();
        const auto one = begin(m_service->translate(QStringLiteral("same"), en, zhHant));
        const auto two = begin(m_service->translate(QStringLiteral("same"), en, zhHant));
        QCOMPARE(m_framework->translations.size(), 2);
        m_framework->translateGate.open();
        QVERIFY(one->ended && two->ended);
        translated(QStringLiteral("same"), en);
        QCOMPARE(m_framework->translations.size(), 2);
    }

    void otherCallsGoOnWhileOneWaits()
    {
        m_framework->translateGate.close();
        const auto waiting = begin(m_service->translate(QStringLiteral("slow"), en, zhHant));
        m_framework->translateGate.letLastThrough();
        QVERIFY(waiting->ended);

        m_framework->isReady = false;
        m_framework->prepareGate.close();
        const auto preparing = begin(m_service->translate(QStringLiteral("new"), ja, zhHant));
        QCOMPARE(translated(QStringLiteral("slow"), en), QStringLiteral("en->zh-Hant:slow"));
        QVERIFY(!preparing->ended);
        m_framework->translateGate.open();
        m_framework->prepareGate.open();
        QVERIFY(preparing->ended);
    }

    void aSessionThatIsNotReadyIsPreparedFirst()
    {
        m_framework->isReady = false;
        m_framework->prepareGate.close();
        const auto outcome = begin(m_service->translate(QStringLiteral("Hello"), en, zhHant));
        QCOMPARE(m_framework->preparations, QStringList {QStringLiteral("en->zh-Hant")});
        QVERIFY(m_framework->translations.isEmpty());
        m_framework->prepareGate.open();
        QVERIFY(outcome->ended);
        QCOMPARE(m_framework->translations.size(), 1);
        translated(QStringLiteral("again"), en);
        QCOMPARE(m_framework->preparations.size(), 1);
    }

    void preparingMakesTheSessionAndTranslatesNothing()
    {
        m_framework->isReady = false;
        test::waitFor(m_service->prepare(en, zhHant));
        QCOMPARE(m_framework->sessionsMade.size(), 1);
        QCOMPARE(m_framework->preparations.size(), 1);
        test::waitFor(m_service->prepare(en, zhHant));
        QCOMPARE(m_framework->preparations.size(), 1);
        QVERIFY(m_framework->translations.isEmpty());
    }

    void errorsOfTheFrameworkPassThroughAndNothingIsRemembered()
    {
        m_framework->isReady = false;
        m_framework->prepareError
            = std::make_exception_ptr(TranslationFrameworkError(QStringLiteral("使用者取消了下載")));
        auto error
            = test::thrownBy<TranslationFrameworkError>([&] { translated(QStringLiteral("Hello"), en); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("使用者取消了下載"));
        QVERIFY(test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(m_service->prepare(en, zhHant)); }));

        m_framework->prepareError = nullptr;
        m_framework->translateError
            = std::make_exception_ptr(TranslationFrameworkError(QStringLiteral("失敗")));
        error = test::thrownBy<TranslationFrameworkError>([&] { translated(QStringLiteral("Hello"), en); });
        QVERIFY(error);
        QCOMPARE(error->errorDescription(), QStringLiteral("失敗"));

        m_framework->translateError = nullptr;
        QCOMPARE(translated(QStringLiteral("Hello"), en), QStringLiteral("en->zh-Hant:Hello"));
        QCOMPARE(m_framework->translations.size(), 2);
        QCOMPARE(m_framework->sessionsMade.size(), 1);
    }

    void aStopReachesTheFramework()
    {
        std::stop_source stop;
        m_framework->translateGate.close();
        const auto outcome
            = begin(m_service->translate(QStringLiteral("Hello"), en, zhHant, stop.get_token()));
        stop.request_stop();
        m_framework->translateGate.open();
        QVERIFY(outcome->ended);
        QCOMPARE(outcome->error, QStringLiteral("cancelled"));

        m_framework->isReady = false;
        QVERIFY(test::thrownBy<TranslationFrameworkError>(
            [&] { test::waitFor(m_service->prepare(en, zhHant, stop.get_token())); }));
    }

    void theTwoThousandAndFirstTranslationEvictsTheOldest()
    {
        for (int i = 0; i < 2000; ++i) {
            translated(QString::number(i), en);
        }
        translated(QString::number(0), en); // a use: 1 is now the oldest
        QCOMPARE(m_framework->translations.size(), 2000);
        translated(QStringLiteral("one more"), en);
        QCOMPARE(m_framework->translations.size(), 2001);
        translated(QString::number(0), en);
        translated(QString::number(2), en);
        QCOMPARE(m_framework->translations.size(), 2001);
        translated(QString::number(1), en);
        QCOMPARE(m_framework->translations.size(), 2002);
    }

    void aCallOutlivesTheService()
    {
        m_framework->translateGate.close();
        const auto outcome = begin(m_service->translate(QStringLiteral("Hello"), en, zhHant));
        m_service.reset();
        m_framework->translateGate.open();
        QVERIFY(outcome->ended);
        QCOMPARE(outcome->value, QStringLiteral("en->zh-Hant:Hello"));
    }

private:
    QString translated(const QString &text, const QString &source)
    {
        return test::waitFor(m_service->translate(text, source, zhHant));
    }

    std::unique_ptr<ScriptedTranslationFramework> m_framework;
    std::unique_ptr<LumaphoneAppleTranslationService> m_service;
};

LUMAPHONE_TEST(LumaphoneAppleTranslationServiceTest)

} // namespace lumaphoneappletranslationservicetest

#include "LumaphoneAppleTranslationServiceTest.moc"
