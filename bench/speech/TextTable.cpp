#include "bench/speech/TextTable.h"

#include <QList>

#include <algorithm>

namespace lumaphone::bench {

namespace {

QList<qsizetype> widthsOf(const std::vector<QStringList> &rows)
{
    QList<qsizetype> widths(rows.front().size());
    for (const QStringList &row : rows) {
        for (qsizetype column = 0; column < widths.size(); ++column) {
            widths[column] = std::max(widths[column], row.value(column).size());
        }
    }
    return widths;
}

QString lineOf(const QStringList &row, const QList<qsizetype> &widths, const QString &between)
{
    QStringList cells;
    for (qsizetype column = 0; column < widths.size(); ++column) {
        cells.append(row.value(column).leftJustified(widths[column]));
    }
    return cells.join(between);
}

QStringList ruleOf(const QList<qsizetype> &widths)
{
    QStringList rule;
    for (const qsizetype width : widths) {
        rule.append(QString(width, QLatin1Char('-')));
    }
    return rule;
}

} // namespace

QString TextTable::text(TableFormat format) const
{
    std::vector<QStringList> rows = m_rows;
    const QList<qsizetype> widths = widthsOf(rows);
    rows.insert(rows.begin() + 1, ruleOf(widths));
    QString text;
    for (const QStringList &row : rows) {
        switch (format) {
        case TableFormat::text:
            text += lineOf(row, widths, QStringLiteral("   "));
            while (text.endsWith(QLatin1Char(' '))) {
                text.chop(1);
            }
            break;
        case TableFormat::markdown:
            text += QStringLiteral("| %1 |").arg(lineOf(row, widths, QStringLiteral(" | ")));
            break;
        }
        text += QLatin1Char('\n');
    }
    return text;
}

} // namespace lumaphone::bench
