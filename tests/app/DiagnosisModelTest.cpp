#include "app/diagnosis/DiagnosisModel.h"

#include "app/MachineWithoutSound.h"
#include "app/OffscreenTest.h"
#include "app/ViewUnderTest.h"
#include "support/Coroutines.h"
#include "support/Gate.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace diagnosismodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

class DiagnosisModelTest : public QObject
{
    Q_OBJECT

private slots:
    void aLookThatWaitsDoesNotHoldTheWindowUp()
    {
        const auto mainQueue = MainQueue::create();
        Gate gate;
        DetachedTasks tasks;
        DiagnosisModel model(
            [&gate] {
                gate.wait();
                return machineWithoutSound();
            },
            tasks, mainQueue);
        model.run();
        QVERIFY(model.isRunning());
        QVERIFY(model.groups().isEmpty());
        model.run(); // it is looking already
        gate.open();
        QVERIFY(waitUntil([&] { return !model.isRunning(); }));
        QCOMPARE(model.groups()[1].toMap()["title"].toString(), QString("聲音"));
        const QVariantMap finding = model.groups()[1].toMap()["findings"].toList()[0].toMap();
        QVERIFY(finding["isProblem"].toBool());
        QVERIFY(!finding["isAdvice"].toBool());
        QCOMPARE(finding["text"].toString(), QString("無法連線到聲音伺服器：Connection refused"));
        QVERIFY(finding["step"].toString().contains("pipewire-pulse"));
    }

    void aModelMayGoBeforeItsAnswer()
    {
        const auto mainQueue = MainQueue::create();
        Gate gate;
        bool isPosted = false;
        {
            DetachedTasks tasks;
            {
                DiagnosisModel model(
                    [&gate] {
                        gate.wait();
                        return MachineFacts();
                    },
                    tasks, mainQueue);
                model.run();
            }
            gate.open();
        }
        mainQueue->post([&isPosted] { isPosted = true; });
        QVERIFY(waitUntil([&isPosted] { return isPosted; }));
    }

    void theSheetShowsWhatIsMissingAndCopiesIt()
    {
        const auto mainQueue = MainQueue::create();
        DetachedTasks tasks;
        DiagnosisModel model(&machineWithoutSound, tasks, mainQueue);
        ViewUnderTest view(
            "Diagnosis", "DiagnosisSheet", {{"diagnosis", QVariant::fromValue(&model)}}, QSize(900, 900));
        QVERIFY(waitUntil([&] { return view.isShown("diagnosis.1.0"); }));
        QVERIFY(view.textOf("diagnosis.1.0").contains("無法連線到聲音伺服器：Connection refused"));
        QVERIFY(waitUntil([&] { return view.focusedName() == "diagnosis.flickable"; }));
        view.photograph("diagnosis");
        QGuiApplication::clipboard()->clear();
        QVERIFY(view.click("diagnosis.copy"));
        QVERIFY(waitUntil([] { return !QGuiApplication::clipboard()->text().isEmpty(); }));
        QVERIFY(QGuiApplication::clipboard()->text().contains("✗ 無法連線到聲音伺服器：Connection refused"));
        QSignalSpy changes(&model, &DiagnosisModel::changed);
        QVERIFY(view.click("diagnosis.again"));
        QVERIFY(waitUntil([&] { return changes.count() == 2; }));
        view.press(Qt::Key_Escape);
        QVERIFY(waitUntil([&] { return !view.isShown("diagnosis.close"); }));
    }
};

LUMAPHONE_OFFSCREEN_TEST(DiagnosisModelTest)

} // namespace diagnosismodeltest

#include "DiagnosisModelTest.moc"
