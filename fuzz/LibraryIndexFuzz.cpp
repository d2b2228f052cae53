// What the library reads: the index is an array of records, "metadata.json" one record, and an exported
// document a record with its lines.

#include "Require.h"
#include "storage/RecordCoding.h"
#include "storage/TranscriptDocument.h"
#include "storage/TranscriptSearch.h"
#include "storage/TranscriptSubtitles.h"

#include <cstddef>
#include <cstdint>

using namespace lumaphone;

namespace {

void checkRecord(const TranscriptRecordMetadata &record)
{
    fuzz::require(isPlainFolderName(record.folderName), "a folder's name leads nowhere else");
    const QByteArray written = json::pretty(toJson(record));
    fuzz::require(
        transcriptRecordMetadataFromJson(json::parse(written)) == record, "what is written reads back");
}

void checkIndex(const json::Value &root)
{
    const auto records = recordcoding::list(root, transcriptRecordMetadataFromJson);
    for (const TranscriptRecordMetadata &record : records) {
        checkRecord(record);
        TranscriptSearch search {QLocale::c()};
        const bool isFound = !search.filtered({record}, record.title).isEmpty();
        fuzz::require(isFound, "a record is found by its title");
    }
}

void checkDocument(const json::Value &root)
{
    const TranscriptDocument document = transcriptDocumentFromJson(root);
    checkRecord(document.metadata);
    fuzz::require(
        transcriptDocumentFromJson(toJson(document)) == document, "a document that is written reads back");
    fuzz::require(document.markdownText(QLocale::c()).startsWith(QLatin1String("# ")), "a page has a title");
    for (const auto text : allTranscriptTextChoices) {
        const auto cues = srtText(document, text).count(QLatin1String("-->"));
        fuzz::require(cues <= document.lines.size(), "a line is one cue");
        fuzz::require(vttText(document, text).count(QLatin1String("-->")) == cues, "both forms say the same");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const json::Value root = json::parse(bytes);
        if (root.is_array()) {
            checkIndex(root);
        } else if (json::has(root, "metadata")) {
            checkDocument(root);
        } else {
            checkRecord(transcriptRecordMetadataFromJson(root));
        }
    } catch (const json::DecodingError &error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says something");
        fuzz::require(error.errorDescription().size() < 2000, "an error is short");
    }
    return 0;
}
