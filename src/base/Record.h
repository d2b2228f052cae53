#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>

namespace lumaphone {

/// Makes the identities of new records. Tests hand in a counted one.
using UuidGenerator = std::function<QUuid()>;

/// Upper-case, without braces.
QString uuidText(const QUuid &uuid);
/// Reads either case, without braces; none for anything else.
std::optional<QUuid> uuidFromText(const QString &text);

/// ISO 8601 in whole seconds, UTC, such as 2026-01-31T08:05:09Z. A fraction is cut off.
QString iso8601Text(const QDateTime &date);
/// Reads ISO 8601 in whole seconds with "Z" or an offset; none for anything else, fractions included.
std::optional<QDateTime> dateFromIso8601(const QString &text);

} // namespace lumaphone
