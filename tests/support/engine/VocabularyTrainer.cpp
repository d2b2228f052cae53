#include "support/engine/VocabularyTrainer.h"

#include "support/engine/SampleSentences.h"

#include <sentencepiece_trainer.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <unordered_map>

namespace lumaphone::engine::test {
namespace {

enum class PieceKind { normal = 1, unknown = 2, control = 3 };

class Sentences : public sentencepiece::SentenceIterator
{
public:
    bool done() const override { return m_index >= m_sentences.size(); }
    void Next() override { ++m_index; }
    const std::string &value() const override { return m_sentences[m_index]; }
    sentencepiece::util::Status status() const override { return {}; }

private:
    std::vector<std::string> m_sentences = sampleSentences();
    std::size_t m_index = 0;
};

std::string train(int words, bool hasBytes)
{
    std::string model;
    Sentences sentences;
    const std::unordered_map<std::string, std::string> settings = {{"model_prefix", ""},
        {"model_type", "unigram"}, {"vocab_size", std::to_string(words)}, {"hard_vocab_limit", "false"},
        {"character_coverage", "0.9995"}, {"byte_fallback", hasBytes ? "true" : "false"}, {"eos_id", "0"},
        {"unk_id", "1"}, {"bos_id", "-1"}, {"pad_id", "-1"}, {"num_threads", "1"}, {"minloglevel", "2"}};
    const auto status = sentencepiece::SentencePieceTrainer::Train(settings, &sentences, &model);
    if (!status.ok())
        throw std::runtime_error(status.ToString());
    return model;
}

void appendVarint(std::string &bytes, std::uint64_t number)
{
    for (; number > 127; number >>= 7)
        bytes.push_back(static_cast<char>((number & 127) | 128));
    bytes.push_back(static_cast<char>(number));
}

std::string pieceField(const std::string &text, float score, PieceKind kind)
{
    std::string message;
    message.push_back(0x0A);
    appendVarint(message, text.size());
    message += text;
    message.push_back(0x15);
    std::array<char, sizeof score> raw;
    std::memcpy(raw.data(), &score, sizeof score);
    message.append(raw.data(), raw.size());
    message.push_back(0x18);
    appendVarint(message, std::uint64_t(kind));
    std::string field;
    field.push_back(0x0A);
    appendVarint(field, message.size());
    return field + message;
}

std::uint64_t takeVarint(std::string_view &bytes)
{
    std::uint64_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        number |= std::uint64_t(byte & 127) << shift;
        if (byte < 128)
            return number;
    }
}

struct Parts
{
    std::string pieces;
    std::string rest; ///< how the vocabulary was trained and how it treats characters
    int count = 0;
};

Parts partsOf(std::string_view vocabulary)
{
    Parts parts;
    while (!vocabulary.empty()) {
        const std::string_view start = vocabulary;
        const std::uint64_t key = takeVarint(vocabulary);
        vocabulary.remove_prefix(takeVarint(vocabulary)); // every top-level field is a message
        const std::string_view field = start.substr(0, start.size() - vocabulary.size());
        const bool isPiece = key >> 3 == 1;
        (isPiece ? parts.pieces : parts.rest) += field;
        parts.count += isPiece;
    }
    return parts;
}

std::string numbered(const char *prefix, int number)
{
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "\u2581%s%05d", prefix, number);
    return text.data();
}

} // namespace

std::string trainVocabulary(int words)
{
    return train(words, true);
}

std::string paddedVocabulary(std::string_view vocabulary, int words)
{
    Parts parts = partsOf(vocabulary);
    for (int word = parts.count; word < words; ++word)
        parts.pieces
            += pieceField(numbered("zq", word), -20.0F - 1e-4F * static_cast<float>(word), PieceKind::normal);
    return parts.pieces + parts.rest;
}

std::string namingVocabulary(int words)
{
    std::string pieces
        = pieceField("</s>", 0, PieceKind::control) + pieceField("<unk>", 0, PieceKind::unknown);
    for (int word = 2; word < words; ++word)
        pieces += pieceField(numbered("w", word), -10.0F, PieceKind::normal);
    return pieces + partsOf(train(400, false)).rest;
}

std::string namesOf(const std::vector<int> &words)
{
    std::string text;
    for (const int word : words) {
        std::array<char, 32> name;
        std::snprintf(name.data(), name.size(), "w%05d", word);
        if (!text.empty())
            text += ' ';
        text += name.data();
    }
    return text;
}

std::vector<int> wordsNamedIn(std::string_view text)
{
    std::vector<int> words;
    while (!text.empty()) {
        const std::string_view name = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(text.size(), name.size() + 1));
        int word = -1;
        if (name.size() > 1)
            std::from_chars(name.data() + 1, name.data() + name.size(), word);
        words.push_back(word);
    }
    return words;
}

} // namespace lumaphone::engine::test
