#include "translation/ChatCompletionsEndpoint.h"

#include "base/Text.h"
#include "translation/OpenAICompatibleTranslationError.h"

namespace lumaphone {

namespace {

QString withoutOuterSlashes(QStringView path)
{
    while (path.startsWith(u'/')) {
        path = path.sliced(1);
    }
    while (path.endsWith(u'/')) {
        path.chop(1);
    }
    return path.toString();
}

} // namespace

QUrl chatCompletionsURL(const QString &baseURL)
{
    const QString typed = text::trimmed(baseURL);
    QUrl url(typed, QUrl::StrictMode);
    if (!typed.isEmpty() && !url.isValid()) {
        throw OpenAICompatibleTranslationError(OpenAICompatibleTranslationError::Case::invalidBaseURL);
    }
    const QString path = withoutOuterSlashes(url.path(QUrl::FullyEncoded));
    if (path.endsWith(QStringLiteral("chat/completions"))) {
        return url;
    }
    url.setPath(path.isEmpty() ? QStringLiteral("/v1/chat/completions")
                               : u'/' + path + QStringLiteral("/chat/completions"),
        QUrl::StrictMode);
    if (!url.isValid()) {
        throw OpenAICompatibleTranslationError(OpenAICompatibleTranslationError::Case::invalidBaseURL);
    }
    return url;
}

} // namespace lumaphone
