#include "Require.h"
#include "base/Json.h"
#include "glossary/GlossaryImport.h"
#include "glossary/LumaphoneGlossaryDocument.h"

using namespace lumaphone;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const auto terms = decodeGlossaryJson(bytes);
        fuzz::require(decodeGlossaryJson(LumaphoneGlossaryDocument {terms}.encoded()) == terms,
            "what is written reads back");
    } catch (const json::DecodingError &error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says something");
        fuzz::require(error.errorDescription().size() < 1000, "an error is short");
    }
    return 0;
}
