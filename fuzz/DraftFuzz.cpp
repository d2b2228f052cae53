#include "Require.h"
#include "session/CaptionLinesEncoder.h"
#include "session/LumaphoneSessionDraft.h"

#include <cstddef>
#include <cstdint>

using namespace lumaphone;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const LumaphoneSessionDraft draft = sessionDraftFromJson(json::parse(bytes));
        const QByteArray written = json::pretty(toJson(draft));
        fuzz::require(sessionDraftFromJson(json::parse(written)) == draft, "what is written reads back");
        // What a running session writes line by line is what the whole would be.
        CaptionLinesEncoder encoder;
        const QByteArrayView lines = encoder.encode(draft.lines);
        fuzz::require(draft.lines.isEmpty() || written.contains(lines), "lines are written alike");
    } catch (const json::DecodingError &error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says something");
        fuzz::require(error.errorDescription().size() < 1000, "an error is short");
    }
    return 0;
}
