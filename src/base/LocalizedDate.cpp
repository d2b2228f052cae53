#include "base/LocalizedDate.h"

namespace lumaphone {

QString localizedDateText(const QDateTime &date, const QLocale &locale)
{
    QString format = locale.dateTimeFormat(QLocale::ShortFormat);
    // Some languages part the day into more than two halves, which the toolkit does not know how to write.
    const bool isQuoted = format.contains(QLatin1Char('\''));
    if (!isQuoted) {
        format.replace(QLatin1Char('B'), QStringLiteral("AP"));
    }
    // Newer locale data part the time and the half of the day by a blank that no keyboard has; these texts
    // are searched for, and files are named by them.
    format.replace(QChar(0x202F), QLatin1Char(' '));
    return locale.toString(date.toLocalTime(), format);
}

} // namespace lumaphone
