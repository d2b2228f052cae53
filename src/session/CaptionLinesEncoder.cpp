#include "session/CaptionLinesEncoder.h"

#include <algorithm>
#include <iterator>

namespace lumaphone {

namespace {

constexpr QByteArrayView separator = ",\n";

/// The same text in the same units, mostly because both share their memory.
bool isSameText(const QString &a, const QString &b)
{
    return a.size() == b.size() && (a.constData() == b.constData() || a == b);
}

bool encodesTheSame(const LumaphoneCaptionLine &a, const LumaphoneCaptionLine &b)
{
    return a.id == b.id && a.revision == b.revision && a.isFinal == b.isFinal
        && a.sourceLanguage == b.sourceLanguage && isSameText(a.sourceText, b.sourceText)
        && isSameText(a.translatedText, b.translatedText) && a.createdAt == b.createdAt;
}

QByteArray encoded(const LumaphoneCaptionLine &line)
{
    // Line breaks inside texts are escaped, so that only those between members are indented.
    return "    " + json::pretty(toJson(line)).replace("\n", "\n    ") + separator.toByteArray();
}

} // namespace

QByteArrayView CaptionLinesEncoder::encode(const QList<LumaphoneCaptionLine> &lines)
{
    const auto sameAtBegin
        = std::mismatch(m_lines.begin(), m_lines.end(), lines.begin(), lines.end(), encodesTheSame).first;
    const auto first = std::size_t(sameAtBegin - m_lines.begin());
    const auto sameAtEnd = std::mismatch(m_lines.rbegin(), std::make_reverse_iterator(sameAtBegin),
        lines.rbegin(), std::make_reverse_iterator(lines.begin() + qsizetype(first)), encodesTheSame)
                               .first;
    const auto kept = std::size_t(sameAtEnd - m_lines.rbegin());
    const std::size_t removed = m_lines.size() - first - kept;
    const qsizetype added = lines.size() - qsizetype(first + kept);
    if (removed > 0 || added > 0) {
        replaceLines(first, removed, lines, added);
    }
    return QByteArrayView(m_bytes).chopped(m_bytes.isEmpty() ? 0 : separator.size());
}

void CaptionLinesEncoder::replaceLines(
    std::size_t first, std::size_t removed, const QList<LumaphoneCaptionLine> &lines, qsizetype added)
{
    const qsizetype begin = first == 0 ? 0 : m_ends[first - 1];
    const qsizetype end = first + removed == 0 ? 0 : m_ends[first + removed - 1];
    QByteArray bytes;
    std::vector<qsizetype> ends;
    for (qsizetype i = 0; i < added; ++i) {
        const LumaphoneCaptionLine &line = lines.at(qsizetype(first) + i);
        const bool wasFinal = std::size_t(i) < removed && m_lines[first + std::size_t(i)].id == line.id
            && m_lines[first + std::size_t(i)].isFinal;
        m_becameFinal = m_becameFinal || (line.isFinal && !wasFinal);
        bytes += encoded(line);
        ends.push_back(begin + bytes.size());
    }
    m_bytes.replace(begin, end - begin, bytes);
    const auto at = [first](auto &list) {
        return list.begin() + std::ptrdiff_t(first);
    };
    m_ends.erase(at(m_ends), at(m_ends) + std::ptrdiff_t(removed));
    const qsizetype moved = begin + bytes.size() - end;
    std::for_each(at(m_ends), m_ends.end(), [moved](qsizetype &lineEnd) { lineEnd += moved; });
    m_ends.insert(at(m_ends), ends.begin(), ends.end());
    m_lines.erase(at(m_lines), at(m_lines) + std::ptrdiff_t(removed));
    m_lines.insert(at(m_lines), lines.begin() + qsizetype(first), lines.begin() + qsizetype(first) + added);
}

} // namespace lumaphone
