#include "app/live/CaptionLinesModel.h"

#include "support/LiveSession.h"
#include "support/program/TestProgram.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

namespace captionlinesmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

class CaptionLinesModelTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void aNewLineIsOneRowAndARevisionChangesIt()
    {
        LiveSession session;
        CaptionLinesModel model(session.started());
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);

        session.partial("おはよう");
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(inserted.size(), 1);
        session.partial("おはようございます");
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(inserted.size(), 1);
        QVERIFY(!changed.isEmpty());
        for (const auto &signal : changed) {
            QCOMPARE(signal.at(0).toModelIndex().row(), 0);
        }
        QCOMPARE(reset.size(), 0);
        const QModelIndex row = model.index(0);
        QCOMPARE(row.data(CaptionLinesModel::SourceTextRole), "おはようございます");
        QCOMPARE(row.data(CaptionLinesModel::SourceLanguageRole), "japanese");
        QCOMPARE(row.data(CaptionLinesModel::IsFinalRole), false);
        QCOMPARE(row.data(CaptionLinesModel::IsPendingRole), true);
        QCOMPARE(row.data(CaptionLinesModel::TimeRole), "08:00:00");
        QVERIFY(!row.data(Qt::DisplayRole).isValid());
        QVERIFY(!model.data(QModelIndex(), CaptionLinesModel::SourceTextRole).isValid());
    }

    void itKnowsWhetherATranslationIsMissing()
    {
        LiveSession session;
        CaptionLinesModel model(session.started());
        QSignalSpy pending(&model, &CaptionLinesModel::hasPendingTranslationChanged);
        QVERIFY(!model.hasPendingTranslation());
        QVERIFY(!model.hasTranslatedText());
        session.translator->plan = [](const QString &) {
            ScriptedTranslator::Plan plan;
            plan.delay = std::chrono::milliseconds(500);
            return plan;
        };
        session.final("おはようございます。");
        QVERIFY(model.hasPendingTranslation());
        session.clock->advance(std::chrono::seconds(2));
        settle();
        QVERIFY(!model.hasPendingTranslation());
        QVERIFY(model.hasTranslatedText());
        QCOMPARE(pending.size(), 2);
    }

    void aFailedTranslationIsNoPendingOne()
    {
        LiveSession session;
        CaptionLinesModel model(session.started());
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        QSignalSpy failed(&model, &CaptionLinesModel::failedCountChanged);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        session.translator->plan = [](const QString &) {
            return ScriptedTranslator::Plan {{}, QStringLiteral("no model")};
        };
        session.final("おはようございます。");
        QCOMPARE(model.failedCount(), 0);
        changed.clear();
        settle();
        QCOMPARE(model.failedCount(), 1);
        QVERIFY(!model.hasPendingTranslation());
        QCOMPARE(failed.size(), 1);
        QCOMPARE(changed.size(), 1);
        session.controller->clearCaptions();
        QCOMPARE(model.failedCount(), 0);
    }

    void aLineFinishesOnce()
    {
        LiveSession session;
        CaptionLinesModel model(session.started());
        QSignalSpy finished(&model, &CaptionLinesModel::lineFinished);
        session.partial("おはよう");
        QCOMPARE(finished.size(), 0);
        session.final("おはようございます。");
        session.clock->advance(std::chrono::seconds(2));
        settle();
        QCOMPARE(finished.size(), 1);
        QCOMPARE(finished.first().first().toInt(), 0);
    }

    void clearedLinesEmptyTheModel()
    {
        LiveSession session;
        CaptionLinesModel model(session.started());
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        session.final("おはようございます。");
        session.controller->clearCaptions();
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(!model.hasPendingTranslation());
        QVERIFY(!model.hasTranslatedText());
    }
};

LUMAPHONE_TEST(CaptionLinesModelTest)

} // namespace captionlinesmodeltest

#include "CaptionLinesModelTest.moc"
