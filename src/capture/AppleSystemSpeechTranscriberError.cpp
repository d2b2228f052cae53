#include "capture/AppleSystemSpeechTranscriberError.h"

namespace lumaphone {

namespace {

using Case = AppleSystemSpeechTranscriberError::Case;

QString description(Case errorCase, const QString &language, const QString &detail)
{
    switch (errorCase) {
    case Case::assetUnavailable:
        return language + QStringLiteral("語音辨識資產不可用：") + detail;
    case Case::notAuthorized:
        return QStringLiteral("請在系統設定允許 Lumaphone 使用語音辨識。");
    case Case::recognizerUnavailable:
        return QStringLiteral("目前無法使用 Apple Speech 語音辨識。");
    case Case::automaticLanguagesUnavailable:
        return QStringLiteral("自動辨識找不到可用的 Apple Speech 本機語音辨識資產。請先在 macOS 開啟 Siri "
                              "或鍵盤聽寫，或手動指定已安裝聽寫資源的原文語言。");
    }
    Q_UNREACHABLE();
}

QString assetDetail(const std::exception_ptr &cause)
{
    QString description = localizedDescription(cause);
    if (!description.contains(QStringLiteral("No GeneralASR asset"), Qt::CaseInsensitive)) {
        return description;
    }
    return QStringLiteral("macOS 還沒加入這個語言的聽寫資源。請到「系統設定 > 鍵盤 > 聽寫」，在「語言」旁按"
                          "「編輯」並勾選要辨識的語言；等 macOS 準備完成後，重新開始 Lumaphone。");
}

} // namespace

AppleSystemSpeechTranscriberError::AppleSystemSpeechTranscriberError(
    Case errorCase, const QString &language, const QString &detail)
    : LocalizedError(description(errorCase, language, detail))
    , m_case(errorCase)
    , m_language(language)
    , m_detail(detail)
{
}

AppleSystemSpeechTranscriberError AppleSystemSpeechTranscriberError::assetUnavailable(
    const QString &language, const std::exception_ptr &cause)
{
    return AppleSystemSpeechTranscriberError(Case::assetUnavailable, language, assetDetail(cause));
}

AppleSystemSpeechTranscriberError AppleSystemSpeechTranscriberError::notAuthorized()
{
    return AppleSystemSpeechTranscriberError(Case::notAuthorized);
}

AppleSystemSpeechTranscriberError AppleSystemSpeechTranscriberError::recognizerUnavailable()
{
    return AppleSystemSpeechTranscriberError(Case::recognizerUnavailable);
}

AppleSystemSpeechTranscriberError AppleSystemSpeechTranscriberError::automaticLanguagesUnavailable()
{
    return AppleSystemSpeechTranscriberError(Case::automaticLanguagesUnavailable);
}

} // namespace lumaphone
