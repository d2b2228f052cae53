#include "app/live/SoundTestModel.h"

#include "session/SoundCheck.h"
#include "support/LiveSession.h"
#include "support/TestSound.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace soundtestmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

struct Tested
{
    LiveSession session;
    std::unique_ptr<SoundTestModel> model;

    explicit Tested(std::chrono::milliseconds patience = std::chrono::hours(1))
    {
        SystemAudioCaptureController &controller = session.make();
        model = std::make_unique<SoundTestModel>(controller,
            std::make_unique<SoundCheck>(
                session.screenAudio, session.microphone, session.clock, session.mainQueue),
            patience);
    }
    FakeRecording &recording() const { return session.screenAudio->recording(); }
    void open() const
    {
        model->open();
        settle();
    }
    void play(double amplitude) const
    {
        TestSound sound(analysisDescription, std::vector<double>(320, amplitude));
        recording().deliver(sound.buffer());
        settle();
    }
};

} // namespace

class SoundTestModelTest : public QObject
{
    Q_OBJECT

private slots:
    void itListensOnlyWhileItIsOpen()
    {
        Tested tested;
        QCOMPARE(tested.recording().recordersMade(), 0);
        QCOMPARE(tested.model->device(), "系統音訊");
        tested.open();
        QVERIFY(tested.model->isOpen());
        QVERIFY(tested.recording().isRunning());
        QCOMPARE(tested.model->device(), "Speakers");
        QCOMPARE(tested.model->message(), "播放一段影片或音樂試試看。");
        tested.model->close();
        QVERIFY(!tested.recording().isRunning());
        QVERIFY(!tested.model->isOpen());
    }

    void soundMovesTheLevel()
    {
        Tested tested;
        tested.open();
        tested.play(0);
        QCOMPARE(tested.model->level(), 0);
        QVERIFY(!tested.model->hasHeard());
        int highest = 0;
        connect(tested.model.get(), &SoundTestModel::levelChanged, this,
            [&] { highest = std::max(highest, tested.model->level()); });
        tested.play(0.5);
        QCOMPARE(highest, SoundTestModel::highestLevel());
        QVERIFY(tested.model->hasHeard());
        QCOMPARE(tested.model->message(), "聽得到聲音，可以開始了。");
        tested.model->close();
        QCOMPARE(tested.model->level(), 0);
        tested.open();
        QVERIFY(!tested.model->hasHeard());
    }

    void silenceSaysWhatToDoUntilSoundComes()
    {
        Tested tested(std::chrono::milliseconds(1));
        tested.open();
        QVERIFY(waitUntil([&] { return tested.model->isWithoutSound(); }));
        QCOMPARE(tested.model->message(), "系統音訊沒有聲音進來。請確認正在播放，而且沒有靜音。");
        TestSound sound(analysisDescription, std::vector<double>(320, 0.5));
        bool wasHeard = false;
        connect(tested.model.get(), &SoundTestModel::changed, this,
            [&] { wasHeard = wasHeard || tested.model->hasHeard(); });
        tested.recording().deliver(sound.buffer());
        QVERIFY(waitUntil([&] { return wasHeard; }));
        QVERIFY(waitUntil([&] { return tested.model->isWithoutSound(); })); // and then it is silent again
        QVERIFY(!tested.model->hasHeard());
    }

    void aSessionEndsItAtOnce()
    {
        Tested tested;
        tested.session.nextPipeline->gate.close();
        tested.open();
        QSignalSpy ended(tested.model.get(), &SoundTestModel::ended);
        tested.session.controller->start();
        QVERIFY(!tested.recording().isRunning());
        QCOMPARE(ended.size(), 1);
        tested.open();
        QVERIFY(!tested.model->isOpen());
        QVERIFY(!tested.recording().isRunning());
        tested.session.nextPipeline->gate.open();
        settle();
        tested.open();
        QVERIFY(!tested.recording().isRunning());
        tested.session.controller->stop(true);
        tested.open();
        QVERIFY(tested.recording().isRunning());
    }

    void theOtherSourceIsTestedWhenItIsChosen()
    {
        Tested tested;
        tested.open();
        tested.session.controller->setAudioInputSource(LumaphoneAudioInputSource::microphone);
        settle();
        QVERIFY(!tested.recording().isRunning());
        QVERIFY(tested.session.microphone->recording().isRunning());
        QCOMPARE(tested.model->device(), "Microphone");
        QCOMPARE(tested.model->message(), "對著麥克風說句話試試看。");
        tested.model.reset();
        QVERIFY(!tested.session.microphone->recording().isRunning());
    }

    void whatCannotBeHeardSaysWhy()
    {
        Tested tested;
        tested.session.screenAudio->outputFailure = "no server";
        tested.open();
        QVERIFY(tested.model->hasFailed());
        QVERIFY(!tested.model->isWithoutSound());
        QCOMPARE(tested.model->message(), "no server");
        tested.model->close();
        tested.session.screenAudio->outputFailure.reset();
        tested.open();
        QVERIFY(!tested.model->hasFailed());
    }
};

LUMAPHONE_TEST(SoundTestModelTest)

} // namespace soundtestmodeltest

#include "SoundTestModelTest.moc"
