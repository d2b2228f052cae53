#include "storage/TranscriptExport.h"

#include "base/Json.h"
#include "base/RawValue.h"
#include "storage/TranscriptSubtitles.h"

namespace lumaphone {

namespace {

QString plainText(const TranscriptDocument &document, TranscriptTextChoice text)
{
    switch (text) {
    case TranscriptTextChoice::source:
        return document.sourceText();
    case TranscriptTextChoice::translation:
        return document.translationText();
    case TranscriptTextChoice::bilingual:
        return document.bilingualText();
    }
    Q_UNREACHABLE();
}

} // namespace

QString rawValue(TranscriptExport format)
{
    switch (format) {
    case TranscriptExport::markdown:
        return QStringLiteral("md");
    case TranscriptExport::plainText:
        return QStringLiteral("txt");
    case TranscriptExport::subRip:
        return QStringLiteral("srt");
    case TranscriptExport::webVtt:
        return QStringLiteral("vtt");
    case TranscriptExport::json:
        return QStringLiteral("json");
    }
    Q_UNREACHABLE();
}

std::optional<TranscriptExport> transcriptExport(const QString &raw)
{
    return caseWithRawValue(allTranscriptExports, raw);
}

QString title(TranscriptExport format)
{
    switch (format) {
    case TranscriptExport::markdown:
        return QStringLiteral("Markdown");
    case TranscriptExport::plainText:
        return QStringLiteral("雙語純文字");
    case TranscriptExport::subRip:
        return QStringLiteral("SRT 字幕");
    case TranscriptExport::webVtt:
        return QStringLiteral("WebVTT 字幕");
    case TranscriptExport::json:
        return QStringLiteral("JSON");
    }
    Q_UNREACHABLE();
}

bool hasTextChoice(TranscriptExport format)
{
    switch (format) {
    case TranscriptExport::plainText:
    case TranscriptExport::subRip:
    case TranscriptExport::webVtt:
        return true;
    case TranscriptExport::markdown:
    case TranscriptExport::json:
        return false;
    }
    Q_UNREACHABLE();
}

QByteArray exported(const TranscriptDocument &document, TranscriptExport format, const QLocale &locale,
    TranscriptTextChoice text)
{
    switch (format) {
    case TranscriptExport::markdown:
        return document.markdownText(locale).toUtf8();
    case TranscriptExport::plainText:
        return plainText(document, text).toUtf8();
    case TranscriptExport::subRip:
        return srtText(document, text).toUtf8();
    case TranscriptExport::webVtt:
        return vttText(document, text).toUtf8();
    case TranscriptExport::json:
        return json::pretty(toJson(document));
    }
    Q_UNREACHABLE();
}

} // namespace lumaphone
