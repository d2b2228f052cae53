#include "app/OffscreenTest.h"
#include "capture/SystemAudioCaptureError.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/VisibleItems.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>
#include <functional>

namespace liveviewtest {

using namespace lumaphone;
using namespace lumaphone::test;
using namespace std::chrono_literals;

namespace {

QString sentence(int number)
{
    return QStringLiteral("これは%1番目の文です。").arg(number);
}

/// The window with a session under way.
struct RunningWindow
{
    QTemporaryDir folder;
    Studio studio {folder.path()};

    RunningWindow()
    {
        studio.open();
        studio.live->startOrStop();
        studio.settle();
    }

    QQuickItem &item(const QString &name) const
    {
        auto *found = qobject_cast<QQuickItem *>(&studio.object(name));
        Q_ASSERT(found);
        return *found;
    }
    void say(int first, int last)
    {
        for (int number = first; number <= last; ++number) {
            studio.session.translator->translations[sentence(number)]
                = QStringLiteral("這是第%1句。").arg(number);
            studio.session.speech(sentence(number), true);
            studio.session.clock->advance(std::chrono::seconds(15));
        }
        studio.settle();
        drawFrame();
    }
    void drawFrame() const { test::drawFrame(*studio.window); }
    /// Turns the wheel over an item, by notches; away from the user is positive.
    void turnWheel(const QQuickItem &over, int notches)
    {
        const QPointF at = over.mapToScene({over.width() / 2, over.height() / 2});
        QWheelEvent event(at, studio.window->mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(studio.window, &event);
        studio.settle();
        drawFrame();
    }
    bool isAtNewest() const { return item("card.lines").property("atYEnd").toBool(); }
};

/// The stage in a window of some size.
class StageUnderTest
{
public:
    StageUnderTest(Studio &studio, QSize size)
        : m_studio(studio)
    {
        studio.window->resize(size);
        const bool isThere = waitUntil([&] { return studio.window->contentItem()->size() == QSizeF(size); });
        studio.settle();
        drawFrame(*studio.window);
        if (!isThere) {
            qFatal("The window does not take its size.");
        }
    }

    QString notice() const { return item("stage.notice").property("text").toString(); }
    int translationLines() const { return item("stage.translationText").property("lineCount").toInt(); }

    /// What a reader would miss.
    QStringList problems() const
    {
        QStringList found;
        const QQuickItem &text = item("stage.translationText");
        const QQuickItem &area = *text.parentItem();
        const double lineHeight = text.property("lineHeight").toDouble();
        const int lines = translationLines();
        const int shown = std::min(lines, int(area.height() / lineHeight));
        if (shown < std::min(lines, 3)) {
            found.append(QString("%1 of %2 lines").arg(shown).arg(lines));
        }
        if (area.height() < 2 * lineHeight) {
            found.append("no room for two lines");
        }
        // A line is a little higher than the distance of lines; the room above its characters may be missed.
        const double roomAbove = text.height() - lines * lineHeight;
        if (text.y() + (lines - shown) * lineHeight < -roomAbove || roomAbove > lineHeight / 6
            || text.y() + text.height() > area.height()) {
            found.append("cut off");
        }
        QList<std::pair<QString, QRectF>> places;
        for (const char *name :
            {"stage.pills", "stage.sourceArea", "stage.translationArea", "stage.notice"}) {
            const QQuickItem &part = item(name);
            if (part.isVisible()) {
                places.append({name, part.mapRectToScene({0, 0, part.width(), part.height()})});
            }
        }
        const QQuickItem &card = item("stage");
        const QRectF inside
            = card.mapRectToScene({0, 0, card.width(), card.height()}).adjusted(0, 12, 0, -12);
        for (qsizetype i = 0; i < places.size(); ++i) {
            if (!inside.contains(places[i].second)
                || !QRectF({}, m_studio.window->size()).contains(places[i].second)) {
                found.append(places[i].first + " is outside");
            }
            for (qsizetype j = 0; j < i; ++j) {
                if (places[i].second.intersects(places[j].second)) {
                    found.append(places[i].first + " lies over " + places[j].first);
                }
            }
        }
        const QQuickItem &said = item("stage.notice");
        if (said.isVisible() && said.height() < said.implicitHeight()) {
            found.append("the notice has no room");
        }
        return found;
    }

private:
    QQuickItem &item(const QString &name) const
    {
        return *qobject_cast<QQuickItem *>(&m_studio.object(name));
    }

    Studio &m_studio;
};

} // namespace

/// The live workspace in its window.
class LiveViewTest : public QObject
{
    Q_OBJECT

private slots:
    void theListFollowsTheNewestLineUntilTheUserScrollsAway()
    {
        RunningWindow window;
        window.say(1, 40);
        QQuickItem &list = window.item("card.lines");
        QQuickItem &toNewest = window.item("card.toNewest");
        QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
        QVERIFY(!toNewest.isVisible());

        window.turnWheel(list, 5);
        QVERIFY(waitUntil([&] { return toNewest.isVisible(); }));
        QVERIFY(waitUntil([&] { return !list.property("moving").toBool(); }));
        const double position = list.property("contentY").toDouble();
        window.say(41, 45);
        QCOMPARE(list.property("contentY").toDouble(), position);
        QVERIFY(!window.isAtNewest());

        window.studio.click("card.toNewest");
        QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
        QVERIFY(!toNewest.isVisible());
        window.say(46, 50);
        QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
    }

    void theKeyboardScrollsAwayAndBack()
    {
        RunningWindow window;
        window.say(1, 40);
        QQuickItem &list = window.item("card.lines");
        QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
        list.forceActiveFocus();
        QTest::keyClick(window.studio.window, Qt::Key_PageUp);
        QVERIFY(!window.isAtNewest());
        QVERIFY(window.item("card.toNewest").isVisible());
        QTest::keyClick(window.studio.window, Qt::Key_PageDown);
        QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
        QVERIFY(!window.item("card.toNewest").isVisible());
        QTest::keyClick(window.studio.window, Qt::Key_Home);
        QVERIFY(window.item("card.toNewest").isVisible());
        QTest::keyClick(window.studio.window, Qt::Key_End);
        QVERIFY(waitUntil([&] { return window.isAtNewest(); }));
        QVERIFY(!window.item("card.toNewest").isVisible());
    }

    void aLineWithoutTranslationIsTriedAgainByKeyboard()
    {
        RunningWindow window;
        window.say(1, 2);
        auto &translator = *window.studio.session.translator;
        translator.plan = [](const QString &) {
            return ScriptedTranslator::Plan {{}, QStringLiteral("no model")};
        };
        window.studio.session.speech(QStringLiteral("もう一度お願いします。"), true);
        window.studio.settle();
        window.drawFrame();
        QQuickItem &all = window.item("card.translateAgain");
        QVERIFY(all.isVisible());
        QCOMPARE(window.item("card.status").property("text").toString(), "有 1 句沒有翻譯");
        QQuickItem *row = nullptr;
        QVERIFY(waitUntil([&] {
            row = findVisible(&window.item("card.lines"), "row.translateAgain");
            return row != nullptr;
        }));
        const auto reach = [&](const QQuickItem &wanted) {
            window.item("card.lines").forceActiveFocus(Qt::TabFocusReason);
            for (int step = 0; step < 60 && !wanted.hasActiveFocus(); ++step) {
                QTest::keyClick(window.studio.window, Qt::Key_Tab);
            }
            return wanted.hasActiveFocus();
        };
        QVERIFY(reach(*row));
        QVERIFY(reach(all));
        QVERIFY(reach(*row));
        translator.plan = nullptr;
        QTest::keyClick(window.studio.window, Qt::Key_Space);
        window.studio.settle();
        QVERIFY(window.studio.live->isRunning()); // the space bar was the button's
        QCOMPARE(
            window.item("stage.translationText").property("text").toString(), "譯:もう一度お願いします。");
        QVERIFY(waitUntil([&] { return !all.isVisible() && !row->isVisible(); }));
    }

    void nothingJumpsWhenATranslationArrives()
    {
        RunningWindow window;
        window.say(1, 3);
        window.studio.session.translator->plan = [](const QString &) {
            ScriptedTranslator::Plan plan;
            plan.delay = std::chrono::seconds(5);
            return plan;
        };
        const QString newest = QStringLiteral("ちょっと待ってください。");
        window.studio.session.translator->translations[newest] = QStringLiteral("請等一下。");
        window.studio.session.speech(newest, true);
        window.studio.settle();
        window.drawFrame();
        QQuickItem &list = window.item("card.lines");
        const auto places = [&] {
            QList<QRectF> found;
            for (const char *name :
                {"stage.sourceText", "stage.state", "card.source", "card.translation", "card.lines"}) {
                const QQuickItem &item = window.item(name);
                found.append(item.mapRectToScene({0, 0, 0, item.height()}));
            }
            found.append(QRectF(
                0, list.property("contentY").toDouble(), 0, list.property("contentHeight").toDouble()));
            return found;
        };
        const QList<QRectF> before = places();
        QCOMPARE(window.item("stage.translationText").property("text").toString(), "正在整理成台灣繁中...");
        window.studio.advance(std::chrono::seconds(6));
        window.drawFrame();
        QCOMPARE(window.item("stage.translationText").property("text").toString(), "請等一下。");
        QCOMPARE(places(), before);
    }

    void theStageKeepsItsHeight()
    {
        RunningWindow window;
        const auto top = [&] {
            window.drawFrame();
            return window.item("card.source").mapToScene({0, 0}).y();
        };
        const double empty = top();
        window.say(1, 1);
        QCOMPARE(top(), empty);
        window.studio.session.speech(QStringLiteral("とても長い文です。").repeated(40), false);
        window.studio.settle();
        QCOMPARE(top(), empty);
        window.studio.session.speech(QStringLiteral("短い。"), true);
        window.studio.settle();
        QCOMPARE(top(), empty);
    }

    void theTranslationIsTheLastThingThatGoes_data()
    {
        QTest::addColumn<std::function<void(Studio &)>>("appear");
        QTest::addColumn<QString>("notice");
        using Appear = std::function<void(Studio &)>;
        const auto fail = [](const QString &message) -> Appear {
            return [message](Studio &studio) {
                studio.session.controller->handlePipelineEvent(pipeline_event::Failed {message});
            };
        };
        QTest::newRow("no notice") << Appear([](Studio &) {}) << "";
        QTest::newRow("no sound") << Appear([](Studio &studio) {
            QVERIFY(waitUntil([&] { return studio.live->isWithoutSound(); }));
        }) << "系統音訊沒有聲音進來";
        QTest::newRow("behind") << Appear([](Studio &studio) {
            studio.session.controller->handlePipelineEvent(pipeline_event::Pace {true});
        }) << "辨識";
        QTest::newRow("a failure") << fail("系統音訊擷取已停止：連線中斷。") << "連線中斷";
        QTest::newRow("a long failure") << fail(
            QString("系統音訊擷取已停止：").append(QString("聲音伺服器沒有回應，請稍後再試。").repeated(12)))
                                        << "聲音伺服器";
    }
    void theTranslationIsTheLastThingThatGoes()
    {
        QFETCH(const std::function<void(Studio &)>, appear);
        QFETCH(const QString, notice);
        QTemporaryDir folder;
        const bool isSilent = notice.startsWith("系統音訊沒有");
        Studio studio(folder.path(), isSilent ? std::chrono::milliseconds(1) : std::chrono::milliseconds(1h));
        studio.open();
        studio.live->startOrStop();
        studio.settle();
        QSet<int> linesSeen;
        for (const int length : {5, 30, 50, 150}) {
            studio.say(QString("とても長い文です。").repeated(1 + length / 10),
                QString("很長的一句話").repeated(length).left(length), AppleSystemSpeechLanguage::japanese);
            appear(studio);
            for (const QSize size : {QSize(1040, 680), QSize(1040, 700), QSize(1280, 731), QSize(1040, 755),
                     QSize(1280, 756), QSize(1280, 800), QSize(1600, 1000)}) {
                const StageUnderTest stage(studio, size);
                QVERIFY2(stage.notice().contains(notice) && stage.notice().isEmpty() == notice.isEmpty(),
                    qPrintable(stage.notice()));
                linesSeen.insert(stage.translationLines());
                QVERIFY2(stage.problems().isEmpty(),
                    qPrintable(QString("%1 x %2, %3 characters: %4")
                                   .arg(size.width())
                                   .arg(size.height())
                                   .arg(length)
                                   .arg(stage.problems().join("; "))));
            }
        }
        QVERIFY(linesSeen.contains(1) && linesSeen.contains(2) && linesSeen.contains(3));
    }

    void aTextThatMayStillChangeIsSofter()
    {
        RunningWindow window;
        const auto color = [&] {
            return window.item("stage.translationText").property("color").value<QColor>();
        };
        window.studio.say("本日は", "今天", AppleSystemSpeechLanguage::japanese, false);
        const QColor partial = color();
        window.studio.say("本日は晴天なり", "今天是晴天", AppleSystemSpeechLanguage::japanese, true);
        QVERIFY(partial.lightness() > color().lightness());
    }

    void manyLinesTakeFewItemsAndNoResets()
    {
        RunningWindow window;
        window.say(1, 400);
        QQuickItem &list = window.item("card.lines");
        QCOMPARE(list.property("count").toInt(), 400);
        QVERIFY(list.property("contentItem").value<QQuickItem *>()->childItems().size() < 100);
        QAbstractItemModel *lines = window.studio.live->lines();
        const QSignalSpy resets(lines, &QAbstractItemModel::modelReset);
        const QSignalSpy changes(lines, &QAbstractItemModel::dataChanged);
        const QSignalSpy rows(lines, &QAbstractItemModel::rowsInserted);
        for (const char *text : {"もう", "もう一", "もう一つ"}) {
            window.studio.session.partial(text);
        }
        QCOMPARE(resets.size(), 0);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(changes.size(), 2);
        for (const QList<QVariant> &change : changes) {
            QCOMPARE(change[0].toModelIndex().row(), 400);
            QCOMPARE(change[1].toModelIndex().row(), 400);
        }
    }

    void aSaveThatFailsIsSaid()
    {
        QTemporaryDir folder;
        QFile inTheWay(folder.filePath("Transcripts"));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        Studio studio(folder.path());
        studio.open();
        studio.holdSession();
        studio.live->saveTranscript();
        studio.settle();
        const auto *said = qobject_cast<QQuickItem *>(&studio.object("workspace.saveError"));
        QVERIFY(said && said->isVisible());
        QVERIFY(said->property("text").toString().contains("Transcripts"));
    }

    void theNoticeOfARestoredSessionLiesRightBelowItsText()
    {
        QTemporaryDir folder;
        {
            Studio studio(folder.path());
            studio.open();
            studio.live->startOrStop();
            studio.settle();
            studio.converse();
        }
        Studio studio(folder.path());
        studio.open();
        QTRY_VERIFY(qobject_cast<QQuickItem *>(&studio.object("inspector.unsaved"))->height() > 0);
        const auto *notice = qobject_cast<QQuickItem *>(&studio.object("inspector.unsaved"));
        const QQuickItem *text = notice->parentItem()->childItems().constFirst();
        QVERIFY(notice->isVisible());
        QCOMPARE(text->property("lineCount").toInt(), 1);
        QCOMPARE(notice->y() - text->height(), 12.0);
        QCOMPARE(notice->parentItem()->height(), notice->y() + notice->height());
    }

    void anErrorIsShownOnTheStage()
    {
        QTemporaryDir folder;
        Studio studio(folder.path());
        studio.session.nextPipeline->startError
            = std::make_exception_ptr(SystemAudioCaptureError(SystemAudioCaptureError::Case::noDisplay));
        studio.open();
        const auto *notice = qobject_cast<QQuickItem *>(&studio.object("stage.notice"));
        QVERIFY(notice && !notice->isVisible());
        studio.live->startOrStop();
        studio.settle();
        QVERIFY(notice->isVisible());
        QCOMPARE(notice->property("text").toString(), "系統音訊擷取錯誤：找不到可擷取的顯示器。");
    }
};

LUMAPHONE_OFFSCREEN_TEST(LiveViewTest)

} // namespace liveviewtest

#include "LiveViewTest.moc"
