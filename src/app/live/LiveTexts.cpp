#include "app/live/LiveTexts.h"

#include "session/SessionTexts.h"

#include <algorithm>

namespace lumaphone::livetexts {

QString sourceText(
    const LumaphoneCaptionLine *line, const SessionFacts &facts, LumaphoneAudioInputSource source)
{
    if (line) {
        return line->sourceText;
    }
    if (facts.isRunning) {
        return texts::sourceHint(source);
    }
    return QStringLiteral("按開始後，Lumaphone 會開始聽%1，把聽到的話寫在這裡。").arg(title(source));
}

QString translationText(
    const LumaphoneCaptionLine *line, TranslationState translation, const SessionFacts &facts)
{
    if (!line) {
        return facts.isRunning ? QStringLiteral("字幕會在這裡跟上。") : QStringLiteral("準備好就開始。");
    }
    switch (translation) {
    case TranslationState::pending:
        return QStringLiteral("正在整理成台灣繁中...");
    case TranslationState::failed:
        return untranslated();
    case TranslationState::unwanted:
    case TranslationState::arrived:
        return line->translatedText;
    }
    Q_UNREACHABLE();
}

QString untranslated()
{
    return QStringLiteral("這一句沒有翻譯。");
}

QString languageStatusText(
    AppleSystemSpeechLanguage chosen, const std::optional<AppleSystemSpeechLanguage> &detected)
{
    return chosen == AppleSystemSpeechLanguage::automatic && detected
        ? QStringLiteral("自動：") + displayName(*detected)
        : displayName(chosen);
}

QString stageStateText(const SessionFacts &facts)
{
    switch (sessionPhase(facts)) {
    case SessionPhase::idle:
        return QStringLiteral("尚未開始");
    case SessionPhase::starting:
        return QStringLiteral("正在準備");
    case SessionPhase::running:
        return QStringLiteral("正在聽");
    case SessionPhase::runningWithoutSound:
        return QStringLiteral("沒有聲音");
    case SessionPhase::unsaved:
        return QStringLiteral("已停止，尚未儲存");
    case SessionPhase::saved:
        return QStringLiteral("已儲存");
    case SessionPhase::restored:
        return QStringLiteral("已恢復，尚未儲存");
    case SessionPhase::failed:
        return hasUnsavedTranscript(facts) ? QStringLiteral("已中斷，尚未儲存") : QStringLiteral("無法繼續");
    }
    Q_UNREACHABLE();
}

QString announcedState(const SessionFacts &facts, const QString &failure)
{
    switch (sessionPhase(facts)) {
    case SessionPhase::running:
    case SessionPhase::runningWithoutSound:
        return QStringLiteral("正在聽");
    case SessionPhase::unsaved:
        return stageStateText(facts);
    case SessionPhase::failed:
        return failure;
    case SessionPhase::idle:
    case SessionPhase::starting:
    case SessionPhase::restored:
    case SessionPhase::saved: // the saving is told for itself
        return {};
    }
    Q_UNREACHABLE();
}

QString announcedSaving(const QString &title)
{
    return QStringLiteral("已儲存：") + title;
}

QString withoutSoundText(LumaphoneAudioInputSource source)
{
    return source == LumaphoneAudioInputSource::microphone
        ? QStringLiteral("麥克風沒有聲音進來。請確認麥克風沒有靜音，而且選對了輸入裝置。")
        : QStringLiteral("系統音訊沒有聲音進來。請確認正在播放，而且沒有靜音。");
}

QString soundWanted(LumaphoneAudioInputSource source)
{
    return source == LumaphoneAudioInputSource::microphone ? QStringLiteral("對著麥克風說句話試試看。")
                                                           : QStringLiteral("播放一段影片或音樂試試看。");
}

QString soundHeard()
{
    return QStringLiteral("聽得到聲音，可以開始了。");
}

bool hasPendingTranslation(const QList<LumaphoneCaptionLine> &lines)
{
    return std::ranges::any_of(lines, &isPending);
}

QString cardStatusText(bool hasPendingTranslation, int failed)
{
    if (hasPendingTranslation) {
        return QStringLiteral("還有句子正在收尾");
    }
    return failed > 0 ? QStringLiteral("有 %1 句沒有翻譯").arg(failed) : QStringLiteral("已整理成字幕稿");
}

QString startStopText(const SessionFacts &facts)
{
    if (facts.isRunning || facts.isStarting) {
        return QStringLiteral("停止");
    }
    return hasUnsavedTranscript(facts) ? QStringLiteral("重開") : QStringLiteral("開始");
}

QString startStopSymbol(const SessionFacts &facts)
{
    return facts.isRunning || facts.isStarting ? QStringLiteral("stop.circle.fill")
                                               : QStringLiteral("play.circle.fill");
}

QString saveHelp(const SessionFacts &facts)
{
    return facts.isSaved ? QStringLiteral("更新字幕紀錄") : QStringLiteral("儲存字幕紀錄");
}

QString newCaptionsHelp(const SessionFacts &facts)
{
    return hasUnsavedTranscript(facts) ? QStringLiteral("捨棄上一段並立刻開始新的字幕")
                                       : QStringLiteral("開始新的字幕");
}

} // namespace lumaphone::livetexts
