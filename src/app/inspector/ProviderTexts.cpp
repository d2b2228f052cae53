#include "app/inspector/ProviderTexts.h"

namespace lumaphone::providertexts {

QString apiKeyStatusText(bool isKeyTyped, bool hasProviderAPIKey)
{
    if (isKeyTyped) {
        return hasProviderAPIKey ? QStringLiteral("將以新金鑰替換鑰匙圈中的舊金鑰")
                                 : QStringLiteral("儲存後會寫入 macOS 鑰匙圈");
    }
    return hasProviderAPIKey ? QStringLiteral("已儲存於 macOS 鑰匙圈，測試與翻譯會沿用它")
                             : QStringLiteral("尚未儲存 API 金鑰；Ollama 或本地端點可維持空白");
}

QString apiKeyPlaceholder(bool hasProviderAPIKey)
{
    return hasProviderAPIKey ? QStringLiteral("貼上新 API 金鑰（留空沿用已儲存金鑰）")
                             : QStringLiteral("貼上 API 金鑰（本地端點可留空）");
}

QString apiKeyCleared()
{
    return QStringLiteral("已清除鑰匙圈中的 API 金鑰。");
}

QString testing(bool isKeyTyped, bool hasProviderAPIKey)
{
    return !isKeyTyped && hasProviderAPIKey ? QStringLiteral("正在用鑰匙圈中已儲存的金鑰測試...")
                                            : QStringLiteral("正在向 API 提供者發送測試翻譯...");
}

QString testSucceeded(const QString &translation)
{
    return QStringLiteral("連線成功，測試譯文：") + translation;
}

QString summary(const QString &model, bool isConfigured, bool hasProviderAPIKey)
{
    if (!isConfigured) {
        return QStringLiteral(
            "設定 OpenAI-compatible Base URL 與 Model 後，可接手翻譯與文字整理；原文仍由 macOS 先辨識。");
    }
    return model + QStringLiteral(" 會處理已辨識出的文字，不會直接接收音訊。金鑰：")
        + (hasProviderAPIKey ? QStringLiteral("已儲存於鑰匙圈") : QStringLiteral("未設定 / 本地端點"));
}

} // namespace lumaphone::providertexts
