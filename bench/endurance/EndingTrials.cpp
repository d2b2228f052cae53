#include "bench/endurance/EndingTrials.h"

#include "bench/speech/Chance.h"
#include "bench/speech/Waiting.h"
#include "endtoend/User.h"
#include "session/SessionTexts.h"

#include <QTimer>

#include <chrono>
#include <csignal>

namespace lumaphone::bench {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Kind = EndingState::Kind;

constexpr double playlistMinutes = 10;
constexpr int longestStartMs = 1000;
constexpr std::chrono::seconds stateLimit(60);
constexpr std::chrono::minutes endLimit(5);

void answerLate(QTcpSocket &connection, const test::RecordedRequest &request)
{
    QTimer::singleShot(10s, &connection,
        [&connection, request] { test::behaviour::complete(QStringLiteral("〔〕"))(connection, request); });
}

} // namespace

const std::vector<EndingState> &endingStates()
{
    static const std::vector<EndingState> all {
        {Kind::starting, QStringLiteral("starting"), QStringLiteral("starting")},
        {Kind::listening, QStringLiteral("listening"), QStringLiteral("listening")},
        {Kind::translating, QStringLiteral("translating"), QStringLiteral("translating, slowly")},
        {Kind::endpointHangs, QStringLiteral("endpoint"), QStringLiteral("the endpoint says nothing")},
        {Kind::hostHangs, QStringLiteral("host"), QStringLiteral("the speech host stands still")}};
    return all;
}

EndingTrials::EndingTrials(EndedProgram program, unsigned seed)
    : m_program(program)
    , m_chance(seed)
    , m_speech(test::debianRecordings(m_folder.path()))
    , m_playlist(Playlist::joined(m_speech, playlistMinutes))
{
    const auto set = QStringList {QStringLiteral("settings"), QStringLiteral("set")};
    m_user.useProvider(m_server.url(QStringLiteral("/v1")));
    m_user.run(set + QStringList {QStringLiteral("lumaphone.processingMode"), QStringLiteral("customAPI")});
    m_user.run(set + QStringList {QStringLiteral("lumaphone.sourceLanguage"), QStringLiteral("english")});
}

EndingTrials::~EndingTrials() = default;

double EndingTrials::secondsToEnd(const EndingState &state)
{
    playOn();
    discardDraft();
    if (state.kind == Kind::endpointHangs) {
        m_server.alwaysAnswer(test::behaviour::stayMute());
    } else if (state.kind == Kind::translating) {
        m_server.alwaysAnswer(&answerLate);
    } else {
        m_server.alwaysAnswer(test::behaviour::complete(QStringLiteral("〔〕")));
    }
    return m_program == EndedProgram::window ? windowSeconds(state.kind) : terminalSeconds(state.kind);
}

void EndingTrials::playOn()
{
    if (!m_playback || m_playback->isFinished()) {
        m_playback.emplace(m_sound.play(m_playlist));
    }
}

/// What an earlier window has kept would have to be decided on first.
void EndingTrials::discardDraft() const
{
    const auto discard = m_user.start({QStringLiteral("draft"), QStringLiteral("discard")});
    discard->waitForEnd();
}

double EndingTrials::terminalSeconds(Kind kind)
{
    const QByteArray listening
        = texts::startStatus(LumaphoneAudioInputSource::systemAudio, LumaphoneProcessingMode::customAPI)
              .toUtf8();
    const auto program = m_user.start({QStringLiteral("caption"), QStringLiteral("system"),
        QStringLiteral("--format"), QStringLiteral("jsonl")});
    if (kind == Kind::starting) {
        bench::waitFor(std::chrono::milliseconds(oneOf(0, longestStartMs, m_chance)));
    } else {
        waitFor([&] { return program->output().contains(listening); }, *program, "listens");
        reach(kind, *program);
    }
    const int signal = oneOf(0, 1, m_chance) == 0 ? SIGINT : SIGTERM;
    return measure(*program, [&] { program->signal(signal); });
}

double EndingTrials::windowSeconds(Kind kind)
{
    test::User user(qEnvironmentVariable("HOME"),
        {{QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb")},
            {QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software")}});
    const auto demand = [&user](const char *command) {
        if (!user.does(command)) {
            throw BenchError(QString::fromUtf8(command) + QStringLiteral(": ") + user.seen);
        }
    };
    demand("shown startStop");
    demand("click startStop");
    if (kind == Kind::starting) {
        bench::waitFor(std::chrono::milliseconds(oneOf(0, longestStartMs, m_chance)));
    } else {
        demand("await stage.state 正在聽");
        reach(kind, user.program());
    }
    const bool closes = oneOf(0, 3, m_chance) != 0;
    return measure(user.program(), [&] {
        if (closes) {
            user.program().write("close\n");
        } else {
            user.program().signal(SIGTERM);
        }
    });
}

/// From listening on.
void EndingTrials::reach(Kind kind, test::RunningProgram &program)
{
    const auto requests = m_server.requests().size();
    switch (kind) {
    case Kind::starting:
        break;
    case Kind::listening:
        bench::waitFor(std::chrono::milliseconds(oneOf(0, longestStartMs, m_chance)));
        break;
    case Kind::translating:
    case Kind::endpointHangs:
        waitFor([&] { return m_server.requests().size() > requests; }, program, "asks for a translation");
        bench::waitFor(std::chrono::milliseconds(oneOf(0, longestStartMs, m_chance)));
        break;
    case Kind::hostHangs: {
        const auto process = static_cast<pid_t>(program.processId());
        waitFor([&] { return speechHostOf(process).has_value(); }, program, "has a speech host");
        bench::waitFor(std::chrono::milliseconds(oneOf(0, longestStartMs, m_chance)));
        if (const auto host = speechHostOf(process)) {
            ::kill(*host, SIGSTOP);
        }
        bench::waitFor(std::chrono::milliseconds(oneOf(0, longestStartMs, m_chance)));
        break;
    }
    }
}

double EndingTrials::measure(test::RunningProgram &program, const std::function<void()> &end)
{
    const auto family = descendantsOf(static_cast<pid_t>(program.processId()));
    const auto asked = Clock::now();
    end();
    waitUntil([&] { return !program.isRunning(); }, endLimit);
    const double seconds = std::chrono::duration<double>(Clock::now() - asked).count();
    m_left += leftOf(family);
    return seconds;
}

void EndingTrials::waitFor(
    const std::function<bool()> &condition, test::RunningProgram &program, const char *what)
{
    const bool holds = waitUntil(
        [&] {
            playOn();
            return condition() || !program.isRunning();
        },
        stateLimit);
    if (!holds || !program.isRunning()) {
        throw BenchError(QStringLiteral("It is not so that the program %1: %2 %3")
                             .arg(QLatin1String(what), QString::fromUtf8(program.output().right(500)),
                                 QString::fromUtf8(program.messages())));
    }
}

} // namespace lumaphone::bench
