#pragma once

#include "translation/engine/SentenceModel.h"
#include "translation/engine/SourceChunks.h"

#include <QString>

#include <mutex>
#include <stop_token>

namespace lumaphone::engine {

/// One direction, ready to translate texts of any length. May be called from any thread; calls take turns.
class TranslationModel
{
public:
    /// Loads and checks the files; the weights stay mapped. Takes some tens of milliseconds. Throws
    /// EngineError.
    explicit TranslationModel(const ModelFiles &files, const EngineOptions &options = {});

    /// Translates sentence by sentence. Line breaks stay; other white space between sentences becomes what
    /// the scripts ask for. Placeholders and addresses come through letter for letter. Throws EngineError
    /// (Cancelled).
    QString translate(const QString &text, const std::stop_token &stop = {});

    /// Reads the weights once, so that the first translation is as quick as the next.
    void warmUp();

private:
    QString translateSentence(const QString &sentence, const std::stop_token &stop);
    QString translateChunk(const SourceChunk &chunk, const std::stop_token &stop);

    std::mutex m_turn;
    SentenceModel m_model;
};

} // namespace lumaphone::engine
