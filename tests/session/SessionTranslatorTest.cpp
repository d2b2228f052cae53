#include "session/SessionTranslator.h"

#include "glossary/LumaphoneGlossaryStore.h"
#include "storage/LumaphoneSettings.h"
#include "support/GlossaryTerms.h"
#include "support/HeldKeychainCalls.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/MisbehavingHttpServer.h"
#include "support/ScriptedTranslationFramework.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"
#include "translation/LumaphoneAppleTranslationService.h"
#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/OpenAICompatibleTranslationService.h"
#include "translation/TransportError.h"

#include <QTemporaryDir>
#include <QTest>

namespace sessiontranslatortest {

using namespace lumaphone;
using namespace lumaphone::test;
using enum AppleSystemSpeechLanguage;

namespace {

struct Translators
{
    QTemporaryDir folder;
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    KeychainRunner runKeychain = runAtOnce;
    LumaphoneSettings settings {defaults, keychain, runKeychain};
    LumaphoneGlossaryStore glossary {folder.path(), {}};
    ScriptedTranslationFramework framework;
    LumaphoneAppleTranslationService apple {framework};
    OpenAICompatibleTranslationService custom;
    std::shared_ptr<VirtualClock> clock = std::make_shared<VirtualClock>();
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    SessionTranslator translator {settings, glossary, apple, custom, clock, mainQueue};

    explicit Translators(KeychainRunner run = runAtOnce)
        : runKeychain(std::move(run))
    {
    }
    ~Translators() { clock->advance(std::chrono::hours(1)); }
    Translators(const Translators &) = delete;
    Translators &operator=(const Translators &) = delete;

    QString translate(const char *text, AppleSystemSpeechLanguage language)
    {
        return test::waitFor(translator.translateText(QString::fromUtf8(text), language, {}));
    }
};

} // namespace

class SessionTranslatorTest : public QObject
{
    Q_OBJECT

private slots:
    void theProvidersNameFollowsTheMode()
    {
        Translators session;
        QCOMPARE(session.translator.providerName(), QStringLiteral("Apple Translation"));
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        QCOMPARE(session.translator.providerName(), QStringLiteral("自定義 API"));
    }

    void mandarinReachesNoProvider()
    {
        Translators session;
        QCOMPARE(session.translate("你好", mandarin), QStringLiteral("你好"));
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        QCOMPARE(session.translate("你好", mandarin), QStringLiteral("你好"));
        QVERIFY(session.framework.translations.isEmpty());
    }

    void thePlatformTranslatesIntoTraditionalChinese()
    {
        Translators session;
        QCOMPARE(session.translate("hello", english), QStringLiteral("en->zh-Hant:hello"));
    }

    void preservedTermsAreProtectedOnTheDevice()
    {
        Translators session;
        session.glossary.add(preserved(QStringLiteral("Lumaphone")));
        session.glossary.add(translated(QStringLiteral("hello"), QStringLiteral("哈囉")));
        QCOMPARE(
            session.translate("hello Lumaphone", english), QStringLiteral("en->zh-Hant:hello Lumaphone"));
        QCOMPARE(session.framework.translations.size(), 1);
        QVERIFY(!session.framework.translations[0].text.contains(QStringLiteral("Lumaphone")));
        QVERIFY(session.framework.translations[0].text.startsWith(QStringLiteral("hello ")));
    }

    void theCustomProviderIsAskedInItsMode()
    {
        Translators session;
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QString());
        QVERIFY_THROWS_EXCEPTION(OpenAICompatibleTranslationError, session.translate("hello", english));
        QVERIFY(session.framework.translations.isEmpty());
    }

    void aKeychainThatAsksTheUserDoesNotHoldUpTheSession()
    {
        HeldKeychainCalls asked;
        Translators session(asked.runner());
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QString());
        session.settings.saveProviderAPIKey(QStringLiteral("k"));
        asked.answerAll();
        const auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, std::stop_token());
        session.clock->advance(std::chrono::hours(1));
        QVERIFY(!translation.isReady());
        asked.answerNext();
        QVERIFY(waitUntil([&] { return translation.isReady(); }));
    }

    void aKeychainThatDoesNotAnswerHoldsUpNoRequestThatMayNeedNoKey()
    {
        HeldKeychainCalls asked;
        Translators session(asked.runner());
        MisbehavingHttpServer server;
        server.thenAnswer(behaviour::complete("早安。"));
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(server.url("/v1"));
        auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, std::stop_token());
        session.clock->advance(std::chrono::seconds(2));
        QCOMPARE(test::waitFor(std::move(translation)), "早安。");
        QVERIFY(!server.requests().first().hasHeader("Authorization"));
    }

    void aKeyIsSentToTheServerThatItWasSavedForAndToNoOther()
    {
        Translators session;
        MisbehavingHttpServer first;
        MisbehavingHttpServer second;
        first.thenAnswer(behaviour::complete("一"));
        second.thenAnswer(behaviour::complete("二"));
        second.thenAnswer(behaviour::complete("三"));
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(first.url("/v1"));
        session.settings.saveProviderAPIKey(QStringLiteral("sk-1"));
        QCOMPARE(session.translate("one", english), "一");
        QCOMPARE(first.requests().first().header("Authorization"), QByteArray("Bearer sk-1"));

        session.settings.setProviderBaseURL(second.url("/v1"));
        QCOMPARE(session.translate("two", english), "二");
        QVERIFY(!second.requests().first().hasHeader("Authorization"));
        session.settings.saveProviderAPIKey(QStringLiteral("sk-2"));
        QCOMPARE(session.translate("three", english), "三");
        QCOMPARE(second.requests().last().header("Authorization"), QByteArray("Bearer sk-2"));
    }

    void aKeySavedBeforeKeysHadAnAddressBelongsToTheOneConfiguredThen()
    {
        Translators session;
        MisbehavingHttpServer former;
        MisbehavingHttpServer other;
        former.thenAnswer(behaviour::complete("一"));
        former.thenAnswer(behaviour::complete("三"));
        other.thenAnswer(behaviour::complete("二"));
        session.defaults.setObject("lumaphone.provider.baseURL", former.url("/v1"));
        session.keychain.items.push_back({{"dev.lumaphone.provider", "lumaphone.provider.apiKey"}, "sk-old"});
        LumaphoneSettings settings(session.defaults, session.keychain);
        settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        SessionTranslator translator(
            settings, session.glossary, session.apple, session.custom, session.clock, session.mainQueue);
        const auto translate = [&translator](const char *text) {
            return test::waitFor(translator.translateText(text, english, {}));
        };
        QCOMPARE(translate("one"), "一");
        settings.setProviderBaseURL(other.url("/v1"));
        QCOMPARE(translate("two"), "二");
        settings.setProviderBaseURL(former.url("/v2"));
        QCOMPARE(translate("three"), "三");
        QCOMPARE(former.requests().at(0).header("Authorization"), QByteArray("Bearer sk-old"));
        QVERIFY(!other.requests().first().hasHeader("Authorization"));
        QCOMPARE(former.requests().at(1).header("Authorization"), QByteArray("Bearer sk-old"));
    }

    void aServerThatWantsTheKeyOfAnotherIsSaidToNeedOneOfItsOwn()
    {
        Translators session;
        MisbehavingHttpServer server;
        server.thenAnswer(behaviour::respond(401, "no key"));
        server.thenAnswer(behaviour::respond(500, "broken"));
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.saveProviderAPIKey(QStringLiteral("k"));
        session.settings.setProviderBaseURL(server.url("/v1"));
        const auto failure = [&session] {
            const auto error = thrownBy<LocalizedError>([&] { session.translate("hello", english); });
            return error ? error->errorDescription() : QString();
        };
        const QString address = server.url("");
        QCOMPARE(failure(),
            address
                + " 需要 API 金鑰，但已儲存的金鑰屬於另一個位址，沒有送出。請在 API "
                  "提供者的設定重新輸入金鑰並儲存。");
        QCOMPARE(failure(), "自定義 API 回傳 HTTP 500：broken");
    }

    void aRefusedKeyIsNotAskedForAgainAndNothingIsSentWithoutIt()
    {
        Translators session;
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QString());
        session.settings.saveProviderAPIKey(QStringLiteral("k"));
        session.keychain.failure = KeychainStatus::other;
        session.keychain.calls.clear();
        QVERIFY_THROWS_EXCEPTION(PlatformError, session.translate("hello", english));
        QVERIFY_THROWS_EXCEPTION(TranslationWithheld, session.translate("world", english));
        QVERIFY_THROWS_EXCEPTION(TranslationWithheld, session.translate("hello", english));
        QCOMPARE(session.keychain.calls.size(), 1);
        session.keychain.failure.reset();
        session.translator.askAgain();
        QVERIFY_THROWS_EXCEPTION(OpenAICompatibleTranslationError, session.translate("hello", english));
        QCOMPARE(session.keychain.calls.size(), 2);
    }

    void aKeyThatIsBeingSavedIsWaitedFor()
    {
        HeldKeychainCalls asked;
        Translators session(asked.runner());
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QString());
        asked.answerAll();
        session.keychain.calls.clear();
        session.settings.saveProviderAPIKey(QStringLiteral("k"));
        const auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, std::stop_token());
        settle();
        QVERIFY(!translation.isReady());
        QCOMPARE(asked.count(), std::size_t {1});
        asked.answerAll();
        QVERIFY(waitUntil([&] { return translation.isReady(); }));
        QCOMPARE(session.keychain.calls,
            (QStringList {QStringLiteral("update"), QStringLiteral("add"), QStringLiteral("copyMatching")}));
    }

    void whoStopsWhileAKeyIsBeingSavedWaitsNoLonger()
    {
        HeldKeychainCalls asked;
        Translators session(asked.runner());
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.saveProviderAPIKey(QStringLiteral("k"));
        std::stop_source stop;
        auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, stop.get_token());
        settle();
        QVERIFY(!translation.isReady());
        stop.request_stop();
        QVERIFY_THROWS_EXCEPTION(TransportError, test::waitFor(std::move(translation)));
    }

    void aKeyGoesToNoAddressItWasNotReadFor()
    {
        HeldKeychainCalls asked;
        Translators session(asked.runner());
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QStringLiteral("ftp://former/v1"));
        session.settings.saveProviderAPIKey(QStringLiteral("k"));
        asked.answerAll();
        session.keychain.calls.clear();
        auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, std::stop_token());
        QCOMPARE(asked.count(), std::size_t {1});
        session.settings.setProviderBaseURL(QString());
        asked.answerAll();
        // Of the two addresses only the newer one has this fault.
        QVERIFY_THROWS_EXCEPTION(OpenAICompatibleTranslationError, test::waitFor(std::move(translation)));
        QCOMPARE(session.keychain.calls.size(), 2);
    }

    void failuresReachTheCaller()
    {
        Translators session;
        session.framework.translateError
            = std::make_exception_ptr(TranslationFrameworkError(QStringLiteral("壞了")));
        QVERIFY_THROWS_EXCEPTION(LocalizedError, session.translate("hello", english));
    }

    void warmingPreparesThePlatformOnly()
    {
        Translators session;
        session.framework.isReady = false;
        session.translator.warm(korean);
        settle();
        QCOMPARE(session.framework.preparations, QList<QString> {QStringLiteral("ko->zh-Hant")});
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.translator.warm(english);
        settle();
        QCOMPARE(session.framework.preparations.size(), 1);
    }

    void aWarmUpThatFailsIsSilent()
    {
        Translators session;
        session.framework.isReady = false;
        session.framework.prepareError
            = std::make_exception_ptr(TranslationFrameworkError(QStringLiteral("壞了")));
        session.translator.warm(korean);
        settle();
        QCOMPARE(session.framework.preparations.size(), 1);
    }
};

LUMAPHONE_TEST(SessionTranslatorTest)

} // namespace sessiontranslatortest

#include "SessionTranslatorTest.moc"
