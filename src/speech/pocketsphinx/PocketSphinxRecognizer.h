#pragma once

#include "speech/framework/GrowingText.h"
#include "speech/framework/StreamingRecognizer.h"
#include "speech/pocketsphinx/PocketSphinxModel.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace lumaphone {

/// Decodes one locale with PocketSphinx. An utterance ends at a pause, or when it has lasted 20 s.
class PocketSphinxRecognizer final : public StreamingRecognizer
{
public:
    PocketSphinxRecognizer(QString localeIdentifier, PocketSphinxModel model, RecognitionSink sink);
    ~PocketSphinxRecognizer() override;

    std::vector<QString> localeIdentifiers() const override { return {m_localeIdentifier}; }
    void load() override;
    void accept(std::span<const std::int16_t> samples) override;
    void finish() override;
    void cancel() noexcept override;

private:
    class Decoder;

    void decode(std::span<const std::int16_t> block);
    void endUtterance();
    void giveVolatile(const QString &hypothesis);
    void giveFinal(const QString &text);
    /// Of the utterance under way.
    std::chrono::duration<double> speech() const;

    const QString m_localeIdentifier;
    const PocketSphinxModel m_model;
    const RecognitionSink m_sink;
    std::atomic<bool> m_isCancelled = false;

    std::unique_ptr<Decoder> m_decoder;
    std::vector<std::int16_t> m_pending; ///< less than a block
    bool m_hasSpeech = false; ///< in the utterance under way
    std::size_t m_utteranceSamples = 0; ///< since its speech began
    std::size_t m_samplesSinceText = 0; ///< since its last text
    GrowingText m_growing;
};

} // namespace lumaphone
