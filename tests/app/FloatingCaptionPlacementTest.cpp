#include "app/floating/FloatingCaptionPlacement.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace floatingcaptionplacementtest {

using namespace lumaphone::floatingcaption;

class FloatingCaptionPlacementTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirstPanelIsCentredNearTheLowerEdge_data()
    {
        QTest::addColumn<QRectF>("visibleFrame");
        QTest::addColumn<QPointF>("origin");
        QTest::newRow("18 % of 875") << QRectF(0, 0, 1440, 875) << QPointF(310, 157.5);
        QTest::newRow("capped at 180") << QRectF(0, 0, 1920, 1200) << QPointF(550, 180);
        QTest::newRow("exactly at the cap") << QRectF(0, 0, 820, 1000) << QPointF(0, 180);
        QTest::newRow("a screen beside the main one") << QRectF(-1000, 40, 1000, 500) << QPointF(-910, 130);
        QTest::newRow("narrower than the panel") << QRectF(0, 0, 640, 400) << QPointF(-90, 72);
    }
    void theFirstPanelIsCentredNearTheLowerEdge()
    {
        QFETCH(QRectF, visibleFrame);
        QTEST(initialOrigin(visibleFrame, initialSize), "origin");
    }

    void framesCountFromTheLowerLeftCornerOfTheMainScreen_data()
    {
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<QRect>("mainScreen");
        QTest::addColumn<QRectF>("frame");
        const QRect main(0, 0, 1440, 900);
        QTest::newRow("at the top") << QRect(10, 0, 820, 180) << main << QRectF(10, 720, 820, 180);
        QTest::newRow("at the bottom") << QRect(10, 720, 820, 180) << main << QRectF(10, 0, 820, 180);
        QTest::newRow("above the main screen")
            << QRect(0, -500, 400, 100) << main << QRectF(0, 1300, 400, 100);
        QTest::newRow("below it") << QRect(-50, 1000, 400, 100) << main << QRectF(-50, -200, 400, 100);
        QTest::newRow("a main screen that is not at the origin")
            << QRect(1500, 300, 400, 100) << QRect(1440, 200, 800, 600) << QRectF(1500, 400, 400, 100);
    }
    void framesCountFromTheLowerLeftCornerOfTheMainScreen()
    {
        QFETCH(QRect, geometry);
        QFETCH(QRect, mainScreen);
        QFETCH(QRectF, frame);
        QCOMPARE(upwards(geometry, mainScreen), frame);
        QCOMPARE(downwards(frame, mainScreen), geometry);
    }

    void aHalfPixelIsRoundedOnce()
    {
        QCOMPARE(downwards({310, 157.5, 820, 180}, {0, 0, 1440, 900}), QRect(310, 563, 820, 180));
    }

    void aPanelGrowsUpwardsOnItsScreen_data()
    {
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<int>("height");
        QTest::addColumn<QRect>("result");
        const QRect low(300, 700, 360, 96);
        QTest::newRow("upwards") << low << 200 << QRect(300, 596, 360, 200);
        QTest::newRow("never smaller") << low << 50 << low;
        QTest::newRow("into the screen") << QRect(300, 10, 360, 96) << 200 << QRect(300, 0, 360, 200);
        QTest::newRow("wider where the height is not enough") << low << 900 << QRect(0, 276, 1280, 520);
        QTest::newRow("as large as can be") << QRect(20, 30, 1280, 520) << 900 << QRect(20, 30, 1280, 520);
    }
    void aPanelGrowsUpwardsOnItsScreen()
    {
        QFETCH(QRect, geometry);
        QFETCH(int, height);
        QTEST(grown(geometry, height, QRect(0, 0, 1440, 900)), "result");
    }

    void thePanelKeepsClearOfDialogs_data()
    {
        QTest::addColumn<QRect>("panel");
        QTest::addColumn<QList<QRect>>("dialogs");
        QTest::addColumn<std::optional<QRect>>("place");
        using Place = std::optional<QRect>;
        const QRect panel(310, 563, 820, 180);
        QTest::newRow("far away") << panel << QList<QRect> {QRect(440, 100, 560, 300)} << Place(panel);
        QTest::newRow("below it") << panel << QList<QRect> {QRect(440, 300, 560, 300)}
                                  << Place(QRect(310, 608, 820, 180));
        QTest::newRow("above it") << panel << QList<QRect> {QRect(440, 500, 560, 300)}
                                  << Place(QRect(310, 312, 820, 180));
        QTest::newRow("beside it") << QRect(100, 400, 400, 96) << QList<QRect> {QRect(440, 100, 560, 700)}
                                   << Place(QRect(32, 400, 400, 96));
        QTest::newRow("beside two") << panel
                                    << QList<QRect> {QRect(440, 300, 560, 300), QRect(400, 650, 300, 200)}
                                    << Place(QRect(310, 112, 820, 180));
        QTest::newRow("no room") << panel << QList<QRect> {QRect(300, 100, 840, 700)} << Place();
    }
    void thePanelKeepsClearOfDialogs()
    {
        QFETCH(QRect, panel);
        QFETCH(QList<QRect>, dialogs);
        QFETCH(std::optional<QRect>, place);
        QCOMPARE(clearOf(panel, dialogs, QRect(0, 0, 1440, 900)), place);
    }

    void edgesAreNarrow_data()
    {
        QTest::addColumn<QPointF>("position");
        QTest::addColumn<Qt::Edges>("edges");
        QTest::addColumn<Qt::CursorShape>("cursor");
        QTest::newRow("middle") << QPointF(400, 90) << Qt::Edges() << Qt::ArrowCursor;
        QTest::newRow("left") << QPointF(7.9, 90) << Qt::Edges(Qt::LeftEdge) << Qt::SizeHorCursor;
        QTest::newRow("just inside") << QPointF(8, 90) << Qt::Edges() << Qt::ArrowCursor;
        QTest::newRow("right") << QPointF(812, 90) << Qt::Edges(Qt::RightEdge) << Qt::SizeHorCursor;
        QTest::newRow("just left of it") << QPointF(811.9, 90) << Qt::Edges() << Qt::ArrowCursor;
        QTest::newRow("top") << QPointF(400, 0) << Qt::Edges(Qt::TopEdge) << Qt::SizeVerCursor;
        QTest::newRow("bottom") << QPointF(400, 179) << Qt::Edges(Qt::BottomEdge) << Qt::SizeVerCursor;
        QTest::newRow("upper left") << QPointF(0, 0) << (Qt::LeftEdge | Qt::TopEdge) << Qt::SizeFDiagCursor;
        QTest::newRow("lower right") << QPointF(819, 179) << (Qt::RightEdge | Qt::BottomEdge)
                                     << Qt::SizeFDiagCursor;
        QTest::newRow("upper right") << QPointF(819, 0) << (Qt::RightEdge | Qt::TopEdge)
                                     << Qt::SizeBDiagCursor;
        QTest::newRow("lower left") << QPointF(0, 179) << (Qt::LeftEdge | Qt::BottomEdge)
                                    << Qt::SizeBDiagCursor;
    }
    void edgesAreNarrow()
    {
        QFETCH(QPointF, position);
        const Qt::Edges found = edgesAt(position, initialSize);
        QTEST(found, "edges");
        QTEST(cursorFor(found), "cursor");
    }

    void draggingKeepsTheSizeWithinItsLimits_data()
    {
        QTest::addColumn<Qt::Edges>("edges");
        QTest::addColumn<QPoint>("delta");
        QTest::addColumn<QRect>("result");
        const Qt::Edges none;
        QTest::newRow("moved") << none << QPoint(-300, 40) << QRect(-200, 140, 820, 180);
        QTest::newRow("right") << Qt::Edges(Qt::RightEdge) << QPoint(100, 50) << QRect(100, 100, 920, 180);
        QTest::newRow("bottom") << Qt::Edges(Qt::BottomEdge) << QPoint(9, -20) << QRect(100, 100, 820, 160);
        QTest::newRow("left") << Qt::Edges(Qt::LeftEdge) << QPoint(20, 50) << QRect(120, 100, 800, 180);
        QTest::newRow("top") << Qt::Edges(Qt::TopEdge) << QPoint(20, -30) << QRect(100, 70, 820, 210);
        QTest::newRow("corner") << (Qt::LeftEdge | Qt::TopEdge) << QPoint(10, 10)
                                << QRect(110, 110, 810, 170);
        QTest::newRow("no wider than 1280")
            << Qt::Edges(Qt::RightEdge) << QPoint(900, 0) << QRect(100, 100, 1280, 180);
        QTest::newRow("no narrower than 360; the right edge stays")
            << Qt::Edges(Qt::LeftEdge) << QPoint(700, 0) << QRect(560, 100, 360, 180);
        QTest::newRow("no higher than 520; the lower edge stays")
            << Qt::Edges(Qt::TopEdge) << QPoint(0, -900) << QRect(100, -240, 820, 520);
        QTest::newRow("no lower than 96")
            << Qt::Edges(Qt::BottomEdge) << QPoint(0, -900) << QRect(100, 100, 820, 96);
    }
    void draggingKeepsTheSizeWithinItsLimits()
    {
        QFETCH(Qt::Edges, edges);
        QFETCH(QPoint, delta);
        QTEST(dragged(QRect(100, 100, 820, 180), edges, delta), "result");
    }

    void aDragStaysWithinItsBounds_data()
    {
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<Qt::Edges>("edges");
        QTest::addColumn<QPoint>("delta");
        QTest::addColumn<QPoint>("bounded");
        const QRect middle(500, 400, 820, 180);
        const Qt::Edges all;
        QTest::newRow("with room") << middle << all << QPoint(60, -70) << QPoint(60, -70);
        QTest::newRow("to the left and up") << middle << all << QPoint(-900, -900) << QPoint(-500, -400);
        QTest::newRow("to the right and down") << middle << all << QPoint(900, 900) << QPoint(120, 320);
        QTest::newRow("a left edge to the left")
            << middle << Qt::Edges(Qt::LeftEdge) << QPoint(-900, 0) << QPoint(-500, 0);
        QTest::newRow("a left edge to the right is limited by the sizes alone")
            << middle << Qt::Edges(Qt::LeftEdge) << QPoint(3000, 0) << QPoint(3000, 0);
        QTest::newRow("a lower right corner")
            << middle << Qt::Edges(Qt::RightEdge | Qt::BottomEdge) << QPoint(900, 900) << QPoint(120, 320);
        QTest::newRow("one that reaches over the edge is not pushed")
            << QRect(-100, 400, 820, 180) << all << QPoint(-10, 5) << QPoint(-0, 5);
    }
    void aDragStaysWithinItsBounds()
    {
        QFETCH(QRect, geometry);
        QFETCH(Qt::Edges, edges);
        QFETCH(QPoint, delta);
        QTEST(boundedDrag(geometry, edges, delta, QRect(0, 0, 1440, 900)), "bounded");
    }

    void aPointerStaysOnTheScreens_data()
    {
        QTest::addColumn<QPointF>("pointer");
        QTest::addColumn<QPointF>("step");
        QTest::addColumn<QPointF>("next");
        QTest::newRow("on one") << QPointF(10, 10) << QPointF(5.5, -3) << QPointF(15.5, 7);
        QTest::newRow("against an edge") << QPointF(10, 10) << QPointF(-40, 5) << QPointF(0, 15);
        QTest::newRow("over to another") << QPointF(1430, 300) << QPointF(40, 0) << QPointF(1470, 300);
        QTest::newRow("beside the other, which is less high")
            << QPointF(1430, 850) << QPointF(40, 0) << QPointF(1439, 850);
        QTest::newRow("from nowhere") << QPointF(-50, -50) << QPointF(5, 5) << QPointF(-45, -45);
    }
    void aPointerStaysOnTheScreens()
    {
        QFETCH(QPointF, pointer);
        QFETCH(QPointF, step);
        QTEST(stepped(pointer, step, {QRect(0, 0, 1440, 900), QRect(1440, 0, 800, 600)}), "next");
    }

    void aPanelIsFittedIntoAScreen_data()
    {
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<QRect>("result");
        QTest::newRow("one that fits stays") << QRect(1500, 50, 700, 200) << QRect(1500, 50, 700, 200);
        QTest::newRow("over an edge") << QRect(2000, 500, 700, 200) << QRect(1540, 400, 700, 200);
        QTest::newRow("on another screen") << QRect(0, -300, 700, 200) << QRect(1440, 0, 700, 200);
        QTest::newRow("too wide") << QRect(1500, 50, 1200, 200) << QRect(1440, 50, 800, 200);
        QTest::newRow("smaller than allowed") << QRect(1500, 50, 10, 10) << QRect(1500, 50, 360, 96);
    }
    void aPanelIsFittedIntoAScreen()
    {
        QFETCH(QRect, geometry);
        QTEST(fitted(geometry, QRect(1440, 0, 800, 600)), "result");
    }
};

LUMAPHONE_TEST(FloatingCaptionPlacementTest)

} // namespace floatingcaptionplacementtest

#include "FloatingCaptionPlacementTest.moc"
