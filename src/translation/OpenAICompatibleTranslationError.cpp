#include "translation/OpenAICompatibleTranslationError.h"

namespace lumaphone {

namespace {

QString descriptionOf(OpenAICompatibleTranslationError::Case errorCase, int status, const QString &body)
{
    using enum OpenAICompatibleTranslationError::Case;
    switch (errorCase) {
    case httpFailure:
        return QStringLiteral("自定義 API 回傳 HTTP ") + QString::number(status) + QStringLiteral("：")
            + body;
    case missingConfiguration:
        return QStringLiteral("自定義 API 尚未設定 Base URL 與 Model。");
    case invalidBaseURL:
        return QStringLiteral("自定義 API Base URL 格式不正確。");
    case invalidResponse:
        return QStringLiteral("自定義 API 回應格式不正確。");
    case emptyResponse:
        return QStringLiteral("自定義 API 沒有回傳翻譯文字。");
    }
    Q_UNREACHABLE();
}

} // namespace

OpenAICompatibleTranslationError OpenAICompatibleTranslationError::httpFailure(
    int status, const QString &body)
{
    return {Case::httpFailure, status, body};
}

OpenAICompatibleTranslationError::OpenAICompatibleTranslationError(Case errorCase)
    : OpenAICompatibleTranslationError(errorCase, 0, QString())
{
}

OpenAICompatibleTranslationError::OpenAICompatibleTranslationError(
    Case errorCase, int status, const QString &body)
    : LocalizedError(descriptionOf(errorCase, status, body))
    , m_case(errorCase)
    , m_status(status)
    , m_body(body)
{
}

} // namespace lumaphone
