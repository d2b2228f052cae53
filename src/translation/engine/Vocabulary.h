#pragma once

#include <QString>

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sentencepiece {
class SentencePieceProcessor;
}

namespace lumaphone::engine {

/// A SentencePiece vocabulary: text to word numbers and back.
class Vocabulary
{
public:
    /// A piece of a text: its number and the bytes of the text that it stands for.
    struct Piece
    {
        int word;
        std::size_t begin;
        std::size_t end;
    };

    /// A text put together from words, and the end of each word's bytes in it.
    struct Spelling
    {
        std::string text;
        std::vector<std::size_t> ends;
    };

    /// Throws EngineError.
    explicit Vocabulary(const QString &path);
    /// The same for bytes that somebody else keeps; `path` names them in errors.
    Vocabulary(std::string_view bytes, const QString &path);
    ~Vocabulary();

    const QString &path() const { return m_path; }
    int size() const { return m_size; }
    /// The word that ends a sentence.
    int endOfSentence() const { return m_endOfSentence; }
    /// The word that stands for what the vocabulary does not know.
    int unknown() const { return m_unknown; }

    /// Without the end of the sentence.
    std::vector<Piece> encode(std::string_view text) const;
    Spelling decode(std::span<const int> words) const;

private:
    QString m_path;
    std::unique_ptr<sentencepiece::SentencePieceProcessor> m_processor;
    int m_size = 0;
    int m_endOfSentence = 0;
    int m_unknown = 0;
};

} // namespace lumaphone::engine
