#include "base/Text.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace lumaphone::text {

namespace {

bool isAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

/// Whether the unit is a scalar of its own that canonical decomposition neither changes nor moves.
bool isStable(QChar unit)
{
    return !unit.isSurrogate() && unit.decompositionTag() != QChar::Canonical && unit.combiningClass() == 0;
}

bool isHangulSyllable(QChar unit)
{
    return unit >= QChar(u'\uAC00') && unit <= QChar(u'\uD7A3');
}

/// A syllable without its final consonant, which may as well be written as a letter of its own.
int openHangulSyllable(QChar syllable)
{
    constexpr int finalConsonants = 28;
    return (syllable.unicode() - u'\uAC00') / finalConsonants;
}

/// Whether two texts are told apart by their first different unit alone, without decomposing them.
bool differPlainly(QStringView a, QStringView b)
{
    const auto [inA, inB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (inA == a.end() || inB == b.end()) {
        // A decomposition is as long as those of its parts together, so that what follows makes a difference.
        return inA != a.end() || inB != b.end();
    }
    if (isHangulSyllable(*inA) && isHangulSyllable(*inB)) {
        return openHangulSyllable(*inA) != openHangulSyllable(*inB);
    }
    return isStable(*inA) && isStable(*inB);
}

bool hasFoldableMarks(QChar::Script script)
{
    return script == QChar::Script_Latin || script == QChar::Script_Greek || script == QChar::Script_Cyrillic;
}

/// `decomposed` without the combining marks of letters that lose them.
QString withoutDiacritics(const QString &decomposed)
{
    if (std::none_of(decomposed.begin(), decomposed.end(),
            [](QChar unit) { return unit.isMark() || unit.isSurrogate(); })) {
        return decomposed;
    }
    QString result;
    result.reserve(decomposed.size());
    bool baseLosesMarks = false;
    for (const char32_t scalar : decomposed.toUcs4()) {
        if (QChar::isMark(scalar)) {
            if (baseLosesMarks) {
                continue;
            }
        } else {
            baseLosesMarks = hasFoldableMarks(QChar::script(scalar));
        }
        result.append(QStringView(QChar::fromUcs4(scalar)));
    }
    return result;
}

/// Full case folding: the library's own keeps ß and ﬁ, which are "ss" and "fi" in capitals.
QString caseFolded(const QString &text)
{
    QString folded = text.toCaseFolded();
    const auto isLongerInCapitals = [](QChar unit) {
        return unit.unicode() >= 0x80 && unit.isLower() && QString(unit).toUpper().size() > 1;
    };
    if (std::none_of(folded.cbegin(), folded.cend(), isLongerInCapitals)) {
        return folded;
    }
    QString result;
    for (const QChar unit : std::as_const(folded)) {
        result.append(isLongerInCapitals(unit) ? QString(unit).toUpper().toCaseFolded() : QString(unit));
    }
    return result;
}

} // namespace

bool isWhiteSpace(char32_t scalar)
{
    return QChar::isSpace(scalar);
}

QString trimmed(const QString &text)
{
    // Every White_Space scalar lies in the basic plane, so single UTF-16 units can be looked at.
    return text.trimmed();
}

QList<QString> splitAtWhiteSpace(const QString &text)
{
    QList<QString> pieces;
    qsizetype start = -1;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        const bool inside = i < text.size() && !isWhiteSpace(text[i].unicode());
        if (inside && start < 0) {
            start = i;
        } else if (!inside && start >= 0) {
            pieces.append(text.mid(start, i - start));
            start = -1;
        }
    }
    return pieces;
}

QString lowercased(const QString &text)
{
    return text.toLower();
}

QString canonicalForm(const QString &text)
{
    return isAscii(text) ? text : text.normalized(QString::NormalizationForm_D);
}

bool canonicallyEqual(const QString &a, const QString &b)
{
    if (a == b) {
        return true;
    }
    return !differPlainly(a, b) && canonicalForm(a) == canonicalForm(b);
}

QList<QString> characters(const QString &text)
{
    QList<QString> result;
    result.reserve(text.size());
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end != -1; end = finder.toNextBoundary()) {
        result.append(canonicalForm(text.mid(start, end - start)));
        start = end;
    }
    return result;
}

QString foldedForSearch(const QString &text)
{
    // Marks go first: folding turns the iota below a Greek letter into a letter of its own.
    const QString folded = caseFolded(withoutDiacritics(canonicalForm(text)));
    return isAscii(folded) ? folded : folded.normalized(QString::NormalizationForm_C);
}

} // namespace lumaphone::text
