#include "app/inspector/ProviderTexts.h"

#include "storage/ProviderKeyStore.h"

namespace lumaphone::providertexts {

namespace {

QString statusOfSaved(SavedKey saved, const QString &address)
{
    switch (saved) {
    case SavedKey::unknown:
        return QStringLiteral("正在查看鑰匙圈裡有沒有 API 金鑰...");
    case SavedKey::none:
        return QStringLiteral("尚未儲存 API 金鑰；Ollama 或本地端點可維持空白");
    case SavedKey::ofThisServer:
        return QStringLiteral("已儲存於 macOS 鑰匙圈，測試與翻譯會沿用它");
    case SavedKey::ofAnotherServer:
        return address == noKeychainAddress
            ? QStringLiteral("已儲存的金鑰不屬於這個位址，不會送出；這裡若需要金鑰，請重新貼上")
            : QStringLiteral("已儲存的金鑰只屬於 %1，不會送到這個位址；這裡若需要金鑰，請重新貼上")
                  .arg(address);
    }
    Q_UNREACHABLE();
}

QString stateOfSaved(SavedKey saved)
{
    switch (saved) {
    case SavedKey::unknown:
        return QStringLiteral("正在查看鑰匙圈");
    case SavedKey::none:
        return QStringLiteral("未設定 / 本地端點");
    case SavedKey::ofThisServer:
        return QStringLiteral("已儲存於鑰匙圈");
    case SavedKey::ofAnotherServer:
        return QStringLiteral("屬於另一個位址，不會送出");
    }
    Q_UNREACHABLE();
}

} // namespace

SavedKey savedKey(const ProviderKeyStore &store, const QString &address)
{
    switch (store.presence()) {
    case ProviderKeyPresence::unknown:
        return SavedKey::unknown;
    case ProviderKeyPresence::absent:
        return SavedKey::none;
    case ProviderKeyPresence::present:
        return store.address() == address ? SavedKey::ofThisServer : SavedKey::ofAnotherServer;
    }
    Q_UNREACHABLE();
}

QString apiKeyStatusText(bool isKeyTyped, SavedKey saved, const QString &addressOfSaved)
{
    if (!isKeyTyped) {
        return statusOfSaved(saved, addressOfSaved);
    }
    const bool isThere = saved == SavedKey::ofThisServer || saved == SavedKey::ofAnotherServer;
    return isThere ? QStringLiteral("將以新金鑰替換鑰匙圈中的舊金鑰")
                   : QStringLiteral("儲存後會寫入 macOS 鑰匙圈");
}

QString apiKeyPlaceholder(SavedKey saved)
{
    return saved == SavedKey::ofThisServer ? QStringLiteral("貼上新 API 金鑰（留空沿用已儲存金鑰）")
                                           : QStringLiteral("貼上 API 金鑰（本地端點可留空）");
}

QString apiKeyCleared()
{
    return QStringLiteral("已清除鑰匙圈中的 API 金鑰。");
}

QString testing(bool isKeyTyped, SavedKey saved)
{
    return !isKeyTyped && saved == SavedKey::ofThisServer
        ? QStringLiteral("正在用鑰匙圈中已儲存的金鑰測試...")
        : QStringLiteral("正在向 API 提供者發送測試翻譯...");
}

QString testSucceeded(const QString &translation)
{
    return QStringLiteral("連線成功，測試譯文：") + translation;
}

QString summary(const QString &model, bool isConfigured, SavedKey saved)
{
    if (!isConfigured) {
        return QStringLiteral(
            "設定 OpenAI-compatible Base URL 與 Model 後，可接手翻譯與文字整理；原文仍由 macOS 先辨識。");
    }
    return model + QStringLiteral(" 會處理已辨識出的文字，不會直接接收音訊。金鑰：") + stateOfSaved(saved);
}

} // namespace lumaphone::providertexts
