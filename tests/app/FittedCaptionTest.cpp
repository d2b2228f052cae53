#include "app/floating/FittedCaption.h"

#include "app/OffscreenTest.h"
#include "app/floating/CaptionRoom.h"

#include <QTest>

namespace fittedcaptiontest {

using namespace lumaphone;

namespace {

const QFont chinese("Noto Sans CJK TC");

CaptionLineBounds boundsOf(double fontSize, int lines, QSizeF available)
{
    return {.fontSize = fontSize,
        .minimumFontSize = fontSize * 0.58,
        .maximumLines = lines,
        .available = available};
}

/// What `fitted` takes of a height without end.
double heightOf(const FittedCaption &fitted, CaptionLineBounds bounds)
{
    bounds.fontSize = bounds.minimumFontSize = fitted.fontSize;
    return captionHeight(fitted.text, chinese, bounds);
}

} // namespace

class FittedCaptionTest : public QObject
{
    Q_OBJECT

private slots:
    void aTextFitsItsBounds_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("lines");
        QTest::addColumn<QSizeF>("available");
        QTest::addColumn<double>("atLeast");
        QTest::addColumn<double>("atMost");
        QTest::addColumn<bool>("isWhole");
        const QString word = "字";
        const double least = 40 * 0.58;
        QTest::newRow("plenty of room") << word << 1 << QSizeF(500, 500) << 40.0 << 40.0 << true;
        QTest::newRow("empty") << "" << 1 << QSizeF(500, 500) << 40.0 << 40.0 << true;
        QTest::newRow("two lines' worth in one")
            << word.repeated(15) << 1 << QSizeF(500, 500) << 32.0 << 34.0 << true;
        QTest::newRow("small enough to lose words")
            << word.repeated(900) << 1 << QSizeF(500, 500) << least << least << false;
        QTest::newRow("too low") << word << 3 << QSizeF(500, 42) << 24.0 << 30.0 << true;
        QTest::newRow("own line breaks count")
            << "字\n字\n字" << 2 << QSizeF(500, 500) << least << least << false;
        QTest::newRow("too low for any size allowed") << word << 1 << QSizeF(500, 20) << 10.0 << 15.0 << true;
        QTest::newRow("no room at all") << word << 1 << QSizeF(0, 0) << least << least << false;
    }
    void aTextFitsItsBounds()
    {
        QFETCH(QString, text);
        QFETCH(int, lines);
        QFETCH(QSizeF, available);
        QFETCH(double, atLeast);
        QFETCH(double, atMost);
        const FittedCaption fitted = fittedCaption(text, chinese, boundsOf(40, lines, available));
        QVERIFY2(fitted.fontSize >= atLeast && fitted.fontSize <= atMost,
            qPrintable(QString::number(fitted.fontSize)));
        QTEST(fitted.isWhole, "isWhole");
    }

    void aSizeThatIsNoWholeNumberIsKept()
    {
        const FittedCaption fitted = fittedCaption("字", chinese, boundsOf(23.2, 1, {500, 500}));
        QCOMPARE(fitted.fontSize, 23.2);
        const DrawnFontSize drawn(23.2);
        QCOMPARE(drawn.pixels, 23);
        QCOMPARE(drawn.pixels * drawn.scale, 23.2);
        QCOMPARE(DrawnFontSize(34).scale, 1.0);
    }

    void theNewestWordsStay_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("end");
        QTest::newRow("words") << QString("one two, three four ").repeated(20) + "and the very last ones"
                               << "the very last ones";
        QTest::newRow("characters") << QString("這是一句很長的話，").repeated(20) + "到此為止"
                                    << "到此為止";
        QTest::newRow("one endless word") << QString("x").repeated(900) + "end"
                                          << "xxxend";
    }
    void theNewestWordsStay()
    {
        QFETCH(QString, text);
        QFETCH(QString, end);
        const CaptionLineBounds bounds = boundsOf(40, 2, {400, 200});
        const FittedCaption fitted = fittedCaption(text, chinese, bounds);
        QVERIFY(!fitted.isWhole);
        QVERIFY2(fitted.text.startsWith("…") && fitted.text.endsWith(end), qPrintable(fitted.text));
        QVERIFY2(text.endsWith(fitted.text.mid(1)), qPrintable(fitted.text));
        QVERIFY2(fitted.text.at(1).isLetterOrNumber(), qPrintable(fitted.text));
        // Two full lines: another word of that length would not have had room.
        QVERIFY(heightOf(fitted, bounds) > bounds.minimumFontSize * 2);
    }

    void noLineIsCutThrough()
    {
        const QString text = QString("這是一句很長的話，with some words ").repeated(9);
        for (int height = 12; height < 240; height += 7) {
            for (const double size : {14.0, 23.2, 41.76, 72.0}) {
                const CaptionLineBounds bounds = boundsOf(size, 3, QSizeF(304, height));
                const FittedCaption fitted = fittedCaption(text, chinese, bounds);
                const double taken = heightOf(fitted, bounds);
                QVERIFY2(taken > 0 && taken <= height,
                    qPrintable(QString("%1 of %2 at %3").arg(taken).arg(height).arg(size)));
            }
        }
    }

    void theHeightOfThePanelIsShared_data()
    {
        QTest::addColumn<double>("height");
        QTest::addColumn<double>("leastSource");
        QTest::addColumn<double>("leastTranslation");
        QTest::addColumn<double>("padding");
        QTest::addColumn<double>("sourceHeight");
        QTest::addColumn<bool>("showsSource");
        QTest::newRow("as it opens") << 180.0 << 20.0 << 30.0 << 18.0 << 144 * 0.4 << true;
        QTest::newRow("the source has its line") << 120.0 << 38.0 << 40.0 << 18.0 << 38.0 << true;
        QTest::newRow("the padding gives way") << 96.0 << 34.0 << 46.0 << 8.0 << 34.0 << true;
        QTest::newRow("then the source does") << 96.0 << 40.0 << 60.0 << 18.0 << 0.0 << false;
        QTest::newRow("one line alone") << 96.0 << 0.0 << 70.0 << 13.0 << 0.0 << false;
        QTest::newRow("the source alone") << 180.0 << 30.0 << 0.0 << 18.0 << 144.0 << true;
        QTest::newRow("the source alone never goes") << 30.0 << 40.0 << 0.0 << 4.0 << 22.0 << true;
    }
    void theHeightOfThePanelIsShared()
    {
        QFETCH(double, height);
        QFETCH(double, leastSource);
        QFETCH(double, leastTranslation);
        const CaptionRoom room(height, 18, {leastSource, leastTranslation});
        QTEST(room.padding, "padding");
        QTEST(room.sourceHeight, "sourceHeight");
        QTEST(room.showsSource, "showsSource");
        QCOMPARE(room.textHeight, height - 2 * room.padding);
    }
};

LUMAPHONE_OFFSCREEN_TEST(FittedCaptionTest)

} // namespace fittedcaptiontest

#include "FittedCaptionTest.moc"
