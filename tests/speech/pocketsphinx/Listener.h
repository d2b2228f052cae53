#pragma once

#include "speech/pocketsphinx/PocketSphinxEngine.h"

#include <QDataStream>
#include <QFile>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <vector>

namespace lumaphone::test {

using Samples = std::vector<std::int16_t>;

/// One text, and how much sound had been given when it came.
struct Heard
{
    SpeechResult result;
    std::size_t samplesGiven;
};

/// A loaded recogniser of English and everything it has said.
class Listener
{
public:
    static constexpr std::size_t captureFrames = 320;

    explicit Listener(const PocketSphinxEngine &engine = PocketSphinxEngine())
    {
        m_recognizer = engine
                           .makeRecognizers({QStringLiteral("en-US")},
                               [this](const QString &, const SpeechResult &result) {
                                   m_heard.push_back({result, m_given});
                               })
                           .front();
        m_recognizer->load();
    }

    StreamingRecognizer &recognizer() { return *m_recognizer; }
    const std::vector<Heard> &heard() const { return m_heard; }

    void give(std::span<const std::int16_t> samples, std::size_t frames = captureFrames)
    {
        while (!samples.empty()) {
            const auto piece = samples.first(std::min(frames, samples.size()));
            m_given += piece.size();
            m_recognizer->accept(piece);
            samples = samples.subspan(piece.size());
        }
    }
    void finish() { m_recognizer->finish(); }

private:
    std::size_t m_given = 0;
    std::vector<Heard> m_heard;
    std::shared_ptr<StreamingRecognizer> m_recognizer;
};

inline QStringList finalsOf(const std::vector<Heard> &heard)
{
    QStringList texts;
    for (const Heard &one : heard) {
        if (one.result.isFinal) {
            texts.append(one.result.text);
        }
    }
    return texts;
}

/// What a listener that has just been loaded hears of a sound. To load takes longer than to listen to most
/// recordings, and the decoder remembers what it has heard: the one that is loaded never listens itself, a
/// copy of the process does.
inline std::vector<Heard> heardIn(
    std::span<const std::int16_t> samples, std::size_t frames = Listener::captureFrames)
{
    static Listener loaded;
    std::array<int, 2> ends {};
    if (::pipe(ends.data()) != 0) {
        qFatal("no pipe");
    }
    const pid_t copy = ::fork();
    if (copy == 0) {
        loaded.give(samples, frames);
        loaded.finish();
        QFile file;
        bool isWritten = file.open(ends[1], QIODevice::WriteOnly);
        QDataStream stream(&file);
        for (const Heard &heard : loaded.heard()) {
            stream << heard.result.text << heard.result.isFinal << quint64(heard.samplesGiven);
        }
        isWritten = file.flush() && isWritten;
        ::_exit(isWritten ? 0 : 1);
    }
    ::close(ends[1]);
    std::vector<Heard> all;
    QFile file;
    if (copy > 0 && file.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        const QByteArray written = file.readAll();
        QDataStream stream(written);
        while (!stream.atEnd()) {
            Heard heard {};
            quint64 given = 0;
            stream >> heard.result.text >> heard.result.isFinal >> given;
            heard.samplesGiven = std::size_t(given);
            all.push_back(heard);
        }
    }
    int status = -1;
    if (::waitpid(copy, &status, 0) != copy || status != 0) {
        qFatal("the listening process failed");
    }
    return all;
}

} // namespace lumaphone::test
