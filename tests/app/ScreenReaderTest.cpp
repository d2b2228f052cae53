#include "app/ScreenReaderProgram.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/NeededPrograms.h"
#include "support/VisibleItems.h"

#include <QTest>

#include <memory>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// What has no role that people know.
const QStringList rolesOfNothing {"unknown", "invalid", "filler", "panel"};

} // namespace

/// The window as a screen reader hears it, over the accessibility bus.
class ScreenReaderTest : public QObject
{
    Q_OBJECT

public:
    explicit ScreenReaderTest(AccessibilityBus *bus)
        : m_bus(bus)
    {
    }

private slots:
    void initTestCase()
    {
        LUMAPHONE_NEEDS(AccessibilityBus::missing());
        m_studio = std::make_unique<Studio>(m_folder.path());
        m_studio->open();
        QVERIFY(m_bus->listen(QStringLiteral("lumaphone")));
    }
    void cleanupTestCase() { m_studio.reset(); }

    void tabSaysWhereItComes()
    {
        qsizetype said = m_bus->focused().size();
        QStringList names;
        for (int step = 0; step < 12; ++step) {
            QTest::keyClick(m_studio->window, Qt::Key_Tab);
            QVERIFY(comes([&] { return m_bus->focused().size() > said; }));
            said = m_bus->focused().size();
            const QStringList parts = m_bus->focused().last().split(QLatin1Char('|'));
            QVERIFY2(!parts.value(1).isEmpty() && !rolesOfNothing.contains(parts.value(0)),
                qPrintable(m_bus->focused().last()));
            QVERIFY(!names.contains(parts.value(1)) || names.last() != parts.value(1));
            names.append(parts.value(1));
        }
        QVERIFY(names.contains(QStringLiteral("紀錄庫")));
        QVERIFY(names.contains(QStringLiteral("開始")));
    }

    void aSessionIsHeardInItsOrderAndOnce()
    {
        auto &session = m_studio->session;
        const auto isSaid = [this](const QString &text) {
            return comes([&] { return m_bus->said().contains(text); });
        };
        m_studio->live->startOrStop();
        QVERIFY(isSaid(QStringLiteral("正在聽")));
        session.translator->plan = [](const QString &text) {
            return ScriptedTranslator::Plan {
                text == QStringLiteral("二。") ? std::chrono::seconds(5) : std::chrono::seconds(0),
                text == QStringLiteral("三。") ? QStringLiteral("no model") : QString()};
        };
        for (const char *text : {"一。", "二。", "三。", "四。"}) {
            session.final(text);
            m_studio->advance(std::chrono::seconds(15));
        }
        // More at once than the screen reader can ask for.
        for (int number = 5; number < 13; ++number) {
            session.speech(QStringLiteral("第%1。").arg(number), true);
            session.clock->advance(std::chrono::seconds(15));
        }
        m_studio->settle();
        m_studio->live->startOrStop();
        QVERIFY(isSaid(QStringLiteral("已停止，尚未儲存")));
        m_studio->live->saveTranscript();
        const QString saved = QStringLiteral("已儲存：") + m_studio->live->savedTitle();
        QVERIFY(isSaid(saved));
        QStringList expected {"正在聽", "譯:一。", "譯:二。", "三。", "譯:四。"};
        for (int number = 5; number < 13; ++number) {
            expected.append(QStringLiteral("譯:第%1。").arg(number));
        }
        expected << QStringLiteral("已停止，尚未儲存") << saved;
        QCOMPARE(m_bus->said(), expected);
    }

    void theLinesAreThere()
    {
        const auto line = [this] {
            for (const AccessibleItem &item : m_bus->walk()) {
                if (item.told() == QStringLiteral("list item|第10。 譯:第10。")) {
                    return item;
                }
            }
            return AccessibleItem();
        };
        QVERIFY(line().states.contains(QStringLiteral("SELECTABLE")));
        m_studio->live->transcript()->selectAll();
        QVERIFY(comes([&] { return line().states.contains(QStringLiteral("SELECTED")); }));
    }

    void aSessionThatCannotStartSaysWhyOnce()
    {
        m_studio->live->clearCaptions();
        m_studio->settle();
        const qsizetype before = m_bus->said().size();
        m_studio->session.nextPipeline->startError
            = std::make_exception_ptr(std::runtime_error("no sound here"));
        m_studio->live->startOrStop();
        QVERIFY(comes([&] { return m_bus->said().size() > before; }));
        m_studio->settle();
        QCOMPARE(m_bus->said().mid(before), QStringList {m_studio->live->failureMessage().simplified()});
    }

private:
    template<typename Condition> static bool comes(Condition condition)
    {
        return waitUntil(condition, accessibilityPatienceMs);
    }

    AccessibilityBus *m_bus; ///< none if something is missing
    QTemporaryDir m_folder;
    std::unique_ptr<Studio> m_studio;
};

int main(int argc, char *argv[])
{
    return runWithScreenReader<ScreenReaderTest>(argc, argv);
}

#include "ScreenReaderTest.moc"
