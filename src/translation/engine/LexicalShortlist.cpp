#include "translation/engine/LexicalShortlist.h"

#include "translation/engine/ByteReader.h"

#include <algorithm>

namespace lumaphone::engine {
namespace {

constexpr std::uint64_t magic = 0xF11A48D5013417F5;
// The output layer takes words in groups of this size.
constexpr std::size_t group = 8;
constexpr std::size_t checkedAtATime = 65536;
constexpr std::size_t lookedAtATime = 16;

template<class Number> std::span<const Number> numbersIn(std::span<const std::byte> bytes)
{
    return {
        static_cast<const Number *>(static_cast<const void *>(bytes.data())), bytes.size() / sizeof(Number)};
}

} // namespace

LexicalShortlist::LexicalShortlist(const QString &path, int sourceWords, int targetWords)
    : m_targetWords(targetWords)
{
    m_mapping.emplace(path);
    read(m_mapping->bytes(), path, sourceWords);
}

LexicalShortlist::LexicalShortlist(
    std::span<const std::byte> bytes, const QString &path, int sourceWords, int targetWords)
    : m_targetWords(targetWords)
{
    read(bytes, path, sourceWords);
}

void LexicalShortlist::read(std::span<const std::byte> bytes, const QString &path, int sourceWords)
{
    using enum EngineError::Case;
    const auto refuse = [&](EngineError::Case which, const QString &subject) {
        throw EngineError(which, path, subject);
    };
    ByteReader reader(bytes, path);
    const QString header = QStringLiteral("header");
    if (reader.number<std::uint64_t>(header) != magic)
        refuse(NotRecognised, QStringLiteral("magic number"));
    reader.number<std::uint64_t>(header); // a checksum that depends on one standard library's hash
    const auto always = reader.number<std::uint64_t>(header);
    reader.number<std::uint64_t>(header); // words per list at most, which the offsets say exactly
    const auto offsetCount = reader.number<std::uint64_t>(header);
    const auto wordCount = reader.number<std::uint64_t>(header);
    if (always > std::uint64_t(m_targetWords))
        refuse(Mismatched, QStringLiteral("%1 frequent words").arg(always));
    if (offsetCount < 2 || offsetCount > std::uint64_t(sourceWords) + 1)
        refuse(Mismatched, QStringLiteral("lists for %1 words").arg(offsetCount - 1));
    if (wordCount > bytes.size())
        refuse(Truncated, QStringLiteral("lists"));
    m_alwaysBelow = std::uint32_t(always);
    m_offsets = numbersIn<std::uint64_t>(
        reader.take(offsetCount * sizeof(std::uint64_t), QStringLiteral("offsets")));
    m_words
        = numbersIn<std::uint32_t>(reader.take(wordCount * sizeof(std::uint32_t), QStringLiteral("lists")));
    if (reader.remaining() != 0)
        refuse(Damaged, QStringLiteral("%1 bytes too many").arg(reader.remaining()));
    if (!std::is_sorted(m_offsets.begin(), m_offsets.end()) || m_offsets.back() != wordCount)
        refuse(Damaged, QStringLiteral("offsets"));
    const auto isForeign = [this](std::uint32_t word) {
        return word >= std::uint32_t(m_targetWords);
    };
    for (std::size_t first = 0; first < m_words.size(); first += checkedAtATime) {
        const auto part = m_words.subspan(first, std::min(checkedAtATime, m_words.size() - first));
        if (std::any_of(part.begin(), part.end(), isForeign))
            refuse(Mismatched, QStringLiteral("a word beyond the vocabulary"));
        release();
    }
}

void LexicalShortlist::release() const
{
    if (m_mapping)
        m_mapping->release();
}

std::vector<std::uint32_t> LexicalShortlist::candidates(std::span<const int> sentence, bool isShared) const
{
    std::vector<std::uint32_t> found;
    std::size_t looked = 0;
    for (const int word : sentence) {
        // Every list brings its surroundings into memory.
        if (++looked % lookedAtATime == 0)
            release();
        const std::size_t index = std::size_t(word);
        if (isShared)
            found.push_back(std::uint32_t(word));
        if (index + 1 < m_offsets.size())
            found.insert(found.end(), m_words.begin() + std::ptrdiff_t(m_offsets[index]),
                m_words.begin() + std::ptrdiff_t(m_offsets[index + 1]));
    }
    for (std::uint32_t word = 0; word < m_alwaysBelow; ++word)
        found.push_back(word);
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    const std::size_t listed = found.size();
    for (std::uint32_t word = m_alwaysBelow; found.size() % group != 0 && word < std::uint32_t(m_targetWords);
         ++word) {
        if (!std::binary_search(found.begin(), found.begin() + std::ptrdiff_t(listed), word))
            found.push_back(word);
    }
    std::sort(found.begin(), found.end());
    release();
    return found;
}

} // namespace lumaphone::engine
