#include "app/live/LineAnnouncements.h"

#include "app/live/CaptionLinesModel.h"
#include "support/LiveSession.h"
#include "support/program/TestProgram.h"

#include <QTest>

#include <map>

namespace lineannouncementstest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

constexpr auto aDay = std::chrono::hours(24);

/// A session, and all that is told of its lines.
struct Listener
{
    LiveSession session;
    CaptionLinesModel lines {session.started()};
    LineAnnouncements announcements;
    QStringList told;
    std::map<QString, std::chrono::milliseconds> delays; ///< of translations; others come at once
    QStringList failing;

    explicit Listener(std::chrono::milliseconds patience = aDay)
        : announcements(*session.controller, lines, patience)
    {
        QObject::connect(&announcements, &LineAnnouncements::announced, &announcements,
            [this](const QString &text) { told.append(text); });
        session.translator->plan = [this](const QString &text) {
            const auto delay = delays.find(text);
            return ScriptedTranslator::Plan {
                delay == delays.end() ? std::chrono::milliseconds(0) : delay->second,
                failing.contains(text) ? QStringLiteral("no model") : QString()};
        };
    }

    void say(const char *text)
    {
        session.final(text);
        settle();
    }
    /// While the first is translated two more are said; the newest comes first then, and the second last.
    void sayThreeOfWhichTheSecondIsPassedOver()
    {
        delays["一。"] = std::chrono::seconds(40);
        delays.try_emplace("二。", std::chrono::seconds(20));
        for (const char *text : {"一。", "二。", "三。"}) {
            say(text);
            pass(std::chrono::seconds(15));
        }
    }
    void pass(std::chrono::milliseconds time) const
    {
        session.clock->advance(time);
        settle();
    }
};

} // namespace

class LineAnnouncementsTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineIsToldByItsTranslationWhenThatHasCome()
    {
        Listener listener;
        listener.delays["一。"] = std::chrono::seconds(3);
        listener.session.partial("一");
        listener.say("一。");
        QCOMPARE(listener.told, QStringList());
        listener.pass(std::chrono::seconds(4));
        QCOMPARE(listener.told, QStringList({"譯:一。"}));
        listener.pass(std::chrono::minutes(1));
        QCOMPARE(listener.told.size(), 1);
    }

    void anOpenLineIsNotTold()
    {
        Listener listener;
        listener.session.partial("まだ");
        listener.pass(std::chrono::seconds(5));
        QCOMPARE(listener.told, QStringList());
        listener.session.controller->stop(true); // which ends the line
        listener.pass(std::chrono::seconds(5));
        QCOMPARE(listener.told, QStringList({"譯:まだ"}));
    }

    void withoutATranslationTheSourceIsTold()
    {
        Listener listener;
        listener.failing = {"二。"};
        listener.say("一。");
        listener.pass(std::chrono::seconds(15));
        listener.say("二。");
        listener.pass(std::chrono::seconds(15));
        listener.say("三。");
        QCOMPARE(listener.told, QStringList({"譯:一。", "二。", "譯:三。"}));
        listener.session.translator->plan = nullptr;
        listener.session.controller->translateAgain();
        settle();
        QCOMPARE(listener.session.translationOfLine(1), "譯:二。");
        QCOMPARE(listener.told.size(), 3); // what has been told is told
    }

    void whoWantsNoTranslationHearsTheSourceAtOnce()
    {
        Listener listener;
        listener.session.translator->isWanted = false;
        listener.say("一。");
        QCOMPARE(listener.told, QStringList({"一。"}));
    }

    void linesKeepTheirOrder()
    {
        Listener listener;
        listener.sayThreeOfWhichTheSecondIsPassedOver();
        QCOMPARE(listener.session.translationOfLine(2), "譯:三。");
        QCOMPARE(listener.told, QStringList({"譯:一。"})); // the third waits for the second
        listener.pass(std::chrono::minutes(2));
        QCOMPARE(listener.told, QStringList({"譯:一。", "譯:二。", "譯:三。"}));
    }

    void whatDoesNotComeKeepsNobodyWaiting()
    {
        Listener listener(std::chrono::milliseconds(0));
        listener.delays["二。"] = aDay;
        listener.sayThreeOfWhichTheSecondIsPassedOver();
        QCOMPARE(listener.told, QStringList({"譯:一。", "二。", "譯:三。"}));
    }

    void whatKeepsNobodyWaitingIsWaitedFor()
    {
        Listener listener(std::chrono::milliseconds(0));
        listener.delays["一。"] = std::chrono::minutes(1);
        listener.say("一。");
        listener.pass(std::chrono::seconds(30));
        QCOMPARE(listener.told, QStringList());
        listener.pass(std::chrono::minutes(1));
        QCOMPARE(listener.told, QStringList({"譯:一。"}));
    }

    void clearedLinesAreNotTold()
    {
        Listener listener;
        listener.delays["一。"] = std::chrono::seconds(30);
        listener.say("一。");
        listener.session.controller->clearCaptions();
        listener.session.controller->start();
        settle();
        listener.say("二。");
        listener.pass(std::chrono::minutes(2));
        QCOMPARE(listener.told, QStringList({"譯:二。"}));
    }
};

LUMAPHONE_TEST(LineAnnouncementsTest)

} // namespace lineannouncementstest

#include "LineAnnouncementsTest.moc"
