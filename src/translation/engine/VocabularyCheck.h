#pragma once

#include <QString>

#include <string_view>

namespace lumaphone::engine {

/// Checks what the SentencePiece library trusts in a vocabulary file: the frame of the messages, and the
/// table of character rules, in which a wrong link would lead outside of its memory. Throws EngineError
/// naming `path`.
void checkVocabularyFile(std::string_view bytes, const QString &path);

} // namespace lumaphone::engine
