#include "base/Record.h"

#include <QRegularExpression>
#include <QTimeZone>

namespace lumaphone {

QString uuidText(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> uuidFromText(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}\\z"));
    if (!form.match(text).hasMatch()) {
        return std::nullopt;
    }
    return QUuid::fromString(text);
}

QString iso8601Text(const QDateTime &date)
{
    return date.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"));
}

std::optional<QDateTime> dateFromIso8601(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A([0-9]{4}-[0-9]{2}-[0-9]{2})T((?:[01][0-9]|2[0-3]):[0-9]{2}:[0-9]{2})(?:Z|([+-])(["
                       "0-9]{2}):?([0-9]{2}))\\z"));
    const auto match = form.match(text);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const QDate day = QDate::fromString(match.captured(1), Qt::ISODate);
    const QTime time = QTime::fromString(match.captured(2), Qt::ISODate);
    const int offsetSeconds = match.captured(4).toInt() * 3600 + match.captured(5).toInt() * 60;
    if (!day.isValid() || !time.isValid() || match.captured(4).toInt() > 23
        || match.captured(5).toInt() > 59) {
        return std::nullopt;
    }
    const bool west = match.captured(3) == QLatin1String("-");
    const QDateTime date
        = QDateTime(day, time, QTimeZone::utc()).addSecs(west ? offsetSeconds : -offsetSeconds);
    // The offset may lead to a year that cannot be written in four digits.
    const int year = date.date().year();
    return year >= 1 && year <= 9999 ? std::optional(date) : std::nullopt;
}

} // namespace lumaphone
