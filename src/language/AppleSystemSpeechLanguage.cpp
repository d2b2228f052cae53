#include "language/AppleSystemSpeechLanguage.h"

#include <QStringList>

#include <algorithm>

namespace lumaphone {

using enum AppleSystemSpeechLanguage;

QString rawValue(AppleSystemSpeechLanguage language)
{
    switch (language) {
    case automatic:
        return QStringLiteral("automatic");
    case japanese:
        return QStringLiteral("japanese");
    case english:
        return QStringLiteral("english");
    case korean:
        return QStringLiteral("korean");
    case mandarin:
        return QStringLiteral("mandarin");
    }
    Q_UNREACHABLE();
}

std::optional<AppleSystemSpeechLanguage> appleSystemSpeechLanguage(const QString &raw)
{
    const auto found
        = std::find_if(allAppleSystemSpeechLanguages.begin(), allAppleSystemSpeechLanguages.end(),
            [&raw](AppleSystemSpeechLanguage language) { return rawValue(language) == raw; });
    return found == allAppleSystemSpeechLanguages.end() ? std::nullopt : std::optional(*found);
}

QString displayName(AppleSystemSpeechLanguage language)
{
    switch (language) {
    case automatic:
        return QStringLiteral("自動辨識");
    case japanese:
        return QStringLiteral("日文");
    case english:
        return QStringLiteral("英文");
    case korean:
        return QStringLiteral("韓文");
    case mandarin:
        return QStringLiteral("中文");
    }
    Q_UNREACHABLE();
}

QString displayNames(const std::vector<AppleSystemSpeechLanguage> &languages)
{
    QStringList names;
    for (const AppleSystemSpeechLanguage language : languages) {
        names.append(displayName(language));
    }
    return names.join(QStringLiteral("、"));
}

QString localeIdentifier(AppleSystemSpeechLanguage language)
{
    switch (language) {
    case automatic:
    case japanese:
        return QStringLiteral("ja-JP");
    case english:
        return QStringLiteral("en-US");
    case korean:
        return QStringLiteral("ko-KR");
    case mandarin:
        return QStringLiteral("zh-Hant-TW");
    }
    Q_UNREACHABLE();
}

std::vector<AppleSystemSpeechLanguage> recognitionCandidates(AppleSystemSpeechLanguage language)
{
    if (language == automatic) {
        return {japanese, english, korean, mandarin};
    }
    return {language};
}

} // namespace lumaphone
