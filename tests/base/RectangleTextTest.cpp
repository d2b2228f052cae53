#include "base/RectangleText.h"

#include "support/program/TestProgram.h"

#include <QTest>

#include <limits>

namespace rectangletexttest {

using namespace lumaphone;

class RectangleTextTest : public QObject
{
    Q_OBJECT

private slots:
    void aRectangleIsWritten_data()
    {
        QTest::addColumn<QRectF>("rectangle");
        QTest::addColumn<QString>("text");
        QTest::newRow("whole numbers") << QRectF(0, 0, 820, 180) << "{{0, 0}, {820, 180}}";
        QTest::newRow("a fraction") << QRectF(310, 157.5, 820, 180) << "{{310, 157.5}, {820, 180}}";
        QTest::newRow("left of and below the first screen")
            << QRectF(-1920, -0.25, 360, 96) << "{{-1920, -0.25}, {360, 96}}";
        QTest::newRow("round numbers keep their noughts")
            << QRectF(1000, 20000, 1000000, 100) << "{{1000, 20000}, {1000000, 100}}";
        QTest::newRow("shortest form") << QRectF(0.1, 1.0 / 3, 1, 1) << "{{0.1, 0.3333333333333333}, {1, 1}}";
        QTest::newRow("negative nought") << QRectF(-0.0, 0, 1, 1) << "{{0, 0}, {1, 1}}";
        QTest::newRow("no number") << QRectF(std::numeric_limits<double>::quiet_NaN(),
            std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), 1)
                                   << "{{0, 0}, {0, 1}}";
    }
    void aRectangleIsWritten()
    {
        QFETCH(QRectF, rectangle);
        QTEST(rectangleText(rectangle), "text");
    }

    void whatIsWrittenReadsBack_data()
    {
        QTest::addColumn<QRectF>("rectangle");
        QTest::newRow("zero") << QRectF();
        QTest::newRow("the usual place") << QRectF(310, 157.5, 820, 180);
        QTest::newRow("thirds") << QRectF(1.0 / 3, -2.0 / 3, 1e3 / 3, 1e5 / 7);
        QTest::newRow("no size, and less") << QRectF(5, 6, 0, -7);
        QTest::newRow("tiny") << QRectF(1e-7, -5e-324, 1e-300, 2.5e-10);
        QTest::newRow("huge") << QRectF(1e15, -1.7976931348623157e308, 1e300, 123456789012345678.0);
    }
    void whatIsWrittenReadsBack()
    {
        QFETCH(QRectF, rectangle);
        const QRectF read = rectangleFromText(rectangleText(rectangle));
        // QRectF compares fuzzily.
        QVERIFY(read.x() == rectangle.x());
        QVERIFY(read.y() == rectangle.y());
        QVERIFY(read.width() == rectangle.width());
        QVERIFY(read.height() == rectangle.height());
    }

    void textIsReadLeniently_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QRectF>("rectangle");
        QTest::newRow("as written") << "{{310, 157.5}, {820, 180}}" << QRectF(310, 157.5, 820, 180);
        QTest::newRow("without blanks") << "{{1,2},{3,4}}" << QRectF(1, 2, 3, 4);
        QTest::newRow("with many") << "  { { 1 ,\t2 } ,\n{ 3 , 4 } } " << QRectF(1, 2, 3, 4);
        QTest::newRow("without braces") << "1 2 3 4" << QRectF(1, 2, 3, 4);
        QTest::newRow("five numbers") << "1 2 3 4 5" << QRectF(1, 2, 3, 4);
        QTest::newRow("one number") << "{{7" << QRectF(7, 0, 0, 0);
        QTest::newRow("a point alone") << "{7, 8}" << QRectF(7, 8, 0, 0);
        QTest::newRow("signs") << "{{-1, +2}, {-3, 4}}" << QRectF(-1, 2, -3, 4);
        QTest::newRow("exponents") << "{{1e2, 2E+1}, {5e-1, 4}}" << QRectF(100, 20, 0.5, 4);
        QTest::newRow("half an exponent") << "{{1e, 2}, {3e+, 4}}" << QRectF(1, 2, 3, 4);
        QTest::newRow("bare points") << "{{.5, 6.}, {., 4}}" << QRectF(0.5, 6, 4, 0);
        QTest::newRow("a comma is no decimal point") << "{{1,5, 2}, {3, 4}}" << QRectF(1, 5, 2, 3);
        QTest::newRow("too large a number") << "{{1e999, 2}, {3, -1e999}}" << QRectF(0, 2, 3, 0);
        QTest::newRow("too small a number") << "{{1e-999, 2}, {3, 4}}" << QRectF(0, 2, 3, 4);
        QTest::newRow("words for numbers") << "{{nan, inf}, {infinity, 4}}" << QRectF(4, 0, 0, 0);
        QTest::newRow("other digits") << QStringLiteral("{{１, ٢}, {３, ४}}") << QRectF();
        QTest::newRow("garbage") << "caption" << QRectF();
        QTest::newRow("braces alone") << "{{, }, {, }}" << QRectF();
        QTest::newRow("empty") << "" << QRectF();
        QTest::newRow("none") << QString() << QRectF();
    }
    void textIsReadLeniently()
    {
        QFETCH(QString, text);
        QTEST(rectangleFromText(text), "rectangle");
    }

    void aLongTextIsReadAtOnce()
    {
        QCOMPARE(rectangleFromText(QString(1'000'000, QLatin1Char('-'))), QRectF());
        QCOMPARE(rectangleFromText(QString(1'000'000, QLatin1Char('9'))), QRectF());
        const QString many = QStringLiteral("1 ").repeated(500'000);
        QCOMPARE(rectangleFromText(many), QRectF(1, 1, 1, 1));
    }
};

LUMAPHONE_TEST(RectangleTextTest)

} // namespace rectangletexttest

#include "RectangleTextTest.moc"
