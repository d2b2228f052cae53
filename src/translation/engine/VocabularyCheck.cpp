#include "translation/engine/VocabularyCheck.h"

#include "translation/engine/EngineError.h"

#include <cstdint>
#include <cstring>

namespace lumaphone::engine {
namespace {

constexpr std::size_t largestVocabulary = 64 << 20;

// Field numbers of the vocabulary's message and of its normalizer.
constexpr std::uint64_t piecesField = 1;
constexpr std::uint64_t normalizerField = 3;
constexpr std::uint64_t denormalizerField = 5;
constexpr std::uint64_t characterRulesField = 2;

struct Field
{
    std::uint64_t number;
    std::string_view content; ///< empty unless the field carries bytes
};

/// Walks through the fields of one message.
class Message
{
public:
    Message(std::string_view bytes, const QString &path)
        : m_rest(bytes)
        , m_path(path)
    {
    }

    bool isAtEnd() const { return m_rest.empty(); }

    Field next()
    {
        const std::uint64_t key = varint();
        switch (key & 7) {
        case 0:
            varint();
            return {key >> 3, {}};
        case 1:
            take(8);
            return {key >> 3, {}};
        case 2:
            return {key >> 3, take(varint())};
        case 5:
            take(4);
            return {key >> 3, {}};
        default:
            throw EngineError(EngineError::Case::notRecognised, m_path, QStringLiteral("vocabulary message"));
        }
    }

private:
    std::string_view take(std::uint64_t count)
    {
        if (count > m_rest.size())
            throw EngineError(EngineError::Case::truncated, m_path, QStringLiteral("vocabulary message"));
        const std::string_view taken = m_rest.substr(0, std::size_t(count));
        m_rest.remove_prefix(std::size_t(count));
        return taken;
    }

    std::uint64_t varint()
    {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const auto byte = static_cast<unsigned char>(take(1).front());
            value |= std::uint64_t(byte & 0x7F) << shift;
            if (byte < 0x80)
                return value;
        }
        throw EngineError(
            EngineError::Case::damaged, m_path, QStringLiteral("number in the vocabulary message"));
    }

    std::string_view m_rest;
    QString m_path;
};

std::uint32_t unitAt(std::string_view units, std::size_t index)
{
    std::uint32_t unit = 0;
    std::memcpy(&unit, units.data() + index * sizeof unit, sizeof unit);
    return unit;
}

/// The rules are a double-array trie and the texts it points to. Every link of every inner unit, followed
/// with any byte, must stay inside, every value must point into the texts, and the last text must end.
bool areCharacterRulesSound(std::string_view rules)
{
    std::uint32_t trieBytes = 0;
    if (rules.size() < sizeof trieBytes)
        return false;
    std::memcpy(&trieBytes, rules.data(), sizeof trieBytes);
    rules.remove_prefix(sizeof trieBytes);
    if (trieBytes == 0 || trieBytes % sizeof trieBytes != 0 || trieBytes >= rules.size()
        || rules.back() != '\0')
        return false;
    const std::string_view units = rules.substr(0, trieBytes);
    const std::size_t texts = rules.size() - trieBytes;
    const std::size_t count = trieBytes / sizeof(std::uint32_t);
    for (std::size_t index = 0; index < count; ++index) {
        const std::uint32_t unit = unitAt(units, index);
        constexpr std::uint32_t leafBit = 1U << 31;
        if (unit & leafBit)
            continue; // a value, never walked through
        const std::size_t target = index ^ (std::size_t(unit >> 10) << ((unit & (1U << 9)) >> 6));
        if ((target | 0xFF) >= count)
            return false;
        const bool hasValue = (unit & (1U << 8)) != 0;
        if (hasValue && (target >= count || (unitAt(units, target) & ~leafBit) >= texts))
            return false;
    }
    return true;
}

void checkNormalizer(std::string_view bytes, const QString &path)
{
    Message message(bytes, path);
    while (!message.isAtEnd()) {
        const Field field = message.next();
        if (field.number == characterRulesField && !field.content.empty()
            && !areCharacterRulesSound(field.content))
            throw EngineError(EngineError::Case::damaged, path, QStringLiteral("character rules"));
    }
}

} // namespace

void checkVocabularyFile(std::string_view bytes, const QString &path)
{
    if (bytes.size() > largestVocabulary)
        throw EngineError(
            EngineError::Case::notRecognised, path, QStringLiteral("%1 bytes").arg(bytes.size()));
    Message message(bytes, path);
    int pieces = 0;
    while (!message.isAtEnd()) {
        const Field field = message.next();
        if (field.number == piecesField)
            ++pieces;
        if (field.number == normalizerField || field.number == denormalizerField)
            checkNormalizer(field.content, path);
    }
    if (pieces == 0)
        throw EngineError(EngineError::Case::notRecognised, path, QStringLiteral("no pieces"));
}

} // namespace lumaphone::engine
