#pragma once

#include "language/AppleSystemSpeechLanguage.h"
#include "support/speech-scores/CaptionTrace.h"

#include <QProcess>

#include <chrono>

namespace lumaphone::bench {

class ProgramUnderTest;

/// The program captioning an input, with all that it prints. Killed with this object and with this process.
class RunningCaptions
{
public:
    /// `input` as on the command line. Nothing is translated.
    RunningCaptions(
        const ProgramUnderTest &program, const QString &input, AppleSystemSpeechLanguage language);
    ~RunningCaptions();
    RunningCaptions(const RunningCaptions &) = delete;
    RunningCaptions &operator=(const RunningCaptions &) = delete;

    /// Waits until it says that it listens to the computer's sound. Seconds since it was started.
    double waitUntilListening();
    /// Waits until it has ended by itself.
    void waitUntilEnded(std::chrono::milliseconds limit);
    /// As Ctrl-C does.
    void end();

    const test::CaptionTrace &trace() const { return m_trace; }
    pid_t processId() const { return static_cast<pid_t>(m_process.processId()); }
    /// Throws BenchError if it has ended or has told a failure.
    void throwIfFailed();

private:
    void read();
    void throwUnlessWell();

    QProcess m_process;
    const test::TraceTime m_started;
    QByteArray m_unfinishedLine;
    test::CaptionTrace m_trace;
};

} // namespace lumaphone::bench
