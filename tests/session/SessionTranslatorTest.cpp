#include "session/SessionTranslator.h"

#include "glossary/LumaphoneGlossaryStore.h"
#include "storage/LumaphoneSettings.h"
#include "support/Coroutines.h"
#include "support/Gate.h"
#include "support/GlossaryTerms.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/ScriptedTranslationFramework.h"
#include "support/program/TestProgram.h"
#include "translation/LumaphoneAppleTranslationService.h"
#include "translation/OpenAICompatibleTranslationError.h"
#include "translation/OpenAICompatibleTranslationService.h"

#include <QScopeGuard>
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
    LumaphoneSettings settings {defaults, keychain};
    LumaphoneGlossaryStore glossary {folder.path(), {}};
    ScriptedTranslationFramework framework;
    LumaphoneAppleTranslationService apple {framework};
    OpenAICompatibleTranslationService custom;
    std::shared_ptr<MainQueue> mainQueue = MainQueue::create();
    SessionTranslator translator {settings, glossary, apple, custom, mainQueue};

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
        Gate answer;
        Translators session;
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QString());
        session.keychain.askTheUser = [&answer] {
            const auto afterwards = qScopeGuard([&answer] { answer.open(); });
            answer.wait();
        };
        const auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, std::stop_token());
        settle();
        QVERIFY(!translation.isReady());
        answer.open();
        QVERIFY(waitUntil([&] { return translation.isReady(); }));
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
        Translators session;
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QString());
        session.keychain.calls.clear();
        std::function<void()> saving;
        session.settings.saveProviderAPIKey(
            QStringLiteral("k"), [&saving](std::function<void()> work) { saving = std::move(work); });
        const auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, std::stop_token());
        settle();
        QVERIFY(!translation.isReady());
        QVERIFY(session.keychain.calls.isEmpty());
        saving();
        QVERIFY(waitUntil([&] { return translation.isReady(); }));
        QCOMPARE(session.keychain.calls,
            (QStringList {QStringLiteral("update"), QStringLiteral("add"), QStringLiteral("copyMatching")}));
    }

    void aKeyGoesToNoAddressItWasNotReadFor()
    {
        Gate asked;
        Gate answer;
        Translators session;
        session.settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
        session.settings.setProviderBaseURL(QStringLiteral("ftp://former/v1"));
        session.settings.saveProviderAPIKey(QStringLiteral("k"));
        session.keychain.calls.clear();
        session.keychain.askTheUser = [&] {
            asked.open();
            answer.wait();
        };
        auto translation
            = session.translator.translateText(QStringLiteral("hello"), english, std::stop_token());
        QVERIFY(waitUntil([&] { return !translation.isReady(); }));
        asked.wait();
        session.settings.setProviderBaseURL(QString());
        answer.open();
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
