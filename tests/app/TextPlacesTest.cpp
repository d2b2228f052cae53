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
            const QList<QRectF> places = placesOf(setting, 0, int(text.size()));
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
        for (int offset = 0; offset < setting.text.size(); ++offset) {
            const QList<QRectF> places = placesOf(setting, offset, offset + 1);
            QCOMPARE(places.size(), 1);
            const QRectF place = places.first();
            QCOMPARE(offsetAt(setting, {place.left() + place.width() * 0.25, place.center().y()}), offset);
        }
    }

    void besideTheTextIsItsNearestEnd()
    {
        const TextSetting setting {"二百万円です。", fontOf("japanese"), 400, lineHeight};
        QCOMPARE(offsetAt(setting, {-5, 5}), 0);
        QCOMPARE(offsetAt(setting, {50, -5}), 0);
        QCOMPARE(offsetAt(setting, {399, 5}), 7);
        QCOMPARE(offsetAt(setting, {0, 90}), 7);
        QCOMPARE(offsetAt({QString(), setting.font, 400, lineHeight}, {5, 5}), 0);
        QVERIFY(placesOf(setting, 3, 3).isEmpty());
    }

    void aMarkOverTwoLinesHasTwoPlaces()
    {
        const QString text = "予算は先週の会議で決まった通り、二百万円です。";
        const QVariantList places = TextPlaces::places(
            text, fontOf("japanese"), 120, lineHeight, {QVariantMap {{"from", 5}, {"to", 10}, {"kind", 2}}});
        QCOMPARE(places.size(), 2);
        QCOMPARE(places[1].toMap()["place"].toRectF().top(), lineHeight);
        QCOMPARE(places[1].toMap()["kind"].toInt(), 2);
        QVERIFY(TextPlaces::places(text, fontOf("japanese"), 120, lineHeight, {}).isEmpty());
    }
};

LUMAPHONE_OFFSCREEN_TEST(TextPlacesTest)

} // namespace textplacestest

#include "TextPlacesTest.moc"
