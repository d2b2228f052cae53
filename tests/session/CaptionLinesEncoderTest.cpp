#include "session/CaptionLinesEncoder.h"

#include "support/CaptionLines.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <random>

namespace captionlinesencodertest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// The elements of the list as the ordinary writer puts them into an object.
QByteArray expected(const QList<LumaphoneCaptionLine> &lines)
{
    json::Value array = json::Value::array();
    for (const LumaphoneCaptionLine &line : lines) {
        array.push_back(toJson(line));
    }
    const QByteArray text = json::pretty(json::Value {{"lines", array}});
    if (lines.isEmpty()) {
        return {};
    }
    const QByteArray begin = "{\n  \"lines\": [\n";
    const QByteArray end = "\n  ]\n}";
    return text.sliced(begin.size(), text.size() - begin.size() - end.size());
}

} // namespace

class CaptionLinesEncoderTest : public QObject
{
    Q_OBJECT

private slots:
    void writesWhatTheOrdinaryWriterWrites()
    {
        CaptionLinesEncoder encoder;
        QCOMPARE(encoder.encode({}).toByteArray(), QByteArray());
        QList<LumaphoneCaptionLine> lines {captionLine(1, QStringLiteral("\"a\"\n,\\ [] {}"))};
        QCOMPARE(encoder.encode(lines).toByteArray(), expected(lines));
        lines.append(captionLine(2, QStringLiteral("今日")));
        QCOMPARE(encoder.encode(lines).toByteArray(), expected(lines));
    }

    void followsEveryChangeOfTheList()
    {
        std::mt19937 random(5);
        const auto below = [&random](qsizetype limit) {
            return qsizetype(random() % std::size_t(limit));
        };
        CaptionLinesEncoder encoder;
        QList<LumaphoneCaptionLine> lines;
        for (int step = 0; step < 3000; ++step) {
            switch (lines.isEmpty() ? 0 : below(12)) {
            case 0:
            case 1:
            case 2:
                lines.append(captionLine(uint(step), QString::number(step), below(2) == 0));
                break;
            case 3:
                lines[below(lines.size())].translatedText += QStringLiteral("\n譯");
                break;
            case 4:
                lines.last().sourceText += QChar(u'か');
                break;
            case 5:
                lines[below(lines.size())].isFinal ^= true;
                break;
            case 6:
                countRevision(lines[below(lines.size())]);
                break;
            case 7:
                lines[below(lines.size())].createdAt
                    = QDateTime(QDate(2026, 3, 1), QTime(0, 0), QTimeZone::utc());
                break;
            case 8:
                lines.removeAt(below(lines.size()));
                break;
            case 9:
                lines.insert(below(lines.size()), captionLine(uint(step), QStringLiteral("x")));
                break;
            case 10:
                lines.swapItemsAt(below(lines.size()), below(lines.size()));
                break;
            case 11:
                if (below(20) == 0) {
                    lines.clear();
                }
                break;
            }
            QCOMPARE(encoder.encode(lines).toByteArray(), expected(lines));
        }
    }

    void equivalentTextsInOtherUnitsAreEncodedAnew()
    {
        CaptionLinesEncoder encoder;
        encoder.encode({captionLine(1, QStringLiteral("が"))});
        const QList<LumaphoneCaptionLine> respelled {captionLine(1, QStringLiteral("か\u3099"))};
        QCOMPARE(encoder.encode(respelled).toByteArray(), expected(respelled));
    }

    void tellsOnceThatALineBecameFinal()
    {
        CaptionLinesEncoder encoder;
        QList<LumaphoneCaptionLine> lines {captionLine(1, QStringLiteral("a"), false)};
        encoder.encode(lines);
        QVERIFY(!encoder.takeBecameFinal());
        lines[0].isFinal = true;
        encoder.encode(lines);
        QVERIFY(encoder.takeBecameFinal());
        QVERIFY(!encoder.takeBecameFinal());
        lines[0].translatedText = QStringLiteral("甲");
        lines.append(captionLine(2, QStringLiteral("b"), false));
        encoder.encode(lines);
        QVERIFY(!encoder.takeBecameFinal());
        lines.append(captionLine(3, QStringLiteral("c"), true));
        encoder.encode(lines);
        QVERIFY(encoder.takeBecameFinal());
    }
};

LUMAPHONE_TEST(CaptionLinesEncoderTest)

} // namespace captionlinesencodertest

#include "CaptionLinesEncoderTest.moc"
