#include "bench/endurance/RoughSession.h"

#include "base/Json.h"
#include "bench/speech/Chance.h"
#include "bench/speech/Statistics.h"
#include "bench/speech/Waiting.h"
#include "platform/desktop/SystemClock.h"
#include "platform/desktop/XdgFolders.h"
#include "session/LumaphoneSessionDraftStore.h"
#include "session/SessionTexts.h"
#include "session/revision/RevisionRule.h"
#include "speech/hosted/HostRecovery.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/NotingFileViewer.h"
#include "translation/OpenAICompatibleTranslationService.h"

#include <QTimer>

#include <algorithm>
#include <csignal>
#include <cstdio>

namespace lumaphone::bench {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

const auto key = QStringLiteral("sk-trial");
constexpr double longestEndSeconds = 3;
/// Of a session that ends by itself: one request may still run into its time-out.
constexpr auto longestWaitForTranslations = OpenAICompatibleTranslationService::defaultTimeout + 15s;
constexpr double mostGrowthMB = 20;
constexpr std::size_t leastLooks = 40;
constexpr std::chrono::seconds betweenNotes(2);

void tell(const QString &text)
{
    std::printf("%s\n", qUtf8Printable(text));
    std::fflush(stdout);
}

/// The text in brackets, or 401 without the key.
void answer(QTcpSocket &connection, const test::RecordedRequest &request)
{
    if (request.header("Authorization") != "Bearer " + key.toUtf8()) {
        test::behaviour::respond(401, "{\"error\":{\"message\":\"wrong key\"}}")(connection, request);
        return;
    }
    const json::Value body = json::parse(request.body);
    const QString text = json::text(json::member(body, "messages").back(), "content");
    test::behaviour::complete(QStringLiteral("〔%1〕").arg(text))(connection, request);
}

void answerSlowly(QTcpSocket &connection, const test::RecordedRequest &request)
{
    QTimer::singleShot(1500ms, &connection, [&connection, request] { answer(connection, request); });
}

} // namespace

RoughSession::RoughSession(std::chrono::seconds length, unsigned seed)
    : m_length(length)
    , m_chance(seed)
{
    m_server.alwaysAnswer(&answer);
    m_user.useProvider(m_server.url(QStringLiteral("/v1")), key);
    startSounds();
}

bool RoughSession::run()
{
    m_began = Clock::now();
    m_noted = m_began;
    startProgram();
    while (secondsSinceStart() < static_cast<double>(m_length.count())) {
        (this->*nextIncident())();
        readLines();
        if (!m_program->isRunning()) {
            ++m_unexpected;
            tell(QStringLiteral("The program has ended by itself: ")
                + QString::fromUtf8(m_program->messages()));
            afterTheEnd();
            startProgram();
        }
    }
    end();
    for (const auto &[what, times] : m_counts) {
        tell(QStringLiteral("%1: %2").arg(what).arg(times));
    }
    tell(QStringLiteral("Slowest end: %1 s").arg(m_slowestEnd, 0, 'f', 2));
    tell(QStringLiteral("Processes left: %1 %2").arg(m_left.size()).arg(m_left.join(QLatin1String(", "))));
    const bool isKept = compareLibrary();
    const bool isFlat = tellMemory();
    tell(QStringLiteral("Unexpected: %1").arg(m_unexpected));
    return isKept && isFlat && m_unexpected == 0 && m_left.isEmpty() && m_slowestEnd < longestEndSeconds;
}

void RoughSession::startSounds()
{
    for (const char *output : {"speakers", "headphones"}) {
        m_sound.addOutput(QString::fromLatin1(output), 48000, 2);
    }
    m_sound.setDefaultOutput(m_output);
}

void RoughSession::startProgram()
{
    m_read = 0;
    m_shown.clear();
    m_family.clear();
    m_program
        = m_user.start({QStringLiteral("caption"), QStringLiteral("system"), QStringLiteral("--language"),
            QStringLiteral("english"), QStringLiteral("--format"), QStringLiteral("jsonl"),
            QStringLiteral("--translate"), QStringLiteral("custom"), QStringLiteral("--draft")});
    count(QStringLiteral("programs started"));
}

double RoughSession::secondsSinceStart() const
{
    return std::chrono::duration<double>(Clock::now() - m_began).count();
}

bool RoughSession::isListening() const
{
    const QString listening
        = texts::startStatus(LumaphoneAudioInputSource::systemAudio, LumaphoneProcessingMode::customAPI);
    return m_program->output().contains(listening.toUtf8());
}

bool RoughSession::isCalm() const
{
    return secondsSinceStart() > static_cast<double>(m_length.count()) * 2 / 3;
}

RoughSession::Incident RoughSession::nextIncident()
{
    using Self = RoughSession;
    struct Weighted
    {
        Incident incident;
        int weight;
        bool endsTheProgram;
    };
    static const std::vector<Weighted> all {{&Self::speak, 10, false}, {&Self::keepSilent, 3, false},
        {&Self::switchOutput, 2, false}, {&Self::changeEndpoint, 3, false}, {&Self::killHost, 2, false},
        {&Self::stopHost, 1, false}, {&Self::freezeSoundServer, 1, true}, {&Self::killSoundServer, 1, true},
        {&Self::killProgram, 1, true}, {&Self::killProgramAtALine, 2, true}, {&Self::endProgram, 2, true}};
    std::vector<double> weights;
    for (const Weighted &each : all) {
        weights.push_back(each.endsTheProgram && isCalm() ? 0 : each.weight);
    }
    std::discrete_distribution<std::size_t> choice(weights.begin(), weights.end());
    return all.at(choice(m_chance)).incident;
}

/// Each once before any comes again: a sentence that is said twice within seconds is taken for a correction
/// of the first, and neither is what this looks for.
void RoughSession::playNextRecording()
{
    if (m_unplayed.isEmpty()) {
        m_unplayed = test::PrivateSoundServer::speechFiles();
        std::shuffle(m_unplayed.begin(), m_unplayed.end(), m_chance);
    }
    m_playback.emplace(m_sound.play(m_unplayed.takeLast(), m_output));
}

void RoughSession::speak()
{
    playNextRecording();
    count(QStringLiteral("recordings played"));
    passUntil([this] { return m_playback->isFinished(); }, 30s);
    m_playback.reset();
}

void RoughSession::keepSilent()
{
    count(QStringLiteral("silences"));
    pass(std::chrono::milliseconds(oneOf(1000, 6000, m_chance)));
}

void RoughSession::switchOutput()
{
    m_output
        = m_output == QLatin1String("speakers") ? QStringLiteral("headphones") : QStringLiteral("speakers");
    m_sound.setDefaultOutput(m_output);
    count(QStringLiteral("switches of the output"));
    pass(std::chrono::milliseconds(oneOf(0, 2000, m_chance)));
}

void RoughSession::killSoundServer()
{
    m_sound.kill();
    count(QStringLiteral("deaths of the sound server"));
    passUntil([this] { return !m_program->isRunning(); }, longestWaitForTranslations);
    m_sound.start();
    startSounds();
    if (m_program->isRunning()) {
        ++m_unexpected;
        tell(QStringLiteral("The program lives on without a sound server: ")
            + QString::fromUtf8(m_program->output().right(500)));
    } else {
        afterTheEnd();
        startProgram();
    }
}

void RoughSession::freezeSoundServer()
{
    m_sound.freeze();
    count(QStringLiteral("pauses of the sound server"));
    pass(std::chrono::milliseconds(oneOf(200, 2500, m_chance)));
    m_sound.thaw();
}

void RoughSession::changeEndpoint()
{
    using namespace test::behaviour;
    const std::vector<test::MisbehavingHttpServer::Behaviour> behaviours {&answer, &answer, &answerSlowly,
        stayMute(), respond(500, "{}"), respond(429, "{}"), sendRawAndClose({}), respond(200, "<html>")};
    m_server.alwaysAnswer(
        behaviours.at(static_cast<std::size_t>(oneOf(0, static_cast<int>(behaviours.size()) - 1, m_chance))));
    count(QStringLiteral("changes of the endpoint"));
}

void RoughSession::killHost()
{
    const auto host = speechHostOf(static_cast<pid_t>(m_program->processId()));
    const auto minuteAgo = Clock::now() - 1min;
    const auto killsOfTheMinute = std::count_if(
        m_hostKills.begin(), m_hostKills.end(), [&](Clock::time_point kill) { return kill > minuteAgo; });
    // One that dies while it loads is a failed start, and one that dies often is given up.
    if (host && isListening() && killsOfTheMinute < HostRecovery::restartsPerMinute) {
        ::kill(*host, SIGKILL);
        m_hostKills.push_back(Clock::now());
        count(QStringLiteral("kills of the speech host"));
    }
    pass(std::chrono::milliseconds(oneOf(0, 1000, m_chance)));
}

void RoughSession::stopHost()
{
    if (const auto host = speechHostOf(static_cast<pid_t>(m_program->processId()))) {
        ::kill(*host, SIGSTOP);
        count(QStringLiteral("pauses of the speech host"));
        pass(std::chrono::milliseconds(oneOf(200, 4000, m_chance)));
        ::kill(*host, SIGCONT);
    }
}

void RoughSession::killProgram()
{
    playNextRecording();
    pass(std::chrono::milliseconds(oneOf(0, 6000, m_chance)));
    m_program->signal(SIGKILL);
    count(QStringLiteral("kills of the program"));
    passUntil([this] { return !m_program->isRunning(); }, 30s);
    m_playback.reset();
    afterTheEnd();
    startProgram();
}

/// In the very moment in which it shows one.
void RoughSession::killProgramAtALine()
{
    playNextRecording();
    const auto shown = m_shown.size();
    passUntil([&] { return m_shown.size() > shown || !m_program->isRunning(); }, 12s);
    m_program->signal(SIGKILL);
    count(QStringLiteral("kills of the program at a new line"));
    passUntil([this] { return !m_program->isRunning(); }, 30s);
    m_playback.reset();
    afterTheEnd();
    startProgram();
}

void RoughSession::endProgram()
{
    end();
    startProgram();
}

void RoughSession::end()
{
    m_family = descendantsOf(static_cast<pid_t>(m_program->processId()));
    const auto asked = Clock::now();
    m_program->signal(oneOf(0, 1, m_chance) == 0 ? SIGINT : SIGTERM);
    passUntil([this] { return !m_program->isRunning(); }, 300s);
    m_slowestEnd = std::max(m_slowestEnd, std::chrono::duration<double>(Clock::now() - asked).count());
    count(QStringLiteral("ends of the program"));
    afterTheEnd();
}

void RoughSession::passUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    waitUntil(
        [&] {
            readLines();
            noteUse();
            return condition();
        },
        limit);
}

void RoughSession::pass(std::chrono::milliseconds time)
{
    passUntil([] { return false; }, time);
}

void RoughSession::readLines()
{
    const QByteArray &output = m_program->output();
    for (qsizetype end = output.indexOf('\n', m_read); end >= 0; end = output.indexOf('\n', m_read)) {
        const json::Value event = json::parse(output.mid(m_read, end - m_read));
        m_read = end + 1;
        if (json::text(event, "event") != QLatin1String("line")) {
            continue;
        }
        const QString id = json::text(event, "id");
        const QString text = json::text(event, "sourceText");
        const auto known = m_shown.find(id);
        if (known != m_shown.end() && *known != text) {
            count(QStringLiteral("final lines that were written anew"));
            tell(QStringLiteral("Written anew at %1 s: \"%2\", now: \"%3\"")
                     .arg(secondsSinceStart(), 0, 'f', 1)
                     .arg(*known, text));
        }
        if (known != m_shown.end() || json::boolean(event, "isFinal")) {
            m_shown.insert(id, text);
        }
    }
}

void RoughSession::noteUse()
{
    if (Clock::now() - m_noted < betweenNotes || !m_program->isRunning()) {
        return;
    }
    m_noted = Clock::now();
    const auto process = static_cast<pid_t>(m_program->processId());
    m_family = descendantsOf(process);
    const auto host = speechHostOf(process);
    if (isCalm() && host) {
        m_uses.push_back({secondsSinceStart(), memoryOf(process).residentMB, memoryOf(*host).residentMB});
    }
}

void RoughSession::count(const QString &what)
{
    ++m_counts[what];
}

void RoughSession::afterTheEnd()
{
    m_program->waitForEnd();
    readLines();
    m_left += leftOf(m_family);
    compareDraft();
    if (LumaphoneSessionDraftStore(XdgFolders()).load()) {
        m_user.run({QStringLiteral("library"), QStringLiteral("save")});
    }
    m_allShown += m_shown.values();
    m_shown.clear();
}

void RoughSession::compareDraft()
{
    QHash<QString, QString> kept;
    if (const auto draft = LumaphoneSessionDraftStore(XdgFolders()).load()) {
        for (const LumaphoneCaptionLine &line : draft->lines) {
            kept.insert(uuidText(line.id), line.sourceText);
        }
    }
    for (auto line = m_shown.cbegin(); line != m_shown.cend(); ++line) {
        if (kept.value(line.key()) != line.value()) {
            ++m_lost;
            tell(QStringLiteral("Lost at %1 s: \"%2\", kept: \"%3\"")
                     .arg(secondsSinceStart(), 0, 'f', 1)
                     .arg(line.value(), kept.value(line.key())));
        }
    }
}

bool RoughSession::compareLibrary()
{
    SystemClock clock;
    test::NotingFileViewer viewer;
    TranscriptLibraryStore library({
        .layout = TranscriptLibraryLayout::standard(XdgFolders()),
        .areRevisions = &fallbackIsRevisionOfCurrentPartial,
        .clock = clock,
        .fileViewer = viewer,
        .makeUuid = &QUuid::createUuid,
        .locale = QLocale::c(),
    });
    QStringList saved;
    for (const TranscriptRecordMetadata &record : library.records()) {
        for (const SavedTranscriptLine &line : library.loadRecord(record.id).lines) {
            saved.append(line.sourceText);
        }
    }
    int merged = 0;
    for (const QString &line : std::as_const(m_allShown)) {
        // Lines that revise each other are saved as one.
        const bool isRevised = std::any_of(saved.cbegin(), saved.cend(),
            [&line](const QString &other) { return fallbackIsRevisionOfCurrentPartial(line, other); });
        if (saved.contains(line)) {
            continue;
        }
        if (isRevised) {
            ++merged;
        } else {
            ++m_lost;
            tell(QStringLiteral("Not in the library: \"%1\"").arg(line));
        }
    }
    tell(QStringLiteral("Final lines shown: %1; in %2 saved sessions %3 lines, %4 merged on saving; lost: %5")
             .arg(m_allShown.size())
             .arg(library.records().size())
             .arg(saved.size())
             .arg(merged)
             .arg(m_lost));
    return m_lost == 0 && !m_allShown.isEmpty();
}

/// The middle of the first quarter of the calm part against that of the last one.
bool RoughSession::tellMemory()
{
    if (m_uses.size() < leastLooks) {
        tell(QStringLiteral("Too short to tell whether memory grows."));
        return true;
    }
    const std::size_t quarter = m_uses.size() / 4;
    const auto median = [&](std::size_t from, double Use::*memory) {
        std::vector<double> values;
        for (std::size_t i = from; i < from + quarter; ++i) {
            values.push_back(m_uses[i].*memory);
        }
        return percentile(values, 0.5);
    };
    bool isFlat = true;
    for (const auto &[name, memory] :
        {std::pair("program", &Use::programMB), std::pair("speech host", &Use::hostMB)}) {
        const double first = median(0, memory);
        const double last = median(m_uses.size() - quarter, memory);
        tell(QStringLiteral("Resident memory of the %1 in the calm part (%2 looks): from %3 to %4 MB")
                 .arg(QLatin1String(name))
                 .arg(m_uses.size())
                 .arg(first, 0, 'f', 1)
                 .arg(last, 0, 'f', 1));
        isFlat = isFlat && last - first < mostGrowthMB;
    }
    return isFlat;
}

} // namespace lumaphone::bench
