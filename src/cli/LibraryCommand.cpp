#include "cli/LibraryCommand.h"

#include "base/ExportFile.h"
#include "cli/TerminalText.h"
#include "session/LumaphoneSessionDraftStore.h"
#include "session/SessionTranscript.h"
#include "storage/TranscriptExport.h"
#include "storage/TranscriptLibraryStore.h"

#include <QFile>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace lumaphone::cli {

namespace {

void tellOpeningMessage(const TranscriptLibraryStore &store, const CommandStreams &streams)
{
    if (const auto &message = store.lastErrorMessage()) {
        streams.complain(*message);
    }
}

QString dateText(const QDateTime &date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

QString row(const TranscriptRecordMetadata &record)
{
    return QStringList {uuidText(record.id), dateText(record.createdAt), QString::number(record.lineCount),
        singleRow(record.title)}
        .join(QLatin1Char('\t'));
}

/// The one transcript whose id begins like that; a message and none otherwise.
std::optional<TranscriptRecordMetadata> find(
    const QString &id, const TranscriptLibraryStore &store, const CommandStreams &streams)
{
    QList<TranscriptRecordMetadata> found;
    std::copy_if(store.records().begin(), store.records().end(), std::back_inserter(found),
        [&id](const auto &record) { return uuidText(record.id).startsWith(id, Qt::CaseInsensitive); });
    if (found.size() == 1) {
        return found.constFirst();
    }
    if (found.isEmpty()) {
        streams.complain(QStringLiteral("找不到 ID 以「%1」開頭的字幕紀錄。").arg(singleRow(id)));
        return std::nullopt;
    }
    streams.complain(QStringLiteral("有 %1 筆字幕紀錄的 ID 以「%2」開頭，請多寫幾個字元：")
                         .arg(QString::number(found.size()), id));
    for (const TranscriptRecordMetadata &record : found) {
        streams.complain(row(record));
    }
    return std::nullopt;
}

/// One line of standard input, or what there is of it at its end.
QByteArray typedLine()
{
    QByteArray line;
    char byte = 0;
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0 || byte == '\n') {
            return line;
        }
        line.append(byte);
    }
}

} // namespace

Confirmation terminalQuestion(const CommandStreams &streams)
{
    return [&streams](const QString &question) -> std::optional<bool> {
        if (::isatty(STDIN_FILENO) == 0) {
            return std::nullopt;
        }
        streams.messages((question + QStringLiteral(" [y/N] ")).toUtf8());
        const QByteArray answer = typedLine().trimmed().toLower();
        return answer == "y" || answer == "yes";
    };
}

ExitStatus runLibraryList(
    const LibraryList &command, const TranscriptLibraryStore &store, const CommandStreams &streams)
{
    tellOpeningMessage(store, streams);
    for (const TranscriptRecordMetadata &record : store.filteredRecords(command.search)) {
        streams.print(row(record));
    }
    return store.records().isEmpty() && store.lastErrorMessage() ? exitFailure : exitSuccess;
}

ExitStatus runLibraryShow(
    const LibraryShow &command, TranscriptLibraryStore &store, const CommandStreams &streams)
{
    tellOpeningMessage(store, streams);
    const auto record = find(command.id, store, streams);
    if (!record) {
        return exitFailure;
    }
    const TranscriptDocument document = store.loadRecord(record->id);
    streams.print(singleRow(document.metadata.title));
    streams.print(QStringLiteral("%1　%2 -> 台灣繁中　%3　%4 段")
                      .arg(dateText(document.metadata.createdAt), document.metadata.languageName(),
                          singleRow(document.metadata.providerName), QString::number(document.lines.size())));
    for (const QString &noteLine : document.metadata.note.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        streams.print(QStringLiteral("# ") + singleRow(noteLine));
    }
    streams.print({});
    for (const SavedTranscriptLine &line : document.lines) {
        streams.print(singleRow(line.sourceText));
        if (!line.translatedText.isEmpty() && line.translatedText != line.sourceText) {
            streams.print(QStringLiteral("  ") + singleRow(line.translatedText));
        }
    }
    return exitSuccess;
}

ExitStatus runLibraryExport(
    const LibraryExport &command, TranscriptLibraryStore &store, const CommandStreams &streams)
{
    tellOpeningMessage(store, streams);
    const auto record = find(command.id, store, streams);
    if (!record) {
        return exitFailure;
    }
    QByteArray bytes
        = exported(store.loadRecord(record->id), command.format, QLocale::system(), command.text);
    if (!bytes.isEmpty() && !bytes.endsWith('\n')) {
        bytes += '\n';
    }
    if (command.path.isEmpty()) {
        streams.out(bytes);
    } else {
        exportFile(command.path, bytes);
    }
    return exitSuccess;
}

ExitStatus runLibraryDelete(const LibraryDelete &command, TranscriptLibraryStore &store,
    const Confirmation &confirm, const CommandStreams &streams)
{
    tellOpeningMessage(store, streams);
    const auto record = find(command.id, store, streams);
    if (!record) {
        return exitFailure;
    }
    if (!command.isConfirmed) {
        const auto answer = confirm(QStringLiteral("要刪除「%1」（%2，%3 段）嗎？刪除後無法復原。")
                                        .arg(singleRow(record->title), dateText(record->createdAt),
                                            QString::number(record->lineCount)));
        if (!answer) {
            streams.complain(QStringLiteral("不在終端機上，無法詢問。確定要刪除，請加上 --yes。"));
            return exitUsage;
        }
        if (!*answer) {
            streams.complain(QStringLiteral("沒有刪除。"));
            return exitFailure;
        }
    }
    store.remove(*record);
    streams.print(QStringLiteral("已刪除「%1」。").arg(singleRow(record->title)));
    return exitSuccess;
}

ExitStatus runLibrarySave(LumaphoneSessionDraftStore &drafts, TranscriptLibraryStore &store,
    const LumaphoneSettings &settings, const QList<LumaphoneGlossaryTerm> &terms,
    const CommandStreams &streams)
{
    tellOpeningMessage(store, streams);
    const auto draft = drafts.load();
    if (!draft) {
        streams.complain(QFile::exists(drafts.draftPath())
                ? QStringLiteral("無法讀取草稿：%1").arg(drafts.draftPath())
                : QStringLiteral("沒有尚未儲存的字幕草稿。"));
        return exitFailure;
    }
    const TranscriptRecordMetadata record = store.save(liveTranscript(*draft, terms), settings);
    streams.print(
        QStringLiteral("Transcript 已儲存：%1（%2）").arg(singleRow(record.title), uuidText(record.id)));
    drafts.clear();
    if (QFile::exists(drafts.draftPath())) {
        streams.complain(QStringLiteral("無法刪除草稿：%1").arg(drafts.draftPath()));
        return exitFailure;
    }
    return exitSuccess;
}

} // namespace lumaphone::cli
