#include "app/inspector/ProviderTexts.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace providertextstest {

using namespace lumaphone;
using providertexts::SavedKey;

class ProviderTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void theKeyStatusSaysWhatWillHappen_data()
    {
        QTest::addColumn<bool>("typed");
        QTest::addColumn<SavedKey>("saved");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("testing");
        const QString withSaved = "正在用鑰匙圈中已儲存的金鑰測試...";
        const QString plain = "正在向 API 提供者發送測試翻譯...";
        const QString replaces = "將以新金鑰替換鑰匙圈中的舊金鑰";
        const QString adds = "儲存後會寫入 macOS 鑰匙圈";
        QTest::newRow("typed, saved") << true << SavedKey::ofThisServer << replaces << plain;
        QTest::newRow("typed, of another") << true << SavedKey::ofAnotherServer << replaces << plain;
        QTest::newRow("typed") << true << SavedKey::none << adds << plain;
        QTest::newRow("typed, unknown") << true << SavedKey::unknown << adds << plain;
        QTest::newRow("saved") << false << SavedKey::ofThisServer
                               << "已儲存於 macOS 鑰匙圈，測試與翻譯會沿用它" << withSaved;
        QTest::newRow("of another")
            << false << SavedKey::ofAnotherServer
            << "已儲存的金鑰只屬於 https://a.test，不會送到這個位址；這裡若需要金鑰，請重新貼上" << plain;
        QTest::newRow("neither") << false << SavedKey::none
                                 << "尚未儲存 API 金鑰；Ollama 或本地端點可維持空白" << plain;
        QTest::newRow("unknown") << false << SavedKey::unknown << "正在查看鑰匙圈裡有沒有 API 金鑰..."
                                 << plain;
    }

    void theKeyStatusSaysWhatWillHappen()
    {
        QFETCH(const bool, typed);
        QFETCH(const SavedKey, saved);
        QTEST(providertexts::apiKeyStatusText(typed, saved, "https://a.test"), "status");
        QTEST(providertexts::testing(typed, saved), "testing");
    }

    void aKeyOfNoServerHasNoName()
    {
        QCOMPARE(providertexts::apiKeyStatusText(false, SavedKey::ofAnotherServer, "-"),
            "已儲存的金鑰不屬於這個位址，不會送出；這裡若需要金鑰，請重新貼上");
    }

    void thePlaceholderSaysWhetherAKeyIsThere()
    {
        const QString fresh = "貼上 API 金鑰（本地端點可留空）";
        QCOMPARE(providertexts::apiKeyPlaceholder(SavedKey::ofThisServer),
            "貼上新 API 金鑰（留空沿用已儲存金鑰）");
        QCOMPARE(providertexts::apiKeyPlaceholder(SavedKey::ofAnotherServer), fresh);
        QCOMPARE(providertexts::apiKeyPlaceholder(SavedKey::none), fresh);
        QCOMPARE(providertexts::apiKeyPlaceholder(SavedKey::unknown), fresh);
        QCOMPARE(providertexts::apiKeyCleared(), "已清除鑰匙圈中的 API 金鑰。");
    }

    void theSummaryNamesAConfiguredModel()
    {
        const QString general
            = "設定 OpenAI-compatible Base URL 與 Model 後，可接手翻譯與文字整理；原文仍由 macOS 先辨識。";
        QCOMPARE(providertexts::summary("", false, SavedKey::ofThisServer), general);
        QCOMPARE(providertexts::summary("qwen", false, SavedKey::none), general);
        const QString configured = "qwen 會處理已辨識出的文字，不會直接接收音訊。金鑰：";
        QCOMPARE(providertexts::summary("qwen", true, SavedKey::none), configured + "未設定 / 本地端點");
        QCOMPARE(providertexts::summary("qwen", true, SavedKey::ofThisServer), configured + "已儲存於鑰匙圈");
        QCOMPARE(providertexts::summary("qwen", true, SavedKey::ofAnotherServer),
            configured + "屬於另一個位址，不會送出");
        QCOMPARE(providertexts::summary("qwen", true, SavedKey::unknown), configured + "正在查看鑰匙圈");
    }
};

LUMAPHONE_TEST(ProviderTextsTest)

} // namespace providertextstest

#include "ProviderTextsTest.moc"
