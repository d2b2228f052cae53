#include "speech/framework/EngineChoice.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace enginechoicetest {

using namespace lumaphone;

namespace {

using Locales = std::vector<QString>;

const Locales all {"ja-JP", "en-US", "ko-KR", "zh-Hant-TW"};
const Locales english {"en-US"};

/// The engines of a machine, in the order of preference.
std::vector<Locales> machine(bool hasBundled, bool hasFour, bool hasPocketSphinx)
{
    return {
        hasBundled ? english : Locales(), hasFour ? all : Locales(), hasPocketSphinx ? english : Locales()};
}

constexpr int none = -1;
constexpr int bundled = 0;
constexpr int four = 1;
constexpr int pocketSphinx = 2;

} // namespace

class EngineChoiceTest : public QObject
{
    Q_OBJECT

private slots:
    void eachChoiceIsServedByOneEngine_data()
    {
        QTest::addColumn<Locales>("locales");
        QTest::addColumn<std::vector<Locales>>("installed");
        QTest::addColumn<std::vector<int>>("expected");
        const auto row = [](const char *name, const Locales &locales, const std::vector<Locales> &installed,
                             const std::vector<int> &expected) {
            QTest::newRow(name) << locales << installed << expected;
        };
        const Locales japanese {"ja-JP"};
        const Locales two {"ja-JP", "en-US"};
        row("English on a fresh machine", english, machine(true, false, true), {bundled});
        row("English beside the four languages", english, machine(true, true, true), {bundled});
        row("English without the bundled network", english, machine(false, true, true), {four});
        row("English without any network", english, machine(false, false, true), {pocketSphinx});
        row("English with nothing", english, machine(false, false, false), {none});
        row("Japanese on a fresh machine", japanese, machine(true, false, true), {none});
        row("Japanese with the four languages", japanese, machine(true, true, true), {four});
        row("all with the four languages", all, machine(true, true, true), {four, four, four, four});
        row("all on a fresh machine", all, machine(true, false, true), {none, bundled, none, none});
        row("two with the four languages", two, machine(true, true, true), {four, four});
        row("two without networks", two, machine(false, false, true), {none, pocketSphinx});
        row("no engines", english, {}, {none});
        row("an unknown language", {"fr-FR"}, machine(true, true, true), {none});
    }
    void eachChoiceIsServedByOneEngine()
    {
        QFETCH(Locales, locales);
        QFETCH(std::vector<Locales>, installed);
        QFETCH(std::vector<int>, expected);
        std::vector<int> chosen;
        for (const std::optional<std::size_t> engine : engineChoice(locales, installed)) {
            chosen.push_back(engine ? static_cast<int>(*engine) : none);
        }
        QCOMPARE(chosen, expected);
    }
};

LUMAPHONE_TEST(EngineChoiceTest)

} // namespace enginechoicetest

#include "EngineChoiceTest.moc"
