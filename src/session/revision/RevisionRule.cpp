#include "session/revision/RevisionRule.h"

#include "base/Text.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace lumaphone {

namespace {

constexpr char16_t firstFoldedKatakana = 0x30A1;
constexpr char16_t lastFoldedKatakana = 0x30F6;
constexpr char16_t katakanaAboveHiragana = 0x60;

} // namespace

QString normalizedForComparison(const QString &text)
{
    // simplified() trims and joins at the units of the White_Space property, all of the basic plane.
    QString result = text::lowercased(text.simplified());
    for (QChar &unit : result) {
        if (unit >= QChar(firstFoldedKatakana) && unit <= QChar(lastFoldedKatakana)) {
            unit = QChar(char16_t(unit.unicode() - katakanaAboveHiragana));
        }
    }
    return result;
}

qsizetype commonPrefixLength(const CharacterSequence &x, const CharacterSequence &y)
{
    const qsizetype shorter = std::min(x.size(), y.size());
    qsizetype length = 0;
    while (length < shorter && x[length] == y[length]) {
        ++length;
    }
    return length;
}

qsizetype editDistance(const CharacterSequence &x, const CharacterSequence &y)
{
    std::vector<qsizetype> previous(std::size_t(y.size()) + 1);
    std::vector<qsizetype> row(previous.size());
    std::iota(previous.begin(), previous.end(), 0);
    for (qsizetype i = 0; i < x.size(); ++i) {
        const QStringView character = x[i];
        row[0] = i + 1;
        for (std::size_t j = 1; j < row.size(); ++j) {
            const qsizetype substitution = character == y[qsizetype(j) - 1] ? 0 : 1;
            row[j] = std::min({previous[j] + 1, row[j - 1] + 1, previous[j - 1] + substitution});
        }
        previous.swap(row);
    }
    return previous.back();
}

bool isLikelyShortRevision(const CharacterSequence &current, const CharacterSequence &incoming)
{
    const auto [shorter, longer] = std::minmax({current.size(), incoming.size()});
    if (shorter < 3 || shorter > 18 || longer > 24 || commonPrefixLength(current, incoming) < 2) {
        return false;
    }
    const qsizetype allowance = longer <= 5 ? 2 : longer / 3;
    return editDistance(current, incoming) <= allowance;
}

bool hasStrongCommonPrefix(const CharacterSequence &current, const CharacterSequence &incoming)
{
    const auto [shorter, longer] = std::minmax({current.size(), incoming.size()});
    if (shorter < 12) {
        return false;
    }
    const qsizetype prefix = commonPrefixLength(current, incoming);
    return prefix >= 12 && prefix * 100 >= longer * 58;
}

bool fallbackIsRevisionOfCurrentPartial(const QString &current, const QString &incoming)
{
    const CharacterSequence a(normalizedForComparison(current));
    const CharacterSequence b(normalizedForComparison(incoming));
    if (a.isEmpty() || b.isEmpty()) {
        return false;
    }
    // Equal texts, and texts of which one begins with the other, share all of the shorter one.
    if (commonPrefixLength(a, b) == std::min(a.size(), b.size())) {
        return true;
    }
    return isLikelyShortRevision(a, b) || hasStrongCommonPrefix(a, b);
}

} // namespace lumaphone
