#include "language/SpokenLanguage.h"

#include <array>

namespace lumaphone {

namespace {

struct Row
{
    SpokenLanguage language;
    QString name;
    QString locale;
};

const std::array<Row, 4> &table()
{
    static const std::array<Row, 4> rows {{
        {SpokenLanguage::japanese, QStringLiteral("ja"), QStringLiteral("ja-JP")},
        {SpokenLanguage::english, QStringLiteral("en"), QStringLiteral("en-US")},
        {SpokenLanguage::korean, QStringLiteral("ko"), QStringLiteral("ko-KR")},
        {SpokenLanguage::mandarin, QStringLiteral("zh"), QStringLiteral("zh-Hant-TW")},
    }};
    return rows;
}

const Row &rowOf(SpokenLanguage language)
{
    return table()[static_cast<std::size_t>(language)];
}

} // namespace

std::optional<SpokenLanguage> spokenLanguageNamed(const QString &name)
{
    if (name == QStringLiteral("yue")) {
        return SpokenLanguage::mandarin;
    }
    for (const Row &row : table()) {
        if (row.name == name) {
            return row.language;
        }
    }
    return std::nullopt;
}

QString networkName(SpokenLanguage language)
{
    return rowOf(language).name;
}

std::optional<SpokenLanguage> spokenLanguageOf(const QString &localeIdentifier)
{
    for (const Row &row : table()) {
        if (row.locale == localeIdentifier) {
            return row.language;
        }
    }
    return std::nullopt;
}

QString localeIdentifier(SpokenLanguage language)
{
    return rowOf(language).locale;
}

} // namespace lumaphone
