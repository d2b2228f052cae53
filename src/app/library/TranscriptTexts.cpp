#include "app/library/TranscriptTexts.h"

#include "base/LocalizedDate.h"
#include "base/Text.h"

namespace lumaphone {

QString metadataSubtitle(const TranscriptRecordMetadata &record, const QLocale &locale)
{
    return QStringLiteral("%1 · %2 → 台灣繁中 · %3 · %4 段")
        .arg(localizedDateText(record.createdAt, locale), record.languageName(), record.providerName,
            QString::number(record.lineCount));
}

QString exportText(TranscriptExport format)
{
    const QString name = title(format);
    // A blank stands between Chinese and Latin letters, and nowhere else.
    const bool isLatin = name.front().script() == QChar::Script_Latin;
    return QStringLiteral("匯出%1%2…").arg(isLatin ? QStringLiteral(" ") : QString(), name);
}

QString safeFilename(const QString &title)
{
    static const auto separators = QStringLiteral("/\\:?%*|\"<>");
    QString name = title;
    for (QChar &character : name) {
        if (separators.contains(character)) {
            character = QLatin1Char('-');
        }
    }
    name = text::trimmed(name);
    return name.isEmpty() ? QStringLiteral("Lumaphone 字幕紀錄") : name;
}

} // namespace lumaphone
