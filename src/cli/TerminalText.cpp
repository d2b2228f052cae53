#include "cli/TerminalText.h"

#include "base/Text.h"

#include <cwchar>

namespace lumaphone::cli {

int terminalColumns(const QString &text)
{
    int columns = 0;
    for (const QString &character : text::characters(text)) {
        // A cluster is as wide as its base; the marks and joined parts behind it share its cells.
        const int width = ::wcwidth(static_cast<wchar_t>(character.toUcs4().constFirst()));
        columns += width > 0 ? width : 0;
    }
    return columns;
}

QString tailFitting(const QString &text, int columns)
{
    if (terminalColumns(text) <= columns) {
        return text;
    }
    const QList<QString> characters = text::characters(text);
    QString tail;
    int left = columns - 1;
    for (auto character = characters.crbegin(); character != characters.crend(); ++character) {
        left -= terminalColumns(*character);
        if (left < 0) {
            break;
        }
        tail.prepend(*character);
    }
    return columns > 0 ? QStringLiteral("…") + tail : QString();
}

QString singleRow(const QString &text)
{
    QString row = text;
    for (QChar &c : row) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator
            || c == QChar::ParagraphSeparator) {
            c = QLatin1Char(' ');
        }
    }
    return row;
}

QString severalRows(const QString &text)
{
    QStringList rows
        = QString(text).replace(QLatin1String("\r\n"), QLatin1String("\n")).split(QLatin1Char('\n'));
    for (QString &row : rows) {
        row = singleRow(row);
    }
    return rows.join(QLatin1Char('\n'));
}

} // namespace lumaphone::cli
