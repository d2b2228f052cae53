#include "translation/engine/LexicalShortlist.h"

#include <algorithm>
#include <array>

namespace lumaphone::engine {
namespace {

constexpr std::uint64_t magic = 0xF11A48D5013417F5;
// Magic number, checksum, frequent words, words per list at most, offsets, words.
constexpr std::size_t headerNumbers = 6;
constexpr std::uint64_t headerSize = headerNumbers * sizeof(std::uint64_t);
// The output layer takes words in groups of this size.
constexpr std::size_t group = 8;
constexpr std::uint64_t checkedAtATime = 16384;

} // namespace

LexicalShortlist::LexicalShortlist(const QString &path, int sourceWords, int targetWords)
    : m_file(path)
    , m_targetWords(std::uint32_t(targetWords))
{
    using enum EngineError::Case;
    std::array<std::uint64_t, headerNumbers> header;
    m_file.read(0, std::as_writable_bytes(std::span(header)), QStringLiteral("header"));
    if (header[0] != magic)
        refuse(notRecognised, QStringLiteral("magic number"));
    // The checksum depends on one standard library's hash; the offsets say exactly how long lists are.
    const std::uint64_t always = header[2];
    m_offsetCount = header[4];
    m_wordCount = header[5];
    if (always > m_targetWords)
        refuse(mismatched, QStringLiteral("%1 frequent words").arg(always));
    if (m_offsetCount < 2 || m_offsetCount > std::uint64_t(sourceWords) + 1)
        refuse(mismatched, QStringLiteral("lists for %1 words").arg(m_offsetCount - 1));
    const std::uint64_t before = headerSize + m_offsetCount * sizeof(std::uint64_t);
    if (m_file.size() < before)
        refuse(truncated, QStringLiteral("offsets"));
    const std::uint64_t rest = m_file.size() - before;
    if (m_wordCount > rest / sizeof(std::uint32_t))
        refuse(truncated, QStringLiteral("lists"));
    if (const std::uint64_t tooMany = rest - m_wordCount * sizeof(std::uint32_t))
        refuse(damaged, QStringLiteral("%1 bytes too many").arg(tooMany));
    m_alwaysBelow = std::uint32_t(always);
    check();
}

/// Reads all there is once, in pieces.
void LexicalShortlist::check() const
{
    std::vector<std::uint64_t> offsets;
    std::uint64_t last = 0;
    for (std::uint64_t first = 0; first < m_offsetCount; first += checkedAtATime) {
        offsets.resize(std::min(checkedAtATime, m_offsetCount - first));
        readOffsets(first, offsets);
        if (offsets.front() < last || !std::is_sorted(offsets.begin(), offsets.end()))
            refuse(EngineError::Case::damaged, QStringLiteral("offsets"));
        last = offsets.back();
    }
    if (last != m_wordCount)
        refuse(EngineError::Case::damaged, QStringLiteral("offsets"));
    std::vector<std::uint32_t> words;
    for (std::uint64_t first = 0; first < m_wordCount; first += checkedAtATime) {
        words.resize(std::min(checkedAtATime, m_wordCount - first));
        readWords(first, words);
    }
}

void LexicalShortlist::readOffsets(std::uint64_t first, std::span<std::uint64_t> offsets) const
{
    m_file.read(headerSize + first * sizeof(std::uint64_t), std::as_writable_bytes(offsets),
        QStringLiteral("offsets"));
}

void LexicalShortlist::readWords(std::uint64_t first, std::span<std::uint32_t> words) const
{
    const std::uint64_t position
        = headerSize + m_offsetCount * sizeof(std::uint64_t) + first * sizeof(std::uint32_t);
    m_file.read(position, std::as_writable_bytes(words), QStringLiteral("lists"));
    if (std::any_of(words.begin(), words.end(), [this](std::uint32_t word) { return word >= m_targetWords; }))
        refuse(EngineError::Case::mismatched, QStringLiteral("a word beyond the vocabulary"));
}

void LexicalShortlist::appendList(std::uint64_t sourceWord, std::vector<std::uint32_t> &words) const
{
    std::array<std::uint64_t, 2> borders;
    readOffsets(sourceWord, borders);
    // The file may have changed since it was checked.
    if (borders[0] > borders[1] || borders[1] > m_wordCount)
        refuse(EngineError::Case::damaged, QStringLiteral("offsets"));
    const std::size_t before = words.size();
    words.resize(before + std::size_t(borders[1] - borders[0]));
    readWords(borders[0], std::span(words).subspan(before));
}

void LexicalShortlist::refuse(EngineError::Case which, const QString &subject) const
{
    throw EngineError(which, m_file.path(), subject);
}

std::vector<std::uint32_t> LexicalShortlist::candidates(std::span<const int> sentence, bool isShared) const
{
    std::vector<std::uint32_t> found;
    for (const int word : sentence) {
        if (isShared)
            found.push_back(std::uint32_t(word));
        if (std::uint64_t(word) + 1 < m_offsetCount)
            appendList(std::uint64_t(word), found);
    }
    for (std::uint32_t word = 0; word < m_alwaysBelow; ++word)
        found.push_back(word);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    const std::size_t listed = found.size();
    for (std::uint32_t word = m_alwaysBelow; found.size() % group != 0 && word < m_targetWords; ++word) {
        if (!std::binary_search(found.begin(), found.begin() + std::ptrdiff_t(listed), word))
            found.push_back(word);
    }
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace lumaphone::engine
