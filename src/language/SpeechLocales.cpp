#include "language/SpeechLocales.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace lumaphone {

namespace {

struct SupportedLocale
{
    const char16_t *identifier;
    const char16_t *name;
    QStringView language;
    QStringView script;
    QStringView region;
    /// Whether the bare language means this script and region.
    bool isLanguageDefault;
};

constexpr std::array<SupportedLocale, 4> supportedLocales {{
    {u"ja-JP", u"日文", u"ja", u"jpan", u"jp", true},
    {u"en-US", u"英文", u"en", u"latn", u"us", true},
    {u"ko-KR", u"韓文", u"ko", u"kore", u"kr", true},
    // "zh" alone is written in simplified script
    {u"zh-Hant-TW", u"中文", u"zh", u"hant", u"tw", false},
}};

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

bool agrees(const SupportedLocale &supported, const Subtags &subtags)
{
    const bool isBareLanguage = subtags.script.isEmpty() && subtags.region.isEmpty();
    return subtags.isWellFormed && subtags.language == supported.language
        && (subtags.script.isEmpty() || subtags.script == supported.script)
        && (subtags.region.isEmpty() || subtags.region == supported.region)
        && (!isBareLanguage || supported.isLanguageDefault);
}

const SupportedLocale *supportedLocale(const QString &localeIdentifier)
{
    const Subtags subtags = subtagsOf(localeIdentifier);
    const auto found = std::find_if(supportedLocales.begin(), supportedLocales.end(),
        [&subtags](const SupportedLocale &supported) { return agrees(supported, subtags); });
    return found == supportedLocales.end() ? nullptr : &*found;
}

} // namespace

std::optional<QString> supportedSpeechLocale(const QString &localeIdentifier)
{
    const SupportedLocale *const supported = supportedLocale(localeIdentifier);
    return supported == nullptr ? std::nullopt : std::optional(QString::fromUtf16(supported->identifier));
}

QString speechLanguageName(const QString &localeIdentifier)
{
    const SupportedLocale *const supported = supportedLocale(localeIdentifier);
    return supported == nullptr ? localeIdentifier : QString::fromUtf16(supported->name);
}

} // namespace lumaphone
