#pragma once

#include "base/LocalizedError.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUuid>

#include <nlohmann/json.hpp>

#include <cstdint>

/// Strict reading and writing of JSON. Readers name the key they failed at.
namespace lumaphone::json {

using Value = nlohmann::json; ///< object members sorted by key
using OrderedValue = nlohmann::ordered_json; ///< object members in the order they were added

/// The bytes are no JSON, or not JSON of the wanted shape.
class DecodingError : public LocalizedError
{
public:
    using LocalizedError::LocalizedError;
};

/// Parses UTF-8, at most 512 levels deep. Throws DecodingError.
Value parse(const QByteArray &bytes);

/// Compact UTF-8 without a line break at the end. Unpaired surrogates become U+FFFD.
QByteArray compact(const Value &value);
QByteArray compact(const OrderedValue &value);
/// Indented by two blanks, keys sorted, UTF-8, without a line break at the end.
QByteArray pretty(const Value &value);

/// A text as a JSON string. Unpaired surrogates become U+FFFD.
std::string fromText(const QString &text);

// Members of an object. Each throws DecodingError if `object` is not an object, the key is missing, or the
// value is of another kind.
const Value &member(const Value &object, const char *key);
QString text(const Value &object, const char *key);
QList<QString> texts(const Value &object, const char *key); ///< an array of strings
bool boolean(const Value &object, const char *key);
std::int64_t integer(const Value &object, const char *key);
double number(const Value &object, const char *key);
QUuid uuid(const Value &object, const char *key);
QDateTime date(const Value &object, const char *key);
/// What a message says of a text that should be another one: its beginning, if it is long.
QString excerpt(const QString &text);
/// Whether the key is present and not null.
bool has(const Value &object, const char *key);

} // namespace lumaphone::json
