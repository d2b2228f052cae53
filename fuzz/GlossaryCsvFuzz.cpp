#include "Require.h"
#include "glossary/GlossaryCsv.h"
#include "support/CountedUuids.h"

#include <algorithm>

using namespace lumaphone;

namespace {

void checkLine(QStringView line)
{
    const QStringList all = parseCSVLine(line);
    const auto isClean = [](const QString &field) {
        return !field.contains(QLatin1Char('"')) && field.trimmed() == field;
    };
    fuzz::require(!all.isEmpty(), "a line has a field");
    fuzz::require(all.size() <= line.count(QLatin1Char(',')) + 1, "only commas end fields");
    fuzz::require(std::all_of(all.begin(), all.end(), isClean), "fields are trimmed and carry no quotes");
    fuzz::require(parseCSVLine(line, 3) == all.first(std::min<qsizetype>(all.size(), 3)),
        "reading fewer fields reads the first ones");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text
        = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto terms = decodeCSV(text, test::countedUuids());
    fuzz::require(terms.size() <= text.count(QLatin1Char(',')), "every term takes a comma");
    for (const QStringView line : QStringView(text).tokenize(u'\n')) {
        checkLine(line);
    }
    // A term without commas, quotes and column names is carried over as it is.
    for (const LumaphoneGlossaryTerm &term : terms) {
        if (term.source.contains(QLatin1Char(',')) || term.target.contains(QLatin1Char(','))) {
            continue;
        }
        const QString written = QStringLiteral("x,x\n") + term.source + QLatin1Char(',') + term.target
            + QLatin1Char(',') + rawValue(term.mode);
        const auto read = decodeCSV(written, test::countedUuids());
        fuzz::require(read.size() == 2, "a line is a term");
        fuzz::require(
            read[1].source == term.source && read[1].target == term.target && read[1].mode == term.mode,
            "what is written reads back");
    }
    return 0;
}
