#include "app/live/TextPlaces.h"

#include "app/OffscreenTest.h"
#include "app/QmlEngineSetup.h"
#include "app/controls/LanguageFonts.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

#include <cmath>
#include <memory>

namespace textplacestest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

constexpr double lineHeight = 24;

QFont fontOf(const QString &language)
{
    QFont font(LanguageFonts::familyOf(language));
    font.setPixelSize(15);
    return font;
}

} // namespace

class TextPlacesTest : public QObject
{
    Q_OBJECT

private slots:
    void linesBreakWhereTheViewBreaksThem_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("text");
        QTest::addRow("japanese") << "japanese"
                                  << "予算は先週の会議で決まった通り、二百万円です"
                                     "。Lumaphone で確認しましょう。";
        QTest::addRow("english") << "english"
                                 << "So the question is whether we ship in March, or whether we wait.";
        QTest::addRow("korean") << "korean"
                                << "안녕하세요, 지금부터 회의를 시작하겠습니다.";
        QTest::addRow("two lines") << ""
                                   << "第一行\n第二行";
        QTest::addRow("a long word") << "english" << QString("internationalisation").repeated(4);
    }
    void linesBreakWhereTheViewBreaksThem()
    {
        QFETCH(const QString, language);
        QFETCH(const QString, text);
        QQmlEngine engine;
        setUpQmlEngine(engine);
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport Lumaphone.Controls\nLanguageText { font.pixelSize: 15\n"
                          "lineHeightMode: Text.FixedHeight\nlineHeight: 24 }",
            QUrl());
        const std::unique_ptr<QObject> item(component.create());
        QVERIFY2(item, qPrintable(component.errorString()));
        item->setProperty("language", language);
        item->setProperty("text", text);
        for (const double width : {90.0, 133.5, 200.0, 421.0, 2000.0}) {
            item->setProperty("width", width);
            const TextSetting setting {text, item->property("font").value<QFont>(), width, lineHeight};
            const QList<QRectF> places = LaidOutText(setting).places(0, int(text.size()));
            QCOMPARE(places.size(), item->property("lineCount").toInt());
            QCOMPARE(places.last().bottom(), item->property("contentHeight").toDouble());
            double widest = 0;
            for (const QRectF &place : places) {
                widest = std::max(widest, place.right());
            }
            QVERIFY(std::abs(widest - item->property("contentWidth").toDouble()) < 6); // but for a blank
        }
    }

    void everyPlaceIsFoundAgain()
    {
        const TextSetting setting {
            "予算は先週の会議で決まった通り、二百万円です。", fontOf("japanese"), 120, lineHeight};
        const LaidOutText text(setting);
        for (int offset = 0; offset < setting.text.size(); ++offset) {
            const QList<QRectF> places = text.places(offset, offset + 1);
            QCOMPARE(places.size(), 1);
            const QRectF place = places.first();
            QCOMPARE(text.offset({place.left() + place.width() * 0.25, place.center().y()}), offset);
        }
    }

    void besideTheTextIsItsNearestEnd()
    {
        const LaidOutText text({"二百万円です。", fontOf("japanese"), 400, lineHeight});
        QCOMPARE(text.offset({-5, 5}), 0);
        QCOMPARE(text.offset({50, -5}), 0);
        QCOMPARE(text.offset({399, 5}), 7);
        QCOMPARE(text.offset({0, 90}), 7);
        QVERIFY(text.places(3, 3).isEmpty());
        QCOMPARE(LaidOutText({QString(), fontOf("japanese"), 400, lineHeight}).offset({5, 5}), 0);
    }

    void aPartOverTwoLinesHasTwoPlaces()
    {
        const LaidOutText text(
            {"予算は先週の会議で決まった通り、二百万円です。", fontOf("japanese"), 120, lineHeight});
        const QList<QRectF> places = text.places(5, 10);
        QCOMPARE(places.size(), 2);
        QCOMPARE(places[0].top(), 0);
        QCOMPARE(places[1].top(), lineHeight);
        QCOMPARE(places[1].left(), 0);
    }
};

LUMAPHONE_OFFSCREEN_TEST(TextPlacesTest)

} // namespace textplacestest

#include "TextPlacesTest.moc"
