#pragma once

#include "speech/hosted/HostedRecognizer.h"
#include "support/ToySpeech.h"

#include <QFile>

#include <algorithm>
#include <mutex>

/// The real speech host with the toy networks.
namespace lumaphone::test {

inline std::string encodedPath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

inline host::Network toyNetwork()
{
    return {host::NetworkKind::senseVoice, {encodedPath(toySpeechFile(QStringLiteral("toy-sense.onnx")))},
        encodedPath(toySpeechFile(QStringLiteral("tokens.txt")))};
}

inline host::Network toyStreamingNetwork()
{
    return {host::NetworkKind::streamingCtc,
        {encodedPath(toySpeechFile(QStringLiteral("toy-stream-ctc.onnx")))},
        encodedPath(toySpeechFile(QStringLiteral("tokens.txt")))};
}

inline SpeechInstallation toyInstallation(const QString &hostProgram, const QString &runtimeFolder)
{
    return {hostProgram, runtimeFolder, toySpeechFile(QStringLiteral("toy-vad.onnx")), toyNetwork(), {}};
}

/// What a recogniser gave, in order.
struct Heard
{
    QString locale;
    QString text;
    bool isFinal = false;

    bool operator==(const Heard &) const = default;
};

/// Collects what a recogniser gives, on whatever thread.
class HeardTexts
{
public:
    RecognitionSink sink()
    {
        return [this](const QString &locale, const SpeechResult &result) {
            const std::lock_guard lock(m_mutex);
            m_heard.push_back({locale, result.text, result.isFinal});
        };
    }

    std::vector<Heard> all() const
    {
        const std::lock_guard lock(m_mutex);
        return m_heard;
    }

    std::vector<Heard> finals() const
    {
        std::vector<Heard> finals = all();
        std::erase_if(finals, [](const Heard &heard) { return !heard.isFinal; });
        return finals;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Heard> m_heard;
};

/// Feeds a recogniser in pieces like those of a sound server.
inline void feed(StreamingRecognizer &recognizer, std::span<const std::int16_t> samples)
{
    constexpr std::size_t piece = 320;
    while (!samples.empty()) {
        const std::size_t count = std::min(piece, samples.size());
        recognizer.accept(samples.first(count));
        samples = samples.subspan(count);
    }
}

/// What loading and hearing these samples ends with; empty if all is well.
inline QString errorWith(const SpeechInstallation &installation, const std::vector<SpokenLanguage> &languages,
    std::span<const std::int16_t> samples)
{
    HeardTexts heard;
    HostedRecognizer recognizer(installation, languages, heard.sink());
    try {
        recognizer.load();
        feed(recognizer, samples);
        recognizer.finish();
    } catch (const SpeechFrameworkError &error) {
        return error.errorDescription();
    }
    return {};
}

/// Of a model's file; nothing if it cannot be read.
inline QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

} // namespace lumaphone::test
