#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

namespace lumaphone {

/// Date and time for people, short, in the local time zone and as they are written in `locale`.
QString localizedDateText(const QDateTime &date, const QLocale &locale);

} // namespace lumaphone
