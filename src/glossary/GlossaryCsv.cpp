#include "glossary/GlossaryCsv.h"

#include "base/Text.h"

#include <algorithm>

namespace lumaphone {

namespace {

/// Columns that mean something; what follows them is not read.
constexpr qsizetype columnCount = 3;

bool isNewline(QChar unit)
{
    switch (unit.unicode()) {
    case u'\n':
    case u'\v':
    case u'\f':
    case u'\r':
    case u'\u0085':
    case u'\u2028':
    case u'\u2029':
        return true;
    default:
        return false;
    }
}

bool namesColumns(const QString &firstField)
{
    // Composed, so that a letter and its accent are not taken for the letter alone.
    return firstField.normalized(QString::NormalizationForm_C)
        .contains(QLatin1String("source"), Qt::CaseInsensitive);
}

LumaphoneGlossaryTermMode mode(const QStringList &fields)
{
    return fields.size() >= columnCount && fields[2] == QLatin1String("preserve")
        ? LumaphoneGlossaryTermMode::preserve
        : LumaphoneGlossaryTermMode::translate;
}

} // namespace

QList<LumaphoneGlossaryTerm> decodeCSV(QStringView text, const UuidGenerator &makeUuid)
{
    QList<LumaphoneGlossaryTerm> terms;
    bool isFirstLine = true;
    for (auto start = text.begin(); start != text.end();) {
        const auto end = std::find_if(start, text.end(), isNewline);
        if (start == end) {
            ++start;
            continue;
        }
        const QStringList fields = parseCSVLine(QStringView(start, end), columnCount);
        const bool mayNameColumns = std::exchange(isFirstLine, false);
        if (fields.size() >= 2 && !(mayNameColumns && namesColumns(fields[0]))) {
            terms.append({
                .id = makeUuid(),
                .source = fields[0],
                .target = fields[1],
                .mode = mode(fields),
                .note = QString(),
                .isEnabled = true,
                .caseSensitive = false,
            });
        }
        start = end;
    }
    return terms;
}

QStringList parseCSVLine(QStringView line, qsizetype maximumCount)
{
    QStringList fields;
    QString field;
    bool inQuotes = false;
    for (const QChar unit : line) {
        if (unit == QLatin1Char('"')) {
            inQuotes = !inQuotes;
        } else if (unit == QLatin1Char(',') && !inQuotes) {
            fields.append(text::trimmed(field));
            field.clear();
            if (fields.size() == maximumCount) {
                return fields;
            }
        } else {
            field.append(unit);
        }
    }
    fields.append(text::trimmed(field));
    return fields;
}

} // namespace lumaphone
