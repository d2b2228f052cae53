// Hours of a session beside a virtual clock, in a few minutes: what is said, a provider that does anything, a
// program that is interrupted. README.md in this folder says more.

#include "bench/speech/Chance.h"
#include "bench/speech/ProcessUse.h"
#include "bench/speech/Waiting.h"
#include "session/SessionTranscript.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/LiveSession.h"
#include "support/NotingFileViewer.h"

#include <QCommandLineParser>
#include <QSet>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <cstdio>

using namespace lumaphone;
using namespace lumaphone::bench;
using namespace std::chrono_literals;

namespace {

constexpr double mostGrowthMB = 20;

void print(const QString &text)
{
    std::printf("%s\n", qUtf8Printable(text));
    std::fflush(stdout);
}

class VirtualHours
{
public:
    VirtualHours(double hours, unsigned seed)
        : m_end(static_cast<int>(hours * 3600))
        , m_chance(seed)
    {
        m_session.makeUuid = &QUuid::createUuid;
        m_session.settings.setProcessingMode(LumaphoneProcessingMode::appleMode);
        make();
        start();
    }

    /// Whether every line was kept, the memory stayed as it was and the translations came to rest.
    bool run()
    {
        double early = 0;
        for (auto half = 30min; m_session.clock->monotonic() < m_end;) {
            happen();
            if (m_session.clock->monotonic() >= half) {
                const double now = memoryOf(::getpid()).residentMB;
                early = early == 0 ? now : early;
                print(QStringLiteral("%1 min: %2 sentences, %3 sessions saved, %4 MB")
                          .arg(half.count())
                          .arg(m_sentences)
                          .arg(m_library.records().size())
                          .arg(now, 0, 'f', 1));
                half += 30min;
            }
        }
        m_session.translator->plan = {};
        m_session.controller->stop(true);
        m_session.clock->advance(1h);
        const bool isAtRest = !m_session.controller->isTranslating();
        saveSession();
        const double growth = memoryOf(::getpid()).residentMB - early;
        print(QStringLiteral("Final lines shown: %1; lost: %2; translations %3; memory has grown by %4 MB")
                  .arg(m_shownInAll)
                  .arg(m_lost)
                  .arg(isAtRest ? QStringLiteral("are at rest") : QStringLiteral("never end"))
                  .arg(growth, 0, 'f', 1));
        return m_lost == 0 && isAtRest && m_shownInAll > 0 && growth < mostGrowthMB;
    }

private:
    SystemAudioCaptureController &controller() { return *m_session.controller; }

    void make()
    {
        auto &made = m_session.make();
        const auto look = [this](qsizetype index) {
            // Lines of a saved session may still change until the next one begins.
            if (const LumaphoneCaptionLine &line = controller().captionLines().at(index);
                line.isFinal && !m_saved.contains(line.id)) {
                m_shown.insert(line.id, line.sourceText);
            }
        };
        QObject::connect(&made, &SystemAudioCaptureController::lineInserted, &made, look);
        QObject::connect(&made, &SystemAudioCaptureController::lineChanged, &made, look);
    }
    void start()
    {
        controller().start();
        test::settle();
        if (!controller().isRunning()) {
            throw BenchError(QStringLiteral("The session does not start: ") + controller().status());
        }
    }

    void happen()
    {
        const int kind = oneOf(0, 99, m_chance);
        if (kind < 80) {
            speak();
        } else if (kind < 90) {
            advance(oneOf(1000, 60'000, m_chance));
        } else if (kind < 96) {
            changeProvider();
        } else {
            interrupt(kind);
        }
    }

    void advance(int milliseconds) { m_session.clock->advance(std::chrono::milliseconds(milliseconds)); }

    /// One that nobody takes for a correction of another.
    QString newSentence()
    {
        constexpr int firstIdeograph = 0x4e00;
        QString sentence = QString::number(++m_sentences);
        for (int count = 0; count < 20; ++count) {
            sentence += QChar(firstIdeograph + oneOf(0, 5000, m_chance));
        }
        return sentence;
    }

    void speak()
    {
        const QString sentence = newSentence();
        for (qsizetype length = 4; length < sentence.size(); length += oneOf(2, 8, m_chance)) {
            m_session.speech(sentence.left(length), false);
            advance(oneOf(100, 600, m_chance));
        }
        // Now and then somebody is cut off.
        if (oneOf(0, 9, m_chance) > 0) {
            m_session.speech(sentence, true);
        }
        advance(oneOf(100, 4000, m_chance));
    }

    void changeProvider()
    {
        using Plan = test::ScriptedTranslator::Plan;
        const auto refused = QStringLiteral("refused");
        const std::vector<Plan> plans {{0ms, {}}, {0ms, {}}, {500ms, {}}, {3s, {}}, {0ms, refused},
            {60s, refused, true, true}, {30min, {}}};
        const Plan plan
            = plans.at(static_cast<std::size_t>(oneOf(0, static_cast<int>(plans.size()) - 1, m_chance)));
        m_session.translator->plan = [plan](const QString &) {
            return plan;
        };
        if (oneOf(0, 1, m_chance) == 0) {
            controller().translateAgain();
        }
    }

    /// The session ends in one of several ways, is saved, and another one begins.
    void interrupt(int kind)
    {
        if (kind == 96) {
            m_session.controller.reset(); // as a crash would; it has no time to save anything
            make();
        } else if (kind == 97) {
            controller().handlePipelineEvent(pipeline_event::Failed {QStringLiteral("no more sound")});
        } else {
            controller().stop(true);
        }
        const int lost = m_lost;
        const auto shown = m_shown.size();
        saveSession();
        if (m_lost > lost) {
            print(QStringLiteral("In a session of %1 lines that ended in way %2").arg(shown).arg(kind));
        }
        m_session.translator->calls.clear();
        start();
    }

    void saveSession()
    {
        const auto draft = LumaphoneSessionDraftStore(m_folder.filePath(QStringLiteral("draft"))).load();
        QHash<QUuid, QString> kept;
        if (draft && !draft->lines.isEmpty()) {
            for (const LumaphoneCaptionLine &line : draft->lines) {
                kept.insert(line.id, line.sourceText);
            }
            const auto record = m_library.save(liveTranscript(*draft, {}), m_session.settings);
            controller().markTranscriptSaved(record.id, record.title);
            compareWith(record);
        }
        for (auto line = m_shown.cbegin(); line != m_shown.cend(); ++line) {
            lose(kept.value(line.key()) != line.value(), line.value());
            m_saved.insert(line.key());
        }
        m_shownInAll += m_shown.size();
        m_shown.clear();
    }

    void compareWith(const TranscriptRecordMetadata &record)
    {
        QStringList saved;
        for (const SavedTranscriptLine &line : m_library.loadRecord(record.id).lines) {
            saved.append(line.sourceText);
        }
        for (const QString &text : std::as_const(m_shown)) {
            lose(!saved.contains(text), text);
        }
    }

    void lose(bool isLost, const QString &text)
    {
        if (isLost) {
            ++m_lost;
            print(QStringLiteral("Lost: ") + text);
        }
    }

    std::chrono::seconds m_end;
    std::mt19937 m_chance;
    QTemporaryDir m_folder;
    test::LiveSession m_session {m_folder.filePath(QStringLiteral("draft"))};
    test::NotingFileViewer m_viewer;
    TranscriptLibraryStore m_library {{
        .layout = TranscriptLibraryLayout::at(m_folder.filePath(QStringLiteral("library"))),
        .areRevisions = [](const QString &, const QString &) { return false; },
        .clock = *m_session.clock,
        .fileViewer = m_viewer,
        .makeUuid = &QUuid::createUuid,
        .locale = QLocale::c(),
    }};
    QHash<QUuid, QString> m_shown; ///< the final lines of this session
    QSet<QUuid> m_saved; ///< those of the sessions before
    qsizetype m_shownInAll = 0;
    int m_sentences = 0;
    int m_lost = 0;
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Hours of a session beside a virtual clock."));
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("hours"), QStringLiteral("How long (4)."), QStringLiteral("number"),
                           QStringLiteral("4")},
        {QStringLiteral("seed"), QStringLiteral("The same seed makes the same session."),
            QStringLiteral("number"), QString::number(std::random_device {}())}});
    parser.process(application);
    const unsigned seed = parser.value(QStringLiteral("seed")).toUInt();
    std::printf("Seed %u\n", seed);
    try {
        return VirtualHours(parser.value(QStringLiteral("hours")).toDouble(), seed).run() ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
