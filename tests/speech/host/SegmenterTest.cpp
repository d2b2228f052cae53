#include "speech/host/Segmenter.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace segmentertest {

using namespace lumaphone;

namespace {

constexpr std::int64_t window = 512;

constexpr std::int64_t windowsIn(double seconds)
{
    return static_cast<std::int64_t>(seconds * samplesPerSecond) / window;
}

/// Feeds windows whose samples are their own positions, and collects what comes out.
class Feed
{
public:
    explicit Feed(std::int64_t position = 0)
        : m_segmenter(position)
    {
    }

    Segmenter &segmenter() { return m_segmenter; }

    void speech(double seconds) { give(windowsIn(seconds), true); }
    void silence(double seconds) { give(windowsIn(seconds), false); }
    void give(std::int64_t windows, bool isSpeech)
    {
        for (std::int64_t i = 0; i < windows; ++i) {
            std::vector<float> samples(window);
            for (float &sample : samples) {
                sample = loudness.value_or(static_cast<float>(m_next % 100000));
                ++m_next;
            }
            take(m_segmenter.accept(samples, isSpeech));
        }
    }
    void finish() { take(m_segmenter.finish()); }

    /// Of every sample; none: samples are their own positions.
    std::optional<float> loudness;
    std::vector<SpeechSegment> segments;
    std::vector<std::int64_t> dropped;

private:
    void take(Segmenter::Outcome outcome)
    {
        if (auto *const closed = std::get_if<Segmenter::Closed>(&outcome)) {
            segments.push_back(std::move(closed->segment));
        } else if (const auto *const gone = std::get_if<Segmenter::Dropped>(&outcome)) {
            dropped.push_back(gone->start);
        }
    }

    Segmenter m_segmenter;
    std::int64_t m_next = m_segmenter.position();
};

double secondsOf(std::int64_t samples)
{
    return static_cast<double>(samples) / samplesPerSecond;
}

} // namespace

class SegmenterTest : public QObject
{
    Q_OBJECT

private slots:
    void silenceGivesNothing()
    {
        Feed feed;
        feed.silence(60);
        feed.finish();
        QVERIFY(feed.segments.empty());
        QVERIFY(feed.dropped.empty());
        QVERIFY(secondsOf(feed.segmenter().position() - feed.segmenter().settledPosition()) <= 0.3);
    }

    void aSegmentHasSoundFromBeforeTheSpeechAndALittleOfThePause()
    {
        Feed feed;
        feed.silence(2);
        const std::int64_t spoken = feed.segmenter().position();
        feed.speech(1);
        const std::int64_t paused = feed.segmenter().position();
        feed.silence(1);
        QCOMPARE(feed.segments.size(), std::size_t(1));
        const SpeechSegment &segment = feed.segments.front();
        QCOMPARE(segment.start, spoken - Segmenter::unhurriedLimits.preRoll);
        QCOMPARE(segment.end(), paused + Segmenter::unhurriedLimits.tail);
        QCOMPARE(segment.voiced, paused - spoken);
        for (std::size_t i = 0; i < segment.samples.size(); ++i) {
            QCOMPARE(segment.samples[i], static_cast<float>(segment.start + static_cast<std::int64_t>(i)));
        }
    }

    void aSegmentAtTheVeryStartHasNoPreRoll()
    {
        Feed feed(5000);
        feed.speech(1);
        feed.finish();
        QCOMPARE(feed.segments.size(), std::size_t(1));
        QCOMPARE(feed.segments.front().start, std::int64_t(5000));
    }

    void shortPausesDoNotEndASegment()
    {
        Feed feed;
        for (int i = 0; i < 4; ++i) {
            feed.speech(0.6);
            feed.silence(0.3);
        }
        QVERIFY(feed.segments.empty());
        feed.silence(0.3);
        QCOMPARE(feed.segments.size(), std::size_t(1));
    }

    void tooLittleSpeechIsDropped_data()
    {
        QTest::addColumn<double>("seconds");
        QTest::addColumn<bool>("isKept");
        QTest::newRow("a click") << 0.064 << false;
        QTest::newRow("just below the limit") << 0.224 << false;
        QTest::newRow("just above the limit") << 0.26 << true;
    }
    void tooLittleSpeechIsDropped()
    {
        QFETCH(double, seconds);
        QFETCH(bool, isKept);
        Feed feed;
        feed.silence(1);
        feed.give(static_cast<std::int64_t>(std::ceil(seconds * samplesPerSecond / window)), true);
        QCOMPARE(feed.segmenter().open() != nullptr, isKept);
        feed.silence(1);
        QCOMPARE(feed.segments.size(), std::size_t(isKept ? 1 : 0));
        QCOMPARE(feed.dropped.size(), std::size_t(isKept ? 0 : 1));
    }

    void longSpeechIsCutWithoutLosingASample()
    {
        Feed feed;
        feed.speech(35);
        feed.finish();
        QVERIFY(feed.segments.size() >= 4);
        for (std::size_t i = 0; i < feed.segments.size(); ++i) {
            QVERIFY(secondsOf(static_cast<std::int64_t>(feed.segments[i].samples.size())) <= 10.05);
            QCOMPARE(feed.segments[i].isCut, i + 1 < feed.segments.size());
            QCOMPARE(feed.segments[i].continuesSpeech, i > 0);
            if (i > 0) {
                QCOMPARE(feed.segments[i].start, feed.segments[i - 1].end());
            }
        }
    }

    void speechWithoutABreathIsCutWhereItIsQuietest_data()
    {
        QTest::addColumn<double>("dip"); // seconds after the start
        QTest::addColumn<bool>("isFound");
        QTest::newRow("near the limit") << 9.5 << true;
        QTest::newRow("a while before") << 6.5 << true;
        QTest::newRow("too early") << 5.0 << false;
    }
    void speechWithoutABreathIsCutWhereItIsQuietest()
    {
        QFETCH(double, dip);
        QFETCH(bool, isFound);
        Feed feed;
        feed.loudness = 0.2F;
        feed.speech(dip);
        feed.loudness = 0.02F;
        feed.give(2, true);
        const std::int64_t gap = feed.segmenter().position();
        feed.loudness = 0.2F;
        feed.speech(12 - dip);
        QCOMPARE(feed.segments.size(), std::size_t(1));
        QVERIFY(feed.segments[0].isCut);
        QCOMPARE(std::abs(feed.segments[0].end() - gap) <= 2 * window, isFound);
        feed.silence(1);
        QCOMPARE(feed.segments.size(), std::size_t(2));
        QCOMPARE(feed.segments[1].start, feed.segments[0].end());
        QCOMPARE(feed.segments[0].voiced + feed.segments[1].voiced, gap + windowsIn(12 - dip) * window);
        QVERIFY(feed.segments[1].continuesSpeech);
        QVERIFY(!feed.segments[1].isCut);
    }

    void ofSeveralQuietPlacesTheLatestServes()
    {
        Feed feed;
        for (const double length : {6.5, 1.5, 1.0}) {
            feed.loudness = 0.2F;
            feed.speech(length);
            feed.loudness = 0.02F;
            feed.give(2, true);
        }
        const std::int64_t latest = feed.segmenter().position();
        feed.loudness = 0.2F;
        feed.speech(2);
        QCOMPARE(feed.segments.size(), std::size_t(1));
        QVERIFY(std::abs(feed.segments[0].end() - latest) <= 2 * window);
    }

    void afterAPauseASentenceIsNew()
    {
        Feed feed;
        feed.speech(8.5);
        feed.silence(0.15);
        feed.speech(1);
        feed.silence(1);
        feed.speech(1);
        feed.silence(1);
        QCOMPARE(feed.segments.size(), std::size_t(3));
        QVERIFY(feed.segments[0].isCut && !feed.segments[0].continuesSpeech);
        QVERIFY(!feed.segments[1].isCut && feed.segments[1].continuesSpeech);
        QVERIFY(!feed.segments[2].isCut && !feed.segments[2].continuesSpeech);
    }

    void aCutBeforeALongPauseIsNotContinued()
    {
        Feed feed;
        feed.speech(8.5);
        feed.silence(2);
        feed.speech(1);
        feed.silence(1);
        QCOMPARE(feed.segments.size(), std::size_t(2));
        QVERIFY(!feed.segments[1].continuesSpeech);
    }

    void theLastSyllableOfCutSpeechIsKeptHoweverShort()
    {
        Feed feed;
        feed.give(313, true); // just over the hard limit
        QVERIFY(feed.segmenter().hasCutSpeech());
        feed.give(2, true);
        feed.silence(1);
        QCOMPARE(feed.segments.size(), std::size_t(2));
        QCOMPARE(feed.segments[1].start, feed.segments[0].end());
    }

    void aBreathEndsALongSegment()
    {
        Feed feed;
        feed.speech(8.5);
        feed.silence(0.15);
        QCOMPARE(feed.segments.size(), std::size_t(1));
        QVERIFY(!feed.segmenter().hasCutSpeech());
    }

    void hurriedSegmentsCloseEarly()
    {
        Feed feed;
        feed.segmenter().setLimits(Segmenter::hurriedLimits);
        feed.loudness = 0.2F;
        feed.speech(12);
        QCOMPARE(feed.segments.size(), std::size_t(2));
        feed.speech(1);
        feed.silence(0.3);
        QCOMPARE(feed.segments.size(), std::size_t(3));
    }

    void whatMaySettleIsNeverInALaterSegment()
    {
        std::mt19937 random(3);
        for (int round = 0; round < 100; ++round) {
            Feed feed;
            std::int64_t settled = 0;
            std::int64_t end = 0;
            for (int piece = 0; piece < 60; ++piece) {
                const std::size_t before = feed.segments.size();
                if (random() % 9 == 0) {
                    feed.segmenter().setLimits(
                        random() % 2 == 0 ? Segmenter::hurriedLimits : Segmenter::unhurriedLimits);
                }
                feed.give(1 + random() % 40, random() % 2 == 0);
                for (std::size_t i = before; i < feed.segments.size(); ++i) {
                    const SpeechSegment &segment = feed.segments[i];
                    QVERIFY(segment.start >= settled);
                    QVERIFY(segment.start >= end);
                    QVERIFY(segment.voiced > 0);
                    QVERIFY(segment.voiced <= static_cast<std::int64_t>(segment.samples.size()));
                    QCOMPARE(segment.samples.front(), static_cast<float>(segment.start % 100000));
                    end = segment.end();
                }
                QVERIFY(feed.segmenter().settledPosition() >= settled);
                settled = feed.segmenter().settledPosition();
                QVERIFY(settled <= feed.segmenter().position());
            }
        }
    }
};

LUMAPHONE_TEST(SegmenterTest)

} // namespace segmentertest

#include "SegmenterTest.moc"
