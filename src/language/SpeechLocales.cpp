#include "language/SpeechLocales.h"

#include "language/LanguageTable.h"

#include <QStringList>

#include <algorithm>

namespace lumaphone {

namespace {

struct Subtags
{
    QString language;
    QString script;
    QString region;
    bool isWellFormed = true;
};

Subtags subtagsOf(const QString &localeIdentifier)
{
    QString name = localeIdentifier.toLower();
    name.truncate(name.indexOf(QLatin1Char('.')) < 0 ? name.size() : name.indexOf(QLatin1Char('.')));
    name.truncate(name.indexOf(QLatin1Char('@')) < 0 ? name.size() : name.indexOf(QLatin1Char('@')));
    name.replace(QLatin1Char('_'), QLatin1Char('-'));
    QStringList parts = name.split(QLatin1Char('-'));
    Subtags subtags;
    subtags.language = parts.takeFirst();
    if (!parts.isEmpty() && parts.first().size() == 4) {
        subtags.script = parts.takeFirst();
    }
    if (!parts.isEmpty() && parts.first().size() == 2) {
        subtags.region = parts.takeFirst();
    }
    // What may follow is an extension, such as "-u-ca-roc": it does not change the language.
    subtags.isWellFormed = parts.isEmpty() || parts.first().size() == 1;
    return subtags;
}

bool isMeantBy(const Subtags &subtags, const LanguageRow &row)
{
    const Subtags supported = subtagsOf(row.fullLocale.toString());
    const bool isBareCode = subtags.script.isEmpty() && subtags.region.isEmpty();
    return subtags.isWellFormed && subtags.language == supported.language
        && (subtags.script.isEmpty() || subtags.script == supported.script)
        && (subtags.region.isEmpty() || subtags.region == supported.region)
        && (!isBareCode || row.isMeantByCodeAlone);
}

const LanguageRow *supportedLanguage(const QString &localeIdentifier)
{
    const Subtags subtags = subtagsOf(localeIdentifier);
    const auto rows = languageTable();
    const auto found = std::find_if(
        rows.begin(), rows.end(), [&subtags](const LanguageRow &row) { return isMeantBy(subtags, row); });
    return found == rows.end() ? nullptr : &*found;
}

} // namespace

std::optional<QString> supportedSpeechLocale(const QString &localeIdentifier)
{
    const LanguageRow *const row = supportedLanguage(localeIdentifier);
    return row == nullptr ? std::nullopt : std::optional(row->localeIdentifier.toString());
}

QString speechLanguageName(const QString &localeIdentifier)
{
    const LanguageRow *const row = supportedLanguage(localeIdentifier);
    return row == nullptr ? localeIdentifier : row->displayName.toString();
}

} // namespace lumaphone
