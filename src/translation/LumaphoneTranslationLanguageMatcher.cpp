#include "translation/LumaphoneTranslationLanguageMatcher.h"

#include "base/Text.h"

#include <QStringList>

namespace lumaphone::LumaphoneTranslationLanguageMatcher {

QString normalizedLanguageIdentifier(const QString &identifier)
{
    static const QStringList traditionalChineseOfTaiwan {QStringLiteral("zh"), QStringLiteral("zh-tw"),
        QStringLiteral("zh-hant"), QStringLiteral("zh-hant-tw"), QStringLiteral("zh-tw-hant")};

    QString normalized = identifier;
    normalized.replace(u'_', u'-');
    normalized = text::lowercased(text::trimmed(normalized));
    return traditionalChineseOfTaiwan.contains(normalized) ? QStringLiteral("zh-hant") : normalized;
}

} // namespace lumaphone::LumaphoneTranslationLanguageMatcher
