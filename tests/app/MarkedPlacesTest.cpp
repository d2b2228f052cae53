#include "app/live/MarkedPlaces.h"

#include "app/OffscreenTest.h"
#include "app/controls/LanguageFonts.h"
#include "app/live/TextPlaces.h"
#include "app/live/TranscriptModel.h"

#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>

#include <cmath>
#include <memory>

namespace markedplacestest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const QColor selectedColor(200, 210, 250);
const QColor foundColor(250, 240, 190);
const QColor lookedAtColor(250, 210, 100);

/// Of a color, as far as it can be told: what is painted is not quite opaque.
QString nameOf(const QColor &color)
{
    const auto isNear = [&color](const QColor &other) {
        return std::abs(color.red() - other.red()) < 3 && std::abs(color.green() - other.green()) < 3
            && std::abs(color.blue() - other.blue()) < 3;
    };
    return isNear(selectedColor) ? "selected"
        : isNear(foundColor)     ? "found"
        : isNear(lookedAtColor)  ? "looked at"
        : isNear(Qt::white)      ? "paper"
                                 : color.name();
}

QVariantMap mark(int from, int to, TranscriptModel::MarkKind kind)
{
    return {{"from", from}, {"to", to}, {"kind", kind}};
}

/// A white window with the marks of a Japanese text, which breaks after some ten characters.
struct Paper
{
    const QPointF place {20, 30};
    QQmlEngine engine;
    QQuickWindow window;
    std::unique_ptr<QQuickItem> sheet {colored(Qt::white)};
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
        sheet->setParentItem(window.contentItem());
        sheet->setSize({400, 100});
        sheet->setZ(-1);
        window.setColor(Qt::black);
        marks.setPosition(place);
        marks.setWidth(160);
        marks.setProperty("text", text);
        marks.setProperty("font", font);
        marks.setProperty("lineHeight", 24);
        marks.setProperty("selectedColor", selectedColor);
        marks.setProperty("foundColor", foundColor);
        marks.setProperty("lookedAtColor", lookedAtColor);
        window.show();
    }
    std::unique_ptr<QQuickItem> colored(const QColor &color)
    {
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nRectangle {}", QUrl());
        std::unique_ptr<QQuickItem> made(qobject_cast<QQuickItem *>(component.create()));
        made->setProperty("color", color);
        return made;
    }
    void show(const QVariantList &list) { marks.setProperty("marks", list); }
    /// What is painted at the middle of a character.
    QString at(int character)
    {
        const QImage image = window.grabWindow();
        const LaidOutText laid({text, font, marks.width(), 24});
        const QPointF middle = laid.places(character, character + 1).first().center();
        return nameOf(image.pixelColor(((place + middle) * image.devicePixelRatio()).toPoint()));
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
        QCOMPARE(paper.at(0), "paper");
        QCOMPARE(paper.at(1), "selected");
        QCOMPARE(paper.at(3), "found");
        QCOMPARE(paper.at(4), "found");
        QCOMPARE(paper.at(5), "paper");
        QCOMPARE(paper.at(13), "looked at");
    }

    void marksThatComeLaterStandWhereTheTextIs()
    {
        Paper paper;
        QCOMPARE(paper.at(1), "paper");
        paper.show({mark(1, 2, TranscriptModel::Selected)});
        QCOMPARE(paper.at(1), "selected");
        QCOMPARE(paper.at(2), "paper");
        paper.show({mark(1, 2, TranscriptModel::Selected), mark(3, 5, TranscriptModel::Found)});
        QCOMPARE(paper.at(1), "selected");
        QCOMPARE(paper.at(4), "found");
    }

    void whatIsLookedAtIsPaintedOverTheSelection()
    {
        Paper paper;
        paper.show({mark(0, 8, TranscriptModel::Selected), mark(2, 4, TranscriptModel::LookedAt)});
        QCOMPARE(paper.at(1), "selected");
        QCOMPARE(paper.at(2), "looked at");
    }

    void aSelectionOverTwoLinesHasNoGap()
    {
        Paper paper;
        paper.show({mark(0, int(paper.text.size()), TranscriptModel::Selected)});
        const QImage image = paper.window.grabWindow();
        for (int y = 0; y < 48; ++y) {
            QCOMPARE(nameOf(image.pixelColor(
                         ((paper.place + QPointF(5, y)) * image.devicePixelRatio()).toPoint())),
                "selected");
        }
    }

    void whatIsFoundHasRoundCorners()
    {
        Paper paper;
        paper.show({mark(0, 3, TranscriptModel::Found)});
        const QImage image = paper.window.grabWindow();
        const QPoint corner = paper.place.toPoint();
        QCOMPARE(nameOf(image.pixelColor(corner)), "paper");
        QCOMPARE(nameOf(image.pixelColor(corner + QPoint(1, 0))), "found");
        QCOMPARE(nameOf(image.pixelColor(corner + QPoint(0, 1))), "found");
    }

    void marksFollowTheTextAndItsWidth()
    {
        Paper paper;
        paper.show({mark(12, 14, TranscriptModel::Found)});
        QCOMPARE(paper.at(12), "found");
        paper.marks.setWidth(390);
        QCOMPARE(paper.at(12), "found");
        QCOMPARE(paper.at(11), "paper");
        paper.text = "Thirteen letters";
        paper.marks.setProperty("text", paper.text);
        QCOMPARE(paper.at(12), "found");
        QCOMPARE(paper.at(11), "paper");
    }

    void marksThatAreGoneLeaveNothing()
    {
        Paper paper;
        paper.show({mark(0, 3, TranscriptModel::Selected), mark(4, 6, TranscriptModel::Found)});
        QCOMPARE(paper.at(4), "found");
        paper.show({mark(0, 3, TranscriptModel::Selected)});
        QCOMPARE(paper.at(1), "selected");
        QCOMPARE(paper.at(4), "paper");
        paper.show({});
        QCOMPARE(paper.at(1), "paper");
    }
};

LUMAPHONE_OFFSCREEN_TEST(MarkedPlacesTest)

} // namespace markedplacestest

#include "MarkedPlacesTest.moc"
