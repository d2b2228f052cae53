#include "app/inspector/ProviderTexts.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace providertextstest {

using namespace lumaphone;

class ProviderTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void theKeyStatusSaysWhatWillHappen_data()
    {
        QTest::addColumn<bool>("typed");
        QTest::addColumn<bool>("saved");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("testing");
        const QString withSaved = "正在用鑰匙圈中已儲存的金鑰測試...";
        const QString plain = "正在向 API 提供者發送測試翻譯...";
        QTest::newRow("typed, saved") << true << true << "將以新金鑰替換鑰匙圈中的舊金鑰" << plain;
        QTest::newRow("typed") << true << false << "儲存後會寫入 macOS 鑰匙圈" << plain;
        QTest::newRow("saved") << false << true << "已儲存於 macOS 鑰匙圈，測試與翻譯會沿用它" << withSaved;
        QTest::newRow("neither") << false << false << "尚未儲存 API 金鑰；Ollama 或本地端點可維持空白"
                                 << plain;
    }

    void theKeyStatusSaysWhatWillHappen()
    {
        QFETCH(const bool, typed);
        QFETCH(const bool, saved);
        QTEST(providertexts::apiKeyStatusText(typed, saved), "status");
        QTEST(providertexts::testing(typed, saved), "testing");
    }

    void thePlaceholderSaysWhetherAKeyIsThere()
    {
        QCOMPARE(providertexts::apiKeyPlaceholder(true), "貼上新 API 金鑰（留空沿用已儲存金鑰）");
        QCOMPARE(providertexts::apiKeyPlaceholder(false), "貼上 API 金鑰（本地端點可留空）");
        QCOMPARE(providertexts::apiKeyCleared(), "已清除鑰匙圈中的 API 金鑰。");
    }

    void theSummaryNamesAConfiguredModel()
    {
        const QString general
            = "設定 OpenAI-compatible Base URL 與 Model 後，可接手翻譯與文字整理；原文仍由 macOS 先辨識。";
        QCOMPARE(providertexts::summary("", false, true), general);
        QCOMPARE(providertexts::summary("qwen", false, false), general);
        QCOMPARE(providertexts::summary("qwen", true, false),
            "qwen 會處理已辨識出的文字，不會直接接收音訊。金鑰：未設定 / 本地端點");
        QCOMPARE(providertexts::summary("qwen", true, true),
            "qwen 會處理已辨識出的文字，不會直接接收音訊。金鑰：已儲存於鑰匙圈");
    }
};

LUMAPHONE_TEST(ProviderTextsTest)

} // namespace providertextstest

#include "ProviderTextsTest.moc"
