#include "support/speech-scores/WordSpelling.h"

#include "base/Text.h"
#include "support/speech-scores/NumberWords.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace lumaphone::test {

namespace {

/// Compatibility forms, such as full-width digits, become the usual ones.
QString folded(const QString &text)
{
    QString plain = text::lowercased(text.normalized(QString::NormalizationForm_KC));
    return plain.replace(QChar(0x2019), QLatin1Char('\''));
}

/// What English abbreviates, without its full stop.
QString written(const QString &word)
{
    static const QHash<QString, QString> abbreviations {
        {QStringLiteral("mr"), QStringLiteral("mister")},
        {QStringLiteral("mrs"), QStringLiteral("missus")},
        {QStringLiteral("dr"), QStringLiteral("doctor")},
        {QStringLiteral("vs"), QStringLiteral("versus")},
        {QStringLiteral("ok"), QStringLiteral("okay")},
    };
    return abbreviations.value(word, word);
}

/// Without the marks around it, but with those that numbers have inside.
QString withoutMarksAround(const QString &token)
{
    static const QRegularExpression around(QStringLiteral("^[\\p{P}\\p{S}]+|[\\p{P}\\p{S}]+$"));
    return QString(token).remove(around);
}

QStringList englishWords(const QString &text)
{
    // A comma within a number parts its thousands.
    static const QRegularExpression separators(QStringLiteral("[\\p{Pd}/:;]|\\.{2,}|,(?!\\d{3}(?!\\d))"));
    static const QRegularExpression marks(QStringLiteral("[^\\p{L}\\p{M}\\p{N}']"));
    QString plain = folded(text);
    plain.replace(separators, QStringLiteral(" "));
    plain.replace(QLatin1Char('&'), QStringLiteral(" and "));
    plain.replace(QLatin1Char('%'), QStringLiteral(" percent "));
    QStringList words;
    for (const QString &token : text::splitAtWhiteSpace(plain)) {
        const QString word = withoutMarksAround(token);
        if (const auto number = numberWords(word)) {
            words += number->split(QLatin1Char(' '));
        } else if (const QString letters = QString(word).remove(marks); !letters.isEmpty()) {
            words.append(written(letters));
        }
    }
    return words;
}

QStringList koreanWords(const QString &text)
{
    static const QRegularExpression marks(QStringLiteral("[\\p{P}\\p{S}]"));
    return text::splitAtWhiteSpace(folded(text).remove(marks));
}

QStringList singleCharacters(const QString &text)
{
    static const QRegularExpression marks(QStringLiteral("[\\p{P}\\p{S}\\s]"));
    return text::characters(folded(text).remove(marks));
}

qsizetype exchange(const QString &spoken, const QString &heard)
{
    return spoken == heard ? 0 : 1;
}

/// Errors between all beginnings of both lists.
QList<QList<qsizetype>> distances(const QStringList &spoken, const QStringList &heard)
{
    QList<QList<qsizetype>> table(spoken.size() + 1, QList<qsizetype>(heard.size() + 1));
    for (qsizetype row = 0; row <= spoken.size(); ++row) {
        for (qsizetype column = 0; column <= heard.size(); ++column) {
            if (row == 0 || column == 0) {
                table[row][column] = row + column;
                continue;
            }
            table[row][column] = std::min({table[row - 1][column] + 1, table[row][column - 1] + 1,
                table[row - 1][column - 1] + exchange(spoken[row - 1], heard[column - 1])});
        }
    }
    return table;
}

} // namespace

QStringList spelledWords(const QString &text, AppleSystemSpeechLanguage language)
{
    switch (language) {
    case AppleSystemSpeechLanguage::automatic:
        break;
    case AppleSystemSpeechLanguage::english:
        return englishWords(text);
    case AppleSystemSpeechLanguage::korean:
        return koreanWords(text);
    case AppleSystemSpeechLanguage::japanese:
    case AppleSystemSpeechLanguage::mandarin:
        return singleCharacters(text);
    }
    throw std::invalid_argument("words can be compared in one language only");
}

qsizetype wordErrors(const QStringList &spoken, const QStringList &heard)
{
    return distances(spoken, heard).constLast().constLast();
}

QList<qsizetype> errorsOfWords(const QStringList &spoken, const QStringList &heard)
{
    const QList<QList<qsizetype>> table = distances(spoken, heard);
    QList<qsizetype> errors(spoken.size());
    // Back from the end, the way that the least number of errors came.
    qsizetype row = spoken.size();
    qsizetype column = heard.size();
    while (row > 0 || column > 0) {
        const qsizetype here = table[row][column];
        const qsizetype word = std::max<qsizetype>(0, row - 1);
        if (row > 0 && column > 0
            && here == table[row - 1][column - 1] + exchange(spoken[row - 1], heard[column - 1])) {
            errors[word] += here - table[--row][--column];
        } else if (row > 0 && here == table[row - 1][column] + 1) {
            ++errors[word];
            --row;
        } else {
            ++errors[word];
            --column;
        }
    }
    return errors;
}

} // namespace lumaphone::test
