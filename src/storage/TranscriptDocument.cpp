#include "storage/TranscriptDocument.h"

#include "base/LocalizedDate.h"
#include "storage/RecordCoding.h"

#include <QStringList>

namespace lumaphone {

namespace {

/// `text` of every element, joined with `separator`.
template<typename Element, typename Text>
QString joined(const QList<Element> &elements, const QString &separator, Text text)
{
    QStringList texts;
    texts.reserve(elements.size());
    for (const Element &element : elements) {
        texts.append(text(element));
    }
    return texts.join(separator);
}

QString dateText(const std::optional<QDateTime> &date, const QLocale &locale)
{
    return date ? localizedDateText(*date, locale) : QStringLiteral("未記錄");
}

QString markdownTerms(const QList<SavedGlossaryTerm> &terms)
{
    return joined(terms, QStringLiteral("\n"), [](const SavedGlossaryTerm &term) {
        return QStringLiteral("- `%1` → `%2` (%3)").arg(term.source, term.target, rawValue(term.mode));
    });
}

QString markdownLines(const QList<SavedTranscriptLine> &lines)
{
    qsizetype number = 0;
    return joined(lines, QStringLiteral("\n\n"), [&number](const SavedTranscriptLine &line) {
        return QStringLiteral("## %1\n\n**原文**\n\n").arg(++number) + line.sourceText
            + QStringLiteral("\n\n**譯文**\n\n") + line.translatedText;
    });
}

} // namespace

QString TranscriptDocument::searchText() const
{
    QStringList texts {metadata.title, metadata.note};
    texts.reserve(2 * (1 + lines.size() + metadata.glossaryTerms.size()));
    for (const SavedTranscriptLine &line : lines) {
        texts << line.sourceText << line.translatedText;
    }
    for (const SavedGlossaryTerm &term : metadata.glossaryTerms) {
        texts << term.source << term.target;
    }
    return texts.join(QLatin1Char('\n'));
}

QString TranscriptDocument::sourceText() const
{
    return joined(
        lines, QStringLiteral("\n\n"), [](const SavedTranscriptLine &line) { return line.sourceText; });
}

QString TranscriptDocument::translationText() const
{
    return joined(
        lines, QStringLiteral("\n\n"), [](const SavedTranscriptLine &line) { return line.translatedText; });
}

QString TranscriptDocument::bilingualText() const
{
    return joined(lines, QStringLiteral("\n\n---\n\n"), [](const SavedTranscriptLine &line) {
        return QStringLiteral("原文：\n") + line.sourceText + QStringLiteral("\n\n台灣繁中：\n")
            + line.translatedText;
    });
}

QString TranscriptDocument::markdownText(const QLocale &locale) const
{
    QString text = QStringLiteral("# ") + metadata.title + QStringLiteral("\n\n- 建立時間：")
        + dateText(metadata.createdAt, locale);
    text += QStringLiteral("\n- Session：") + dateText(metadata.startedAt, locale) + QStringLiteral(" - ")
        + dateText(metadata.endedAt, locale);
    text += QStringLiteral("\n- 語言：") + metadata.languageName()
        + QStringLiteral(" -> 台灣繁中\n- Provider：") + metadata.providerName;
    text += QStringLiteral("\n- 段落數：%1\n\n").arg(lines.size());
    if (!metadata.note.isEmpty()) {
        text += QStringLiteral("## 備註\n\n") + metadata.note + QStringLiteral("\n\n");
    }
    if (!metadata.glossaryTerms.isEmpty()) {
        text += QStringLiteral("## Glossary\n\n") + markdownTerms(metadata.glossaryTerms)
            + QStringLiteral("\n\n");
    }
    return text + QStringLiteral("## Transcript\n\n") + markdownLines(lines);
}

json::Value toJson(const TranscriptDocument &document)
{
    return {{"metadata", toJson(document.metadata)}, {"lines", recordcoding::array(document.lines)}};
}

TranscriptDocument transcriptDocumentFromJson(const json::Value &value)
{
    return {transcriptRecordMetadataFromJson(json::member(value, "metadata")),
        recordcoding::list(json::member(value, "lines"), savedTranscriptLineFromJson)};
}

} // namespace lumaphone
