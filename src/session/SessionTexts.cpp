#include "session/SessionTexts.h"

#include "language/TranslationLanguages.h"

namespace lumaphone::texts {

using enum LumaphoneAudioInputSource;

namespace {

bool mentions(const QString &description, const char16_t *phrase)
{
    return description.contains(QStringView(phrase), Qt::CaseInsensitive);
}

} // namespace

QString sourceName(LumaphoneAudioInputSource source)
{
    return source == microphone ? QStringLiteral("麥克風") : QStringLiteral("系統音訊");
}

QString sourceHint(LumaphoneAudioInputSource source)
{
    return source == microphone ? QStringLiteral("請對著目前選用的麥克風說話。")
                                : QStringLiteral("請播放 YouTube、瀏覽器、播放器或會議 App 的聲音。");
}

QString initialStatus()
{
    return QStringLiteral("按下開始後，Lumaphone 會即時產生字幕。");
}

QString translationHint()
{
    return QStringLiteral("開始後，Apple Translation 會把辨識結果翻成台灣繁體中文。");
}

QString sampleHint(LumaphoneAudioInputSource source)
{
    return sourceHint(source) + QStringLiteral("收到音訊 sample buffer 後會更新。");
}

QString requestingAccess(LumaphoneAudioInputSource source)
{
    return source == microphone ? QStringLiteral("正在向 macOS 請求麥克風權限...")
                                : QStringLiteral("正在向 macOS 請求螢幕與系統錄音權限...");
}

QString accessGranted(LumaphoneAudioInputSource source)
{
    return source == microphone ? QStringLiteral("麥克風權限已允許，正在準備即時字幕...")
                                : QStringLiteral("系統音訊權限已允許，正在準備即時字幕...");
}

QString accessNotGranted(LumaphoneAudioInputSource source)
{
    return source == microphone
        ? QStringLiteral("Lumaphone 已送出麥克風權限請求。請在系統設定允許麥克風後，重新開始。")
        : QStringLiteral("Lumaphone 已送出權限請求。請在系統設定允許螢幕與系統錄音後，重新開始。");
}

QString preparing(LumaphoneAudioInputSource source)
{
    return source == microphone ? QStringLiteral("正在準備麥克風輸入...")
                                : QStringLiteral("正在取得可擷取的螢幕與應用程式...");
}

QString startStatus(LumaphoneAudioInputSource source, LumaphoneProcessingMode mode)
{
    return QStringLiteral("正在擷取") + sourceName(source)
        + (mode == LumaphoneProcessingMode::customAPI
                ? QStringLiteral("，使用 Apple Speech 轉成原文，再交給自定義 API 翻成繁中字幕。")
                : QStringLiteral("，並交給 Apple Speech 轉成原文。"));
}

QString awaitingSpeech(LumaphoneAudioInputSource source)
{
    return QStringLiteral("已開始等待 Apple Speech 原文。") + sourceHint(source);
}

QString panelStarted(LumaphoneAudioInputSource source)
{
    return sourceName(source) + QStringLiteral(" + Apple Speech 已開始");
}

QString panelStartedDetail(LumaphoneAudioInputSource source, AppleSystemSpeechLanguage language)
{
    if (language == AppleSystemSpeechLanguage::automatic) {
        return QStringLiteral("正在自動辨識語言。");
    }
    return sourceHint(source) + QStringLiteral("目標原文：") + displayName(language) + QStringLiteral("。");
}

QString unsavedTranscript()
{
    return QStringLiteral("上一段 Transcript 尚未儲存。請先儲存或清除，再開始新的 Session。");
}

QString panelUnsavedTranscript()
{
    return QStringLiteral("避免新的 Session 覆蓋尚未儲存的內容");
}

QString providerNotReady()
{
    return QStringLiteral(
        "自定義 API 尚未啟用文字翻譯 capability。請先設定 Base URL 與 Model，或切回 Apple Mode。");
}

QString panelProvider(LumaphoneProcessingMode mode)
{
    return mode == LumaphoneProcessingMode::customAPI ? QStringLiteral("自定義 API")
                                                      : QStringLiteral("Apple Mode");
}

QString panelStartFailed()
{
    return QStringLiteral("請檢查系統音訊與語音辨識權限");
}

QString panelPipelineFailed()
{
    return QStringLiteral("Apple Speech 或系統音訊錯誤");
}

QString systemAudioErrorMessage(const QString &description, LumaphoneAudioInputSource source)
{
    if (mentions(description, u"denied") || mentions(description, u"permission")
        || mentions(description, u"TCC")) {
        return source == microphone
            ? QStringLiteral("macOS 拒絕麥克風權限。請到系統設定 > 隱私權與安全性 > 麥克風，"
                             "允許 Lumaphone 後重新開啟 App。")
            : QStringLiteral("macOS 拒絕系統音訊/螢幕擷取權限。請到系統設定 > 隱私權與安全性 > "
                             "螢幕與系統音訊錄製，允許 Lumaphone 後重新開啟 App。");
    }
    if (mentions(description, u"Siri and Dictation are disabled")) {
        return QStringLiteral(
            "macOS 目前停用 Siri 與聽寫。請到系統設定開啟 Siri 或鍵盤聽寫後，再重新開始 Lumaphone。");
    }
    return QStringLiteral("系統音訊擷取錯誤：") + description;
}

QString samplesReceived(qint64 count, LumaphoneAudioInputSource source)
{
    return QStringLiteral("已收到 ") + QString::number(count) + QStringLiteral(" 個") + sourceName(source)
        + QStringLiteral(" sample buffer，正在等待 Apple Speech 辨識出文字。");
}

QString recognized(bool isFinal)
{
    return isFinal ? QStringLiteral("Apple Speech 收到完整句子，正在翻成台灣繁中。")
                   : QStringLiteral("Apple Speech 即時轉錄中，正在更新台灣繁中翻譯。");
}

QString recognizedOnly(bool isFinal)
{
    return isFinal ? QStringLiteral("Apple Speech 收到完整句子。")
                   : QStringLiteral("Apple Speech 即時轉錄中。");
}

QString fellBehind()
{
    return QStringLiteral("這台電腦暫時來不及辨識，字幕會晚幾秒出現。");
}

QString caughtUp()
{
    return QStringLiteral("字幕已經跟上聲音。");
}

QString outputAwaited(const QString &output)
{
    return QStringLiteral("聲音輸出「%1」中斷了，正在等它回來；已有的字幕都還在。").arg(output);
}

QString outputReturned()
{
    return QStringLiteral("聲音回來了，字幕繼續。");
}

QString translated(AppleSystemSpeechLanguage language, const QString &provider)
{
    return needsTranslation(language) ? provider + QStringLiteral(" 已完成字幕。")
                                      : QStringLiteral("原文已是中文，直接顯示。");
}

QString translationFailed(const QString &provider, const QString &description)
{
    return panelTranslationFailed(provider) + QStringLiteral("：") + description;
}

QString translationFailedStatus(const QString &provider, const QString &description)
{
    return provider + QStringLiteral(" 錯誤：") + description;
}

QString panelTranslationFailed(const QString &provider)
{
    return provider + QStringLiteral(" 無法完成");
}

QString translationPaused()
{
    return QStringLiteral("翻譯服務連續幾次沒有回應，先不再補翻。聽到新的句子會再試，也可以按「再試一次」。");
}

QString stoppedAndSaved(const std::optional<QString> &title)
{
    return QStringLiteral("Session 已停止，Transcript 已儲存：") + title.value_or(QStringLiteral("已保存"));
}

QString stoppedWithLines()
{
    return QStringLiteral("Session 已停止，剛剛的字幕已保留。可以儲存 Transcript，或複製全文後再清除。");
}

QString stoppedWithoutLines()
{
    return QStringLiteral("系統音訊即時翻譯已停止，這次 Session 尚未產生字幕。");
}

QString cleared(bool isRunning)
{
    return isRunning ? QStringLiteral("字幕已清除，正在等待新的語音。") : QStringLiteral("字幕已清除。");
}

QString saved(const QString &title)
{
    return QStringLiteral("Transcript 已儲存：") + title;
}

QString noOutput()
{
    return QStringLiteral("這台電腦沒有可以聽的音訊輸出。請接上喇叭或耳機，或在音效設定裡選一個輸出裝置。");
}

QString draftRestored()
{
    return QStringLiteral("已恢復上一段尚未儲存的字幕。");
}

QString draftRestoredStatus()
{
    return QStringLiteral("已恢復上一段尚未儲存的 Transcript，請儲存或清除後再開始新的 Session。");
}

} // namespace lumaphone::texts
