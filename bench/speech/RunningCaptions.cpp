#include "bench/speech/RunningCaptions.h"

#include "bench/speech/ProgramUnderTest.h"
#include "bench/speech/Waiting.h"
#include "session/SessionTexts.h"

#include <sys/prctl.h>

#include <csignal>

namespace lumaphone::bench {

namespace {

constexpr std::chrono::seconds startLimit(60);
constexpr std::chrono::seconds endLimit(60);

} // namespace

RunningCaptions::RunningCaptions(
    const ProgramUnderTest &program, const QString &input, AppleSystemSpeechLanguage language)
    : m_started(std::chrono::steady_clock::now())
{
    m_process.setProcessEnvironment(program.environment());
    m_process.setChildProcessModifier([] {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        // A shell's background job ignores it, and what it starts would, too.
        ::signal(SIGINT, SIG_DFL);
    });
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process, [this] { read(); });
    m_process.start(program.program(),
        {QStringLiteral("caption"), input, QStringLiteral("--language"), rawValue(language),
            QStringLiteral("--format"), QStringLiteral("jsonl"), QStringLiteral("--translate"),
            QStringLiteral("off")},
        QIODevice::ReadOnly);
}

RunningCaptions::~RunningCaptions()
{
    m_process.kill();
    m_process.waitForFinished();
}

void RunningCaptions::read()
{
    const auto now = std::chrono::steady_clock::now();
    QList<QByteArray> lines = (m_unfinishedLine + m_process.readAllStandardOutput()).split('\n');
    m_unfinishedLine = lines.takeLast();
    for (const QByteArray &line : lines) {
        m_trace.add(line, now);
    }
}

double RunningCaptions::waitUntilListening()
{
    const QString listening
        = texts::startStatus(LumaphoneAudioInputSource::systemAudio, LumaphoneProcessingMode::appleMode);
    const bool isListening = waitUntil(
        [&] {
            throwIfFailed();
            return m_trace.statusTime(listening).has_value();
        },
        startLimit);
    if (!isListening) {
        throw BenchError(QStringLiteral("The program does not begin to listen."));
    }
    return std::chrono::duration<double>(*m_trace.statusTime(listening) - m_started).count();
}

void RunningCaptions::waitUntilEnded(std::chrono::milliseconds limit)
{
    if (!waitUntil([this] { return m_process.state() == QProcess::NotRunning; }, limit)) {
        throw BenchError(QStringLiteral("The program does not end."));
    }
    read();
    throwUnlessWell();
}

void RunningCaptions::end()
{
    throwIfFailed();
    ::kill(processId(), SIGINT);
    waitUntilEnded(endLimit);
}

void RunningCaptions::throwIfFailed()
{
    if (m_process.state() == QProcess::NotRunning) {
        throwUnlessWell();
        throw BenchError(QStringLiteral("The program has ended by itself."));
    }
    if (m_trace.failure()) {
        throw BenchError(*m_trace.failure());
    }
}

void RunningCaptions::throwUnlessWell()
{
    if (m_process.error() == QProcess::FailedToStart || m_process.exitStatus() == QProcess::CrashExit
        || m_process.exitCode() != 0 || m_trace.failure()) {
        throw BenchError(
            QStringLiteral("The program failed: %1 %2")
                .arg(m_process.errorString(), QString::fromUtf8(m_process.readAllStandardError()).trimmed()));
    }
}

} // namespace lumaphone::bench
