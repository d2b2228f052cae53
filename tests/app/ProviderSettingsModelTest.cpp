#include "app/inspector/ProviderSettingsModel.h"

#include "storage/LumaphoneSettings.h"
#include "support/HeldKeychainCalls.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/MisbehavingHttpServer.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

namespace providersettingsmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

struct Sheet
{
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    KeychainRunner runKeychain;
    LumaphoneSettings settings {defaults, keychain, runKeychain};
    std::shared_ptr<VirtualClock> clock = std::make_shared<VirtualClock>();
    ProviderSettingsModel model {settings, clock, MainQueue::create()};
    MisbehavingHttpServer server;

    explicit Sheet(KeychainRunner run = runAtOnce)
        : runKeychain(std::move(run))
    {
    }
    ~Sheet() { clock->advance(std::chrono::hours(1)); }
    Sheet(const Sheet &) = delete;
    Sheet &operator=(const Sheet &) = delete;

    /// Runs a test against the server and returns what it came to.
    ProviderSettingsModel::ProviderTestStatus tested()
    {
        model.setBaseURL(server.url("/v1"));
        model.testProvider();
        if (!waitUntil([this] { return !model.isTestingProvider(); })) {
            return ProviderSettingsModel::testing;
        }
        return model.testStatus();
    }
};

} // namespace

class ProviderSettingsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsKeptBeforeItIsSaved()
    {
        Sheet sheet;
        QCOMPARE(sheet.model.baseURL(), "https://api.openai.com/v1");
        QCOMPARE(sheet.model.baseURLPlaceholder(), "https://api.openai.com/v1");
        sheet.model.setBaseURL(" http://localhost/v1");
        sheet.model.setModel("qwen");
        sheet.model.setApiKey("sk-1");
        sheet.model.close();
        QCOMPARE(sheet.settings.providerModel(), "gpt-4o-mini");
        QCOMPARE(sheet.model.model(), "gpt-4o-mini");
        QVERIFY(sheet.model.apiKey().isEmpty());
        QVERIFY(sheet.keychain.items.empty());

        sheet.model.setBaseURL(" http://localhost/v1");
        sheet.model.setModel("qwen");
        sheet.model.setApiKey(" sk-1 ");
        QCOMPARE(sheet.model.apiKeyStatusText(), "儲存後會寫入 macOS 鑰匙圈");
        sheet.model.save();
        QCOMPARE(sheet.settings.providerBaseURL(), " http://localhost/v1");
        QCOMPARE(sheet.settings.providerModel(), "qwen");
        QVERIFY(sheet.model.apiKey().isEmpty());
        QCOMPARE(sheet.model.apiKeyStatusText(), "已儲存於 macOS 鑰匙圈，測試與翻譯會沿用它");
        QCOMPARE(sheet.keychain.items.at(0).data, QByteArray("sk-1"));
    }

    void savingWithoutAKeyKeepsTheOldOne()
    {
        Sheet sheet;
        sheet.settings.saveProviderAPIKey("sk-old");
        sheet.model.open();
        QVERIFY(sheet.model.apiKey().isEmpty());
        sheet.model.setApiKey("  ");
        sheet.model.save();
        QVERIFY(sheet.settings.hasProviderAPIKey());
        QCOMPARE(sheet.keychain.items.at(0).data, QByteArray("sk-old"));
    }

    void theKeyCanBeCleared()
    {
        Sheet sheet;
        sheet.settings.saveProviderAPIKey("sk-old");
        sheet.model.clearKey();
        QVERIFY(!sheet.settings.hasProviderAPIKey());
        QCOMPARE(sheet.model.testStatus(), ProviderSettingsModel::success);
        QCOMPARE(sheet.model.testStatusText(), "已清除鑰匙圈中的 API 金鑰。");
        QVERIFY(sheet.keychain.items.empty());
    }

    void aKeychainThatAsksTheUserDoesNotHoldUpTheSheet()
    {
        HeldKeychainCalls asked;
        Sheet sheet(asked.runner());
        sheet.server.thenAnswer(behaviour::complete("早安。"));
        sheet.model.setBaseURL(sheet.server.url("/v1"));
        sheet.model.setApiKey("sk-new");
        sheet.model.save();
        QVERIFY(sheet.settings.hasProviderAPIKey());
        QVERIFY(sheet.model.apiKey().isEmpty());
        sheet.model.testProvider();
        sheet.clock->advance(std::chrono::hours(1));
        QVERIFY(sheet.model.isTestingProvider());
        asked.answerAll();
        QVERIFY(waitUntil([&] { return sheet.model.testStatus() == ProviderSettingsModel::success; }));
        // What is asked of the keychain is done in the order of asking.
        QCOMPARE(sheet.server.requests().first().header("Authorization"), QByteArray("Bearer sk-new"));
        QCOMPARE(sheet.keychain.items.at(0).data, QByteArray("sk-new"));
    }

    void whileTheKeychainHasNotAnsweredTheSheetSaysSo()
    {
        HeldKeychainCalls asked;
        Sheet sheet(asked.runner());
        sheet.model.open();
        QCOMPARE(sheet.model.apiKeyStatusText(), "正在查看鑰匙圈裡有沒有 API 金鑰...");
        QCOMPARE(sheet.model.apiKeyPlaceholder(), "貼上 API 金鑰（本地端點可留空）");
        QVERIFY(sheet.model.mayClearKey());
        QSignalSpy told(&sheet.model, &ProviderSettingsModel::apiKeyStatusTextChanged);
        asked.answerNext();
        QCOMPARE(told.size(), 1);
        QCOMPARE(sheet.model.apiKeyStatusText(), "尚未儲存 API 金鑰；Ollama 或本地端點可維持空白");
        QVERIFY(!sheet.model.mayClearKey());
    }

    void aTestWaitsForAMuteKeychainNoLongerThanTwoSeconds()
    {
        HeldKeychainCalls asked;
        Sheet sheet(asked.runner());
        sheet.server.thenAnswer(behaviour::complete("早安。"));
        sheet.model.setBaseURL(sheet.server.url("/v1"));
        sheet.model.testProvider();
        sheet.clock->advance(std::chrono::seconds(2));
        QVERIFY(waitUntil([&] { return sheet.model.testStatus() == ProviderSettingsModel::success; }));
        QVERIFY(!sheet.server.requests().first().hasHeader("Authorization"));
    }

    void aKeyThatIsNotTypedAgainStaysWithItsServer()
    {
        Sheet sheet;
        sheet.settings.saveProviderAPIKey("sk-saved");
        sheet.server.thenAnswer(behaviour::complete("早安。"));
        sheet.model.open();
        QCOMPARE(sheet.model.apiKeyStatusText(), "已儲存於 macOS 鑰匙圈，測試與翻譯會沿用它");
        QSignalSpy told(&sheet.model, &ProviderSettingsModel::apiKeyStatusTextChanged);
        sheet.model.setBaseURL(sheet.server.url("/v1"));
        QCOMPARE(told.size(), 1);
        const QString withheld
            = "已儲存的金鑰只屬於 https://api.openai.com，不會送到這個位址；這裡若需要金鑰，請重新貼上";
        QCOMPARE(sheet.model.apiKeyStatusText(), withheld);
        QCOMPARE(sheet.model.apiKeyPlaceholder(), "貼上 API 金鑰（本地端點可留空）");
        sheet.model.testProvider();
        QCOMPARE(sheet.model.testStatusText(), "正在向 API 提供者發送測試翻譯...");
        QVERIFY(waitUntil([&] { return sheet.model.testStatus() == ProviderSettingsModel::success; }));
        QVERIFY(!sheet.server.requests().first().hasHeader("Authorization"));
        sheet.model.save();
        QCOMPARE(sheet.model.apiKeyStatusText(), withheld);
        QCOMPARE(sheet.settings.providerConfiguration().apiKey, QString());
        // It is still there for the server that it was saved for.
        sheet.model.setBaseURL("https://api.openai.com/v1/chat/completions");
        QCOMPARE(sheet.model.apiKeyStatusText(), "已儲存於 macOS 鑰匙圈，測試與翻譯會沿用它");
        sheet.model.save();
        QCOMPARE(sheet.settings.providerConfiguration().apiKey, "sk-saved");
    }

    void aTestSendsTheFieldsAsTheyAre()
    {
        Sheet sheet;
        sheet.server.thenAnswer(behaviour::complete("早安。我們開始吧？"));
        sheet.model.setModel(" qwen ");
        sheet.model.setApiKey("sk-typed");
        QSignalSpy status(&sheet.model, &ProviderSettingsModel::testStatusChanged);
        QCOMPARE(sheet.tested(), ProviderSettingsModel::success);
        QVERIFY(sheet.model.testStatusText().contains("早安。我們開始吧？"));
        QCOMPARE(status.size(), 2); // under way, and done
        QCOMPARE(sheet.server.requests().first().header("Authorization"), QByteArray("Bearer sk-typed"));
        const QByteArray &body = sheet.server.requests().first().body;
        QVERIFY(body.contains("\"model\":\"qwen\""));
        QVERIFY2(body.contains("{\"role\":\"user\",\"content\":\"Lumaphone is ready.\"}"), body);
        QVERIFY2(
            body.contains("必需術語：\\n翻譯時必須使用以下術語。若 mode 是 preserve，請保留 source 原詞；"
                          "若 mode 是 translate，請固定使用 target。\\n\\n"
                          "- source: Lumaphone\\n  target: Lumaphone\\n  mode: preserve"),
            body);
        QCOMPARE(sheet.settings.providerModel(), "gpt-4o-mini");
        QVERIFY(sheet.keychain.items.empty());
    }

    void aTestWithoutATypedKeyUsesTheSavedOne()
    {
        Sheet sheet;
        sheet.settings.setProviderBaseURL(sheet.server.url("/v1"));
        sheet.settings.saveProviderAPIKey("sk-saved");
        sheet.server.thenAnswer(behaviour::complete("早安。"));
        sheet.model.open();
        sheet.model.testProvider();
        QCOMPARE(sheet.model.testStatusText(), "正在用鑰匙圈中已儲存的金鑰測試...");
        QVERIFY(waitUntil([&] { return sheet.model.testStatus() == ProviderSettingsModel::success; }));
        QCOMPARE(sheet.server.requests().first().header("Authorization"), QByteArray("Bearer sk-saved"));
    }

    void aTestThatFailsShowsWhy()
    {
        Sheet sheet;
        sheet.server.thenAnswer(behaviour::respond(401, "no such key"));
        QCOMPARE(sheet.tested(), ProviderSettingsModel::failure);
        QVERIFY2(sheet.model.testStatusText().contains("401"), qPrintable(sheet.model.testStatusText()));
        // A field that changes makes the result meaningless.
        sheet.model.setModel("other");
        QCOMPARE(sheet.model.testStatus(), ProviderSettingsModel::none);
    }

    void aKeyThatIsNoLongerValidFailsThoughItWorkedBefore()
    {
        Sheet sheet;
        sheet.server.thenAnswer(behaviour::complete("Lumaphone 準備好了。"));
        sheet.server.thenAnswer(behaviour::respond(401, "revoked"));
        QCOMPARE(sheet.tested(), ProviderSettingsModel::success);
        QCOMPARE(sheet.tested(), ProviderSettingsModel::failure);
        QCOMPARE(sheet.server.requests().size(), 2);
    }

    void clearingTheKeyGivesTheTestUp()
    {
        Sheet sheet;
        sheet.server.thenAnswer(behaviour::stayMute());
        sheet.model.setBaseURL(sheet.server.url("/v1"));
        sheet.model.setApiKey("sk-1");
        sheet.model.testProvider();
        QVERIFY(waitUntil([&] { return sheet.server.openConnections() == 1; }));
        sheet.model.clearKey();
        QCOMPARE(sheet.model.testStatus(), ProviderSettingsModel::success);
        QVERIFY(waitUntil([&] { return sheet.server.openConnections() == 0; }));
        // What the given-up test has come to is not shown.
        QCOMPARE(sheet.model.testStatus(), ProviderSettingsModel::success);
    }

    void closingTheSheetGivesTheTestUp()
    {
        Sheet sheet;
        sheet.server.thenAnswer(behaviour::stayMute());
        sheet.model.setBaseURL(sheet.server.url("/v1"));
        sheet.model.setApiKey(
            "sk-1"); // with a key at hand no thread asks the keychain, which ends with this test
        sheet.model.testProvider();
        QVERIFY(waitUntil([&] { return sheet.server.openConnections() == 1; }));
        sheet.model.close();
        QVERIFY(waitUntil([&] { return sheet.server.openConnections() == 0; }));
        // What the given-up test has come to is not shown.
        QCOMPARE(sheet.model.testStatus(), ProviderSettingsModel::none);
    }
};

LUMAPHONE_TEST(ProviderSettingsModelTest)

} // namespace providersettingsmodeltest

#include "ProviderSettingsModelTest.moc"
