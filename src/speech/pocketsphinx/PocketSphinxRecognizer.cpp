#include "speech/pocketsphinx/PocketSphinxRecognizer.h"

#include "speech/framework/RecognizedText.h"

#include <QFile>
#include <QRegularExpression>

#include <pocketsphinx.h>
#include <sphinxbase/err.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

namespace lumaphone {

namespace {

constexpr std::size_t sampleRateHz = 16000;
/// The decoder is asked after every block whether someone speaks, so the size of a block decides where
/// utterances end. This one is what its own tools use.
constexpr std::size_t blockSamples = 2048;
/// A volatile text every 0.256 s.
constexpr std::size_t samplesPerText = 2 * blockSamples;
/// The sound before the detector is sure of speech, which belongs to the utterance: 0.3 s.
constexpr std::size_t leadSamples = sampleRateHz * 3 / 10;
constexpr std::size_t longestUtteranceSamples = 20 * sampleRateHz;

/// Its search takes back much of what it has just said, its first word most of all.
constexpr GrowingText::Agreement agreement {.onFirstWord = 4, .onOtherWords = 3};

/// What the library reports on this thread while it works for us: it has one log for the whole process.
thread_local QString *currentReport = nullptr;

/// Collects errors. The library ends the process after a fatal one; leaving it by an exception is the only
/// way round that. It is plain C with nothing to unwind, so what it held is lost, and nothing else.
void receiveLog(void *, err_lvl_t level, const char *format, ...)
{
    if (level < ERR_ERROR) {
        return;
    }
    std::array<char, 1024> buffer {};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    // Without the library's source position: ERROR: "tmat.c", line 215: Failed to read…
    static const QRegularExpression position(QStringLiteral("^\\w+: \"[^\"]*\", line \\d+: "));
    const QString message = QString::fromLocal8Bit(buffer.data()).remove(position).trimmed();
    if (currentReport && currentReport->isEmpty()) {
        *currentReport = message;
    }
    if (level == ERR_FATAL) {
        throw SpeechFrameworkError(QStringLiteral("語音辨識引擎發生錯誤：%1").arg(message));
    }
}

/// Keeps the library's words off the terminal. Before every decoder, since the log is the process's.
void redirectLog()
{
    static std::once_flag redirected;
    std::call_once(redirected, [] {
        err_set_logfp(nullptr);
        err_set_callback(receiveLog, nullptr);
    });
}

/// While it lives, `report` receives the first error of this thread.
class ReportScope
{
public:
    explicit ReportScope(QString &report)
        : m_previous(std::exchange(currentReport, &report))
    {
    }
    ~ReportScope() { currentReport = m_previous; }
    ReportScope(const ReportScope &) = delete;
    ReportScope &operator=(const ReportScope &) = delete;

private:
    QString *m_previous;
};

struct ConfigurationDeleter
{
    void operator()(cmd_ln_t *configuration) const { cmd_ln_free_r(configuration); }
};

QString plainText(const char *hypothesis)
{
    if (!hypothesis) {
        return {};
    }
    // "the(2)" is the second pronunciation of "the".
    static const QRegularExpression pronunciation(QStringLiteral("\\(\\d+\\)(?=\\s|$)"));
    return QString::fromUtf8(hypothesis).remove(pronunciation).simplified();
}

} // namespace

/// The library's decoder, always within an utterance. Every operation throws SpeechFrameworkError.
class PocketSphinxRecognizer::Decoder
{
public:
    explicit Decoder(const PocketSphinxModel &model)
    {
        redirectLog();
        QString report;
        const ReportScope scope(report);
        const std::unique_ptr<cmd_ln_t, ConfigurationDeleter> configuration(cmd_ln_init(nullptr, ps_args(), 1,
            "-hmm", QFile::encodeName(model.acousticModel()).constData(), //
            "-lm", QFile::encodeName(model.languageModel()).constData(), //
            "-dict", QFile::encodeName(model.dictionary()).constData(), nullptr));
        try {
            m_decoder.reset(configuration ? ps_init(configuration.get()) : nullptr);
        } catch (const SpeechFrameworkError &) {
            // The report says it.
        }
        // What the library calls an error and goes on with, such as half a word list, is a broken model.
        if (!m_decoder || !report.isEmpty()) {
            throw SpeechFrameworkError(
                QStringLiteral("無法載入語音辨識模型 %1：%2").arg(model.folder(), report));
        }
        beginUtterance();
    }

    void process(std::span<const std::int16_t> block)
    {
        check(ps_process_raw(m_decoder.get(), block.data(), block.size(), 0, 0));
    }

    bool isInSpeech() const { return ps_get_in_speech(m_decoder.get()) != 0; }
    QString hypothesis() const { return plainText(ps_get_hyp(m_decoder.get(), nullptr)); }

    /// Ends the utterance. hypothesis() is then its final text until the next one begins.
    void endUtterance() { check(ps_end_utt(m_decoder.get())); }
    void beginUtterance() { check(ps_start_utt(m_decoder.get())); }

private:
    struct Deleter
    {
        void operator()(ps_decoder_t *decoder) const { ps_free(decoder); }
    };

    static void check(int result)
    {
        if (result < 0) {
            throw SpeechFrameworkError(QStringLiteral("語音辨識引擎發生錯誤。"));
        }
    }

    std::unique_ptr<ps_decoder_t, Deleter> m_decoder;
};

PocketSphinxRecognizer::PocketSphinxRecognizer(
    QString localeIdentifier, PocketSphinxModel model, RecognitionSink sink)
    : m_localeIdentifier(std::move(localeIdentifier))
    , m_model(std::move(model))
    , m_sink(std::move(sink))
    , m_growing(agreement)
{
    m_pending.reserve(blockSamples);
}

PocketSphinxRecognizer::~PocketSphinxRecognizer() = default;

void PocketSphinxRecognizer::load()
{
    m_model.validate();
    m_decoder = std::make_unique<Decoder>(m_model);
}

void PocketSphinxRecognizer::accept(std::span<const std::int16_t> samples)
{
    while (!samples.empty() && !m_isCancelled) {
        const std::size_t taken = std::min(samples.size(), blockSamples - m_pending.size());
        m_pending.insert(m_pending.end(), samples.begin(), samples.begin() + std::ptrdiff_t(taken));
        samples = samples.subspan(taken);
        if (m_pending.size() == blockSamples) {
            decode(m_pending);
            m_pending.clear();
        }
    }
}

void PocketSphinxRecognizer::finish()
{
    if (!m_pending.empty() && !m_isCancelled) {
        decode(m_pending);
        m_pending.clear();
    }
    if (m_hasSpeech && !m_isCancelled) {
        endUtterance();
    }
}

void PocketSphinxRecognizer::cancel() noexcept
{
    m_isCancelled = true;
}

void PocketSphinxRecognizer::decode(std::span<const std::int16_t> block)
{
    m_decoder->process(block);
    const bool isInSpeech = m_decoder->isInSpeech();
    if (isInSpeech && !m_hasSpeech) {
        m_hasSpeech = true;
        m_utteranceSamples = leadSamples;
        m_samplesSinceText = 0;
    }
    if (!m_hasSpeech) {
        return;
    }
    m_utteranceSamples += block.size();
    m_samplesSinceText += block.size();
    if (!isInSpeech || m_utteranceSamples + blockSamples > longestUtteranceSamples) {
        endUtterance();
    } else if (m_samplesSinceText >= samplesPerText) {
        m_samplesSinceText = 0;
        giveVolatile(m_decoder->hypothesis());
    }
}

void PocketSphinxRecognizer::endUtterance()
{
    m_decoder->endUtterance();
    giveFinal(m_decoder->hypothesis());
    m_decoder->beginUtterance();
    m_hasSpeech = false;
}

void PocketSphinxRecognizer::giveVolatile(const QString &hypothesis)
{
    // A single word may be all that it finds in a noise; in speech the next one comes soon.
    if (unitsOf(hypothesis).size() < 2 || !fills(hypothesis, speech())) {
        m_growing.listen(hypothesis);
        return;
    }
    for (const QString &text : m_growing.heard(hypothesis)) {
        if (!m_isCancelled) {
            m_sink(m_localeIdentifier, {text, false});
        }
    }
}

void PocketSphinxRecognizer::giveFinal(const QString &text)
{
    const QStringList texts = m_growing.concluded(fills(text, speech()) ? text : QString());
    for (qsizetype i = 0; i < texts.size() && !m_isCancelled; ++i) {
        m_sink(m_localeIdentifier, {texts[i], i + 1 == texts.size()});
    }
}

std::chrono::duration<double> PocketSphinxRecognizer::speech() const
{
    return std::chrono::duration<double>(
        static_cast<double>(m_utteranceSamples) / static_cast<double>(sampleRateHz));
}

} // namespace lumaphone
