#pragma once

#include "base/Json.h"

#include <QDateTime>
#include <QList>
#include <QTimeZone>

#include <optional>

/// What the codecs of the saved records share.
namespace lumaphone::recordcoding {

/// The case whose raw value a member of `object` holds. Throws json::DecodingError.
template<typename Enum>
Enum choice(const json::Value &object, const char *key, std::optional<Enum> (*fromRawValue)(const QString &))
{
    const QString raw = json::text(object, key);
    const std::optional<Enum> value = fromRawValue(raw);
    if (!value) {
        throw json::DecodingError(QStringLiteral("JSON 欄位「%1」的值「%2」不是已知的值。")
                                      .arg(QString::fromUtf8(key), json::excerpt(raw)));
    }
    return *value;
}

/// A date of whole seconds, as the files hold it.
inline QDateTime wholeSeconds(const QDateTime &date)
{
    return QDateTime::fromSecsSinceEpoch(date.toSecsSinceEpoch(), QTimeZone::utc());
}

/// `list` as a JSON array of what toJson() makes of its elements.
template<typename Record> json::Value array(const QList<Record> &list)
{
    json::Value array = json::Value::array();
    for (const Record &record : list) {
        array.push_back(toJson(record));
    }
    return array;
}

/// The elements of a JSON array. Throws json::DecodingError.
template<typename Record>
QList<Record> list(const json::Value &array, Record (*fromJson)(const json::Value &))
{
    if (!array.is_array()) {
        throw json::DecodingError(QStringLiteral("JSON 應為陣列。"));
    }
    QList<Record> records;
    records.reserve(static_cast<qsizetype>(array.size()));
    for (const json::Value &element : array) {
        records.append(fromJson(element));
    }
    return records;
}

} // namespace lumaphone::recordcoding
