#include "translation/engine/Vocabulary.h"

#include "translation/engine/EngineError.h"
#include "translation/engine/MappedFile.h"
#include "translation/engine/VocabularyCheck.h"

#include <sentencepiece_processor.h>

namespace lumaphone::engine {
namespace {

std::string_view textOf(const MappedFile &file)
{
    return {reinterpret_cast<const char *>(file.bytes().data()), file.bytes().size()};
}

} // namespace

Vocabulary::Vocabulary(const QString &path)
    : Vocabulary(textOf(MappedFile(path)), path)
{
}

Vocabulary::Vocabulary(std::string_view bytes, const QString &path)
    : m_path(path)
    , m_processor(std::make_unique<sentencepiece::SentencePieceProcessor>())
{
    checkVocabularyFile(bytes, path);
    const auto status = m_processor->LoadFromSerializedProto({bytes.data(), bytes.size()});
    if (!status.ok())
        throw EngineError(EngineError::Case::damaged, path, QString::fromStdString(status.ToString()));
    m_size = m_processor->GetPieceSize();
    m_endOfSentence = m_processor->eos_id();
    m_unknown = m_processor->unk_id();
    const auto isWord = [this](int word) {
        return word >= 0 && word < m_size;
    };
    if (!isWord(m_endOfSentence) || !isWord(m_unknown))
        throw EngineError(
            EngineError::Case::unsupported, path, QStringLiteral("no end of sentence or no unknown word"));
}

Vocabulary::~Vocabulary() = default;

std::vector<Vocabulary::Piece> Vocabulary::encode(std::string_view text) const
{
    const auto encoded = m_processor->EncodeAsImmutableProto({text.data(), text.size()});
    std::vector<Piece> pieces;
    pieces.reserve(encoded.pieces_size());
    for (std::size_t index = 0; index < encoded.pieces_size(); ++index) {
        const auto piece = encoded.pieces(int(index));
        pieces.push_back({int(piece.id()), piece.begin(), piece.end()});
    }
    return pieces;
}

Vocabulary::Spelling Vocabulary::decode(std::span<const int> words) const
{
    const auto decoded = m_processor->DecodeIdsAsImmutableProto(std::vector<int>(words.begin(), words.end()));
    Spelling spelling = {decoded.text(), {}};
    for (std::size_t index = 0; index < decoded.pieces_size(); ++index)
        spelling.ends.push_back(decoded.pieces(int(index)).end());
    return spelling;
}

} // namespace lumaphone::engine
