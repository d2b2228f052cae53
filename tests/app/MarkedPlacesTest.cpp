#include "app/live/MarkedPlaces.h"

#include "app/OffscreenTest.h"
#include "app/controls/LanguageFonts.h"
#include "app/live/TextPlaces.h"
#include "app/live/TranscriptModel.h"

#include <QImage>
#include <QQuickWindow>
#include <QTest>

namespace markedplacestest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const QColor selectedColor(200, 210, 250);
const QColor foundColor(250, 240, 190);
const QColor lookedAtColor(250, 210, 100);

QVariantMap mark(int from, int to, TranscriptModel::MarkKind kind)
{
    return {{"from", from}, {"to", to}, {"kind", kind}};
}

/// A white window with the marks of a Japanese text, which breaks after some ten characters.
struct Paper
{
    QQuickWindow window;
    MarkedPlaces marks {window.contentItem()};
    QFont font = [] {
        QFont made(LanguageFonts::familyOf("japanese"));
        made.setPixelSize(15);
        return made;
    }();
    QString text = "予算は先週の会議で決まった通り、二百万円です。";

    Paper()
    {
        window.resize(400, 100);
        marks.setWidth(160);
        marks.setProperty("text", text);
        marks.setProperty("font", font);
        marks.setProperty("lineHeight", 24);
        marks.setProperty("selectedColor", selectedColor);
        marks.setProperty("foundColor", foundColor);
        marks.setProperty("lookedAtColor", lookedAtColor);
        window.show();
    }
    void show(const QVariantList &list) { marks.setProperty("marks", list); }
    /// What is painted at the middle of a character.
    QColor at(int character)
    {
        const QImage image = window.grabWindow();
        const LaidOutText laid({text, font, marks.width(), 24});
        const QPointF middle = laid.places(character, character + 1).first().center();
        return image.pixelColor((middle * image.devicePixelRatio()).toPoint());
    }
};

} // namespace

class MarkedPlacesTest : public QObject
{
    Q_OBJECT

private slots:
    void eachKindHasItsColor()
    {
        Paper paper;
        paper.show({mark(1, 2, TranscriptModel::Selected), mark(3, 5, TranscriptModel::Found),
            mark(12, 14, TranscriptModel::LookedAt)});
        QCOMPARE(paper.at(0), QColor(Qt::white));
        QCOMPARE(paper.at(1), selectedColor);
        QCOMPARE(paper.at(3), foundColor);
        QCOMPARE(paper.at(4), foundColor);
        QCOMPARE(paper.at(5), QColor(Qt::white));
        QCOMPARE(paper.at(13), lookedAtColor);
    }

    void whatIsLookedAtIsPaintedOverTheSelection()
    {
        Paper paper;
        paper.show({mark(0, 8, TranscriptModel::Selected), mark(2, 4, TranscriptModel::LookedAt)});
        QCOMPARE(paper.at(1), selectedColor);
        QCOMPARE(paper.at(2), lookedAtColor);
    }

    void aSelectionOverTwoLinesHasNoGap()
    {
        Paper paper;
        paper.show({mark(0, int(paper.text.size()), TranscriptModel::Selected)});
        const QImage image = paper.window.grabWindow();
        for (int y = 0; y < 48; ++y) {
            QCOMPARE(image.pixelColor((QPointF(5, y) * image.devicePixelRatio()).toPoint()), selectedColor);
        }
    }

    void whatIsFoundHasRoundCorners()
    {
        Paper paper;
        paper.show({mark(0, 3, TranscriptModel::Found)});
        QCOMPARE(paper.window.grabWindow().pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(paper.window.grabWindow().pixelColor(1, 0), foundColor);
        QCOMPARE(paper.window.grabWindow().pixelColor(0, 1), foundColor);
    }

    void marksFollowTheTextAndItsWidth()
    {
        Paper paper;
        paper.show({mark(12, 14, TranscriptModel::Found)});
        QCOMPARE(paper.at(12), foundColor);
        paper.marks.setWidth(390);
        QCOMPARE(paper.at(12), foundColor);
        QCOMPARE(paper.at(11), QColor(Qt::white));
        paper.text = "Thirteen letters";
        paper.marks.setProperty("text", paper.text);
        QCOMPARE(paper.at(12), foundColor);
        QCOMPARE(paper.at(11), QColor(Qt::white));
    }

    void marksThatAreGoneLeaveNothing()
    {
        Paper paper;
        paper.show({mark(0, 3, TranscriptModel::Selected), mark(4, 6, TranscriptModel::Found)});
        QCOMPARE(paper.at(4), foundColor);
        paper.show({mark(0, 3, TranscriptModel::Selected)});
        QCOMPARE(paper.at(1), selectedColor);
        QCOMPARE(paper.at(4), QColor(Qt::white));
        paper.show({});
        QCOMPARE(paper.at(1), QColor(Qt::white));
    }
};

LUMAPHONE_OFFSCREEN_TEST(MarkedPlacesTest)

} // namespace markedplacestest

#include "MarkedPlacesTest.moc"
