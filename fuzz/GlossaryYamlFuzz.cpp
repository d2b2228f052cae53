#include "Require.h"
#include "glossary/GlossaryYaml.h"
#include "support/CountedUuids.h"

using namespace lumaphone;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text
        = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    QList<LumaphoneGlossaryTerm> terms = decodeYAML(text, test::countedUuids());
    for (LumaphoneGlossaryTerm &term : terms) {
        fuzz::require(!term.source.isEmpty(), "every term has a source");
        fuzz::require(!term.source.contains(QLatin1Char('\n')), "a value ends with its line");
        term.note.clear();
    }
    fuzz::require(decodeYAML(encodeYAML(terms), test::countedUuids()) == terms, "what is written reads back");
    return 0;
}
