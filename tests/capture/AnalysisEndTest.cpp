#include "capture/AnalysisEnd.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace analysisendtest {

using namespace lumaphone;

class AnalysisEndTest : public QObject
{
    Q_OBJECT

private slots:
    void theLastTaskGivesTheNotice()
    {
        AnalysisEnd end(2);
        int notices = 0;
        end.whenEnded([&notices] { ++notices; });
        end.taskEnded();
        QCOMPARE(notices, 0);
        end.taskEnded();
        QCOMPARE(notices, 1);
    }

    void aLateQuestionIsAnsweredAtOnce()
    {
        AnalysisEnd end(1);
        end.taskEnded();
        int notices = 0;
        end.whenEnded([&notices] { ++notices; });
        QCOMPARE(notices, 1);
    }

    void afterGivingUpThereIsNoNotice()
    {
        AnalysisEnd end(1);
        int notices = 0;
        end.whenEnded([&notices] { ++notices; });
        end.giveUp();
        end.taskEnded();
        QCOMPARE(notices, 0);
    }
};

LUMAPHONE_TEST(AnalysisEndTest)

} // namespace analysisendtest

#include "AnalysisEndTest.moc"
