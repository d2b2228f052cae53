#include "session/CaptionLineMerger.h"

#include "session/revision/RevisionRule.h"
#include "support/CountedUuids.h"
#include "support/VirtualClock.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <algorithm>
#include <random>
#include <vector>

namespace captionlinemergertest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;
using enum AppleSystemSpeechLanguage;

namespace {

const QString pending = pendingTranslationPlaceholder.toString();

/// A revision decision that answers as told and remembers the questions.
struct Decision
{
    bool answer = true;
    std::vector<std::pair<QString, QString>> asked;
};

struct Session
{
    VirtualClock clock;
    Decision decision;
    CaptionLineMerger merger {[this](const QString &current, const QString &incoming) {
                                  decision.asked.emplace_back(current, incoming);
                                  return decision.answer;
                              },
        clock, countedUuids()};

    const LumaphoneCaptionLine &line(qsizetype index) const { return merger.captionLines().at(index); }
    qsizetype count() const { return merger.captionLines().size(); }
    void partial(const char16_t *text)
    {
        merger.upsertCaptionLine(QString::fromUtf16(text), japanese, false);
    }
    /// As the caller does it: a final result also takes the open line's marker away.
    void final(const char16_t *text)
    {
        merger.upsertCaptionLine(QString::fromUtf16(text), japanese, true);
        merger.clearCurrentLine();
    }
};

class Recorder final : public CaptionLineListener
{
public:
    void captionLineInserted(qsizetype index) override { m_heard.append(QStringLiteral("+%1").arg(index)); }
    void captionLineChanged(qsizetype index) override { m_heard.append(QStringLiteral("~%1").arg(index)); }
    void captionLinesReset() override { m_heard.append(QStringLiteral("reset")); }
    QStringList m_heard;
};

} // namespace

class CaptionLineMergerTest : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyListGetsOneLineThatIsOpen_data()
    {
        QTest::addColumn<bool>("isFinal");
        QTest::newRow("partial") << false;
        QTest::newRow("final") << true;
    }
    void anEmptyListGetsOneLineThatIsOpen()
    {
        QFETCH(bool, isFinal);
        Session session;
        session.merger.upsertCaptionLine(QStringLiteral("今日は"), korean, isFinal);
        const LumaphoneCaptionLine expected {
            .id = countedUuid(1),
            .sourceText = QStringLiteral("今日は"),
            .sourceLanguage = korean,
            .translatedText = pending,
            .createdAt = session.clock.now(),
            .isFinal = isFinal,
            .revision = 1,
        };
        QCOMPARE(session.count(), 1);
        QVERIFY(session.line(0) == expected);
        QCOMPARE(session.merger.currentLineID(), std::optional(countedUuid(1)));
        QVERIFY(session.decision.asked.empty());
    }

    void aPartialResultRevisesTheOpenLine()
    {
        Session session;
        session.partial(u"今日");
        const QDateTime openedAt = session.clock.now();
        session.merger.setTranslation(0, QStringLiteral("今天"));
        session.clock.advance(60s);
        session.merger.upsertCaptionLine(QStringLiteral("今日は"), english, false);
        const LumaphoneCaptionLine expected {
            .id = countedUuid(1),
            .sourceText = QStringLiteral("今日は"),
            .sourceLanguage = english,
            .translatedText = pending,
            .createdAt = openedAt,
            .isFinal = false,
            .revision = 3,
        };
        QCOMPARE(session.count(), 1);
        QVERIFY(session.line(0) == expected);
        QCOMPARE(session.merger.currentLineID(), std::optional(countedUuid(1)));
        // The open line is the candidate without a question, however old it is.
        QCOMPARE(session.decision.asked.size(), std::size_t(1));
        QCOMPARE(session.decision.asked[0], std::pair(QStringLiteral("今日"), QStringLiteral("今日は")));
    }

    void whatIsNoRevisionOfTheOpenLineOpensANewOne()
    {
        Session session;
        session.partial(u"今日は");
        session.decision.answer = false;
        session.partial(u"hello");
        QCOMPARE(session.count(), 2);
        QCOMPARE(session.line(0).sourceText, QStringLiteral("今日は"));
        QCOMPARE(session.line(0).revision, 1);
        QVERIFY(!session.line(0).isFinal);
        QCOMPARE(session.line(1).sourceText, QStringLiteral("hello"));
        QCOMPARE(session.merger.currentLineID(), std::optional(countedUuid(2)));
    }

    void theSameTextTwiceChangesNothing_data()
    {
        QTest::addColumn<QString>("again");
        QTest::newRow("same spelling") << QStringLiteral("がく");
        QTest::newRow("canonically equivalent") << QStringLiteral("か\u3099く");
    }
    void theSameTextTwiceChangesNothing()
    {
        QFETCH(QString, again);
        Session session;
        session.partial(u"がく");
        const QList<LumaphoneCaptionLine> before = session.merger.captionLines();
        Recorder recorder;
        session.merger.setListener(&recorder);
        session.merger.upsertCaptionLine(again, english, false);
        QVERIFY(session.merger.captionLines() == before);
        QCOMPARE(session.line(0).sourceText, QStringLiteral("がく"));
        QCOMPARE(session.merger.currentLineID(), std::optional(countedUuid(1)));
        QVERIFY(session.decision.asked.empty());
        QVERIFY(recorder.m_heard.isEmpty());
    }

    void theSameFinalTextTwiceChangesNothingAndLeavesNoOpenLine()
    {
        Session session;
        session.final(u"はい");
        const QList<LumaphoneCaptionLine> before = session.merger.captionLines();
        session.merger.upsertCaptionLine(QStringLiteral("はい"), japanese, true);
        QVERIFY(session.merger.captionLines() == before);
        QCOMPARE(session.merger.currentLineID(), std::nullopt);
        QCOMPARE(session.decision.asked.size(), std::size_t(1));
    }

    void theSameTextAsFinalClosesTheLineAndKeepsTheTranslation()
    {
        Session session;
        session.partial(u"はい");
        session.merger.setTranslation(0, QStringLiteral("是"));
        session.merger.upsertCaptionLine(QStringLiteral("はい"), japanese, true);
        QCOMPARE(session.count(), 1);
        QVERIFY(session.line(0).isFinal);
        QCOMPARE(session.line(0).revision, 3);
        QCOMPARE(session.line(0).translatedText, QStringLiteral("是"));
        QCOMPARE(session.merger.currentLineID(), std::nullopt);
    }

    void aFinalTextMayStillBeRevised()
    {
        Session session;
        session.final(u"はい");
        session.clock.advance(11900ms);
        session.partial(u"はい、そう");
        QCOMPARE(session.count(), 1);
        QCOMPARE(session.line(0).sourceText, QStringLiteral("はい、そう"));
        QVERIFY(!session.line(0).isFinal);
        QCOMPARE(session.line(0).revision, 2);
        QCOMPARE(session.merger.currentLineID(), std::optional(countedUuid(1)));
        // Once for the candidate and once for the merge.
        QCOMPARE(session.decision.asked.size(), std::size_t(2));
        QCOMPARE(session.decision.asked[0], session.decision.asked[1]);
    }

    void onlyAYoungLineMayBeRevisedWithoutBeingOpen_data()
    {
        QTest::addColumn<int>("ageMs");
        QTest::addColumn<bool>("isRevised");
        QTest::newRow("at once") << 0 << true;
        QTest::newRow("11.9 s") << 11900 << true;
        QTest::newRow("11.999 s") << 11999 << true;
        QTest::newRow("12.0 s") << 12000 << false;
        QTest::newRow("an hour") << 3'600'000 << false;
        QTest::newRow("the clock stepped back") << -3'600'000 << true;
    }
    void onlyAYoungLineMayBeRevisedWithoutBeingOpen()
    {
        QFETCH(int, ageMs);
        QFETCH(bool, isRevised);
        Session session;
        session.final(u"はい");
        session.clock.stepWallClock(std::chrono::milliseconds(ageMs));
        session.partial(u"はい");
        QCOMPARE(session.count(), isRevised ? 1 : 2);
        QCOMPARE(session.decision.asked.size(), std::size_t(isRevised ? 2 : 0));
    }

    void theDecisionsNoOpensANewLine()
    {
        Session session;
        session.final(u"はい");
        session.decision.answer = false;
        session.partial(u"はい");
        QCOMPARE(session.count(), 2);
        QCOMPARE(session.decision.asked.size(), std::size_t(1));
        QCOMPARE(session.merger.currentLineID(), std::optional(countedUuid(2)));
    }

    void theCandidateIsFoundByIdentityFirst()
    {
        Session session;
        session.partial(u"一");
        session.decision.answer = false;
        session.partial(u"二");
        session.decision.answer = true;
        QCOMPARE(session.merger.revisionCandidateIndex(QStringLiteral("三")), std::optional<qsizetype>(1));
        session.merger.clearCurrentLine();
        QCOMPARE(session.merger.revisionCandidateIndex(QStringLiteral("三")), std::optional<qsizetype>(1));
        session.decision.answer = false;
        QCOMPARE(session.merger.revisionCandidateIndex(QStringLiteral("三")), std::nullopt);
    }

    void anOpenLineThatLeftTheListIsNoCandidate()
    {
        Session session;
        session.partial(u"一");
        LumaphoneCaptionLine other = session.line(0);
        other.id = countedUuid(99);
        session.merger.resetCaptionLines({other});
        QCOMPARE(session.merger.revisionCandidateIndex(QStringLiteral("二")), std::optional<qsizetype>(0));
        session.clock.advance(12s);
        QCOMPARE(session.merger.revisionCandidateIndex(QStringLiteral("二")), std::nullopt);
        session.merger.resetCaptionLines({});
        QCOMPARE(session.merger.revisionCandidateIndex(QStringLiteral("二")), std::nullopt);
    }

    void finalizingClosesTheOpenLine()
    {
        Session session;
        session.partial(u"一");
        const LumaphoneCaptionLine before = session.line(0);
        session.merger.finalizeOpenCaptionLine();
        LumaphoneCaptionLine expected = before;
        expected.isFinal = true;
        expected.revision = 2;
        QVERIFY(session.line(0) == expected);
        QCOMPARE(session.merger.currentLineID(), std::nullopt);
        session.merger.finalizeOpenCaptionLine();
        QVERIFY(session.line(0) == expected);
    }

    void finalizingCountsALineThatWasAlreadyFinal()
    {
        Session session;
        session.merger.appendCaptionLine(QStringLiteral("一"), japanese, true);
        session.merger.finalizeOpenCaptionLine();
        QVERIFY(session.line(0).isFinal);
        QCOMPARE(session.line(0).revision, 2);
        QCOMPARE(session.merger.currentLineID(), std::nullopt);
    }

    void finalizingLeavesTheMarkerOfALineThatIsGone()
    {
        Session session;
        session.partial(u"一");
        LumaphoneCaptionLine other = session.line(0);
        other.id = countedUuid(99);
        for (const QList<LumaphoneCaptionLine> &lines : {QList<LumaphoneCaptionLine>(), QList {other}}) {
            session.merger.resetCaptionLines(lines);
            session.merger.finalizeOpenCaptionLine();
            QVERIFY(session.merger.captionLines() == lines);
            QCOMPARE(session.merger.currentLineID(), std::optional(countedUuid(1)));
        }
    }

    void theListenerHearsWhatChanged()
    {
        Session session;
        Recorder recorder;
        session.merger.setListener(&recorder);
        session.partial(u"一");
        session.partial(u"一二");
        session.merger.setTranslation(0, QStringLiteral("1"));
        session.merger.finalizeOpenCaptionLine();
        session.decision.answer = false;
        session.partial(u"三");
        session.merger.resetCaptionLines({});
        QCOMPARE(recorder.m_heard,
            QStringList({QStringLiteral("+0"), QStringLiteral("~0"), QStringLiteral("~0"),
                QStringLiteral("~0"), QStringLiteral("+1"), QStringLiteral("reset")}));
    }

    void linesKeepTheirInvariantsUnderRandomTexts()
    {
        std::mt19937 random(20260131);
        const auto below = [&random](unsigned limit) {
            return unsigned(random() % limit);
        };
        for (int round = 0; round < 30; ++round) {
            VirtualClock clock;
            CaptionLineMerger merger(fallbackIsRevisionOfCurrentPartial, clock, countedUuids());
            for (int step = 0; step < 200; ++step) {
                const QList<LumaphoneCaptionLine> before = merger.captionLines();
                const QString text = QStringLiteral("今日は雨です").left(1 + int(below(6)))
                    + QString(int(below(2)), QChar(u'か' + below(5)));
                const bool isFinal = below(4) == 0;
                merger.upsertCaptionLine(text, japanese, isFinal);
                const QList<LumaphoneCaptionLine> &after = merger.captionLines();
                QVERIFY(after.size() == before.size() || after.size() == before.size() + 1);
                for (qsizetype i = 0; i < before.size(); ++i) {
                    QCOMPARE(after[i].id, before[i].id);
                    QCOMPARE(after[i].createdAt, before[i].createdAt);
                    QCOMPARE(after[i].revision, before[i].revision + (after[i] == before[i] ? 0 : 1));
                }
                QVERIFY(std::any_of(after.begin(), after.end(),
                    [&text](const LumaphoneCaptionLine &line) { return line.sourceText == text; }));
                if (merger.currentLineID()) {
                    QCOMPARE(*merger.currentLineID(), after.constLast().id);
                }
                if (isFinal) {
                    merger.clearCurrentLine();
                } else if (below(8) == 0) {
                    merger.finalizeOpenCaptionLine();
                    QVERIFY(!merger.currentLineID());
                }
                clock.stepWallClock(std::chrono::milliseconds(below(6000)));
            }
        }
    }
};

LUMAPHONE_TEST(CaptionLineMergerTest)

} // namespace captionlinemergertest

#include "CaptionLineMergerTest.moc"
