#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaphone {

/// The case of a string-backed enumeration whose rawValue() is exactly `raw`; none for any other text.
/// `cases` is the array of all of them.
template<typename Cases>
std::optional<typename Cases::value_type> caseWithRawValue(const Cases &cases, const QString &raw)
{
    for (const auto candidate : cases) {
        if (rawValue(candidate) == raw) {
            return candidate;
        }
    }
    return std::nullopt;
}

/// What rawValue() gives for each of `cases`.
template<typename Cases> QStringList rawValues(const Cases &cases)
{
    QStringList values;
    for (const auto candidate : cases) {
        values.append(rawValue(candidate));
    }
    return values;
}

} // namespace lumaphone
