#include "language/SpeechLanguageCoding.h"

namespace lumaphone {

json::Value toJson(AppleSystemSpeechLanguage language)
{
    return json::fromText(rawValue(language));
}

AppleSystemSpeechLanguage speechLanguage(const json::Value &object, const char *key)
{
    const auto language = speechLanguageFromRawValue(json::text(object, key));
    if (!language) {
        throw json::DecodingError(
            QStringLiteral("JSON 欄位「%1」不是已知的語言。").arg(QString::fromUtf8(key)));
    }
    return *language;
}

} // namespace lumaphone
