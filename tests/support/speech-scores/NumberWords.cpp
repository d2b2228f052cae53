#include "support/speech-scores/NumberWords.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

namespace lumaphone::test {

namespace {

const QStringList &belowTwenty()
{
    static const QStringList words = QStringLiteral("zero one two three four five six seven eight nine ten "
                                                    "eleven twelve thirteen fourteen fifteen sixteen "
                                                    "seventeen eighteen nineteen")
                                         .split(QLatin1Char(' '));
    return words;
}

QString joined(const QString &words, const QString &rest)
{
    return rest.isEmpty() ? words : words + QLatin1Char(' ') + rest;
}

QString cardinal(qint64 number);

/// What follows a hundred or a thousand: nothing for zero.
QString remainder(qint64 number)
{
    return number == 0 ? QString() : cardinal(number);
}

QString cardinal(qint64 number)
{
    static const QStringList tens
        = QStringLiteral("twenty thirty forty fifty sixty seventy eighty ninety").split(QLatin1Char(' '));
    if (number < 20) {
        return belowTwenty().at(number);
    }
    if (number < 100) {
        return joined(tens.at(number / 10 - 2), remainder(number % 10));
    }
    if (number < 1000) {
        return joined(cardinal(number / 100) + QStringLiteral(" hundred"), remainder(number % 100));
    }
    if (number < 1000000) {
        return joined(cardinal(number / 1000) + QStringLiteral(" thousand"), remainder(number % 1000));
    }
    return joined(cardinal(number / 1000000) + QStringLiteral(" million"), remainder(number % 1000000));
}

QString digitByDigit(const QString &digits)
{
    QStringList words;
    for (const QChar digit : digits) {
        words.append(belowTwenty().at(digit.digitValue()));
    }
    return words.join(QLatin1Char(' '));
}

/// 1811 as people say years; not 1900 or 1805, of which there are several ways.
bool isReadAsYear(qint64 number)
{
    return number > 1100 && number < 2000 && number % 100 >= 10;
}

QString whole(const QString &digits)
{
    const qint64 number = digits.toLongLong();
    const bool isCode = digits.size() > 4 || (digits.size() > 1 && digits.startsWith(QLatin1Char('0')));
    if (isCode) {
        return digitByDigit(digits);
    }
    return isReadAsYear(number) ? cardinal(number / 100) + QLatin1Char(' ') + cardinal(number % 100)
                                : cardinal(number);
}

QString ordinal(const QString &cardinalWords)
{
    static const QHash<QString, QString> irregular {
        {QStringLiteral("one"), QStringLiteral("first")},
        {QStringLiteral("two"), QStringLiteral("second")},
        {QStringLiteral("three"), QStringLiteral("third")},
        {QStringLiteral("five"), QStringLiteral("fifth")},
        {QStringLiteral("eight"), QStringLiteral("eighth")},
        {QStringLiteral("nine"), QStringLiteral("ninth")},
        {QStringLiteral("twelve"), QStringLiteral("twelfth")},
    };
    QStringList words = cardinalWords.split(QLatin1Char(' '));
    QString &last = words.last();
    if (const auto found = irregular.constFind(last); found != irregular.constEnd()) {
        last = *found;
    } else if (last.endsWith(QLatin1Char('y'))) {
        last = last.chopped(1) + QStringLiteral("ieth");
    } else {
        last += QStringLiteral("th");
    }
    return words.join(QLatin1Char(' '));
}

} // namespace

std::optional<QString> numberWords(const QString &written)
{
    static const QRegularExpression plain(QStringLiteral("^\\d{1,15}$"));
    static const QRegularExpression grouped(QStringLiteral("^\\d{1,3}(,\\d{3}){1,2}$"));
    static const QRegularExpression fraction(QStringLiteral("^(\\d{1,15})\\.(\\d{1,15})$"));
    static const QRegularExpression counted(QStringLiteral("^(\\d{1,4})(st|nd|rd|th)$"));
    if (plain.match(written).hasMatch()) {
        return whole(written);
    }
    if (grouped.match(written).hasMatch()) {
        return cardinal(QString(written).remove(QLatin1Char(',')).toLongLong());
    }
    if (const auto match = fraction.match(written); match.hasMatch()) {
        return whole(match.captured(1)) + QStringLiteral(" point ") + digitByDigit(match.captured(2));
    }
    if (const auto match = counted.match(written); match.hasMatch()) {
        return ordinal(whole(match.captured(1)));
    }
    return std::nullopt;
}

} // namespace lumaphone::test
