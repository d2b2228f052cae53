#include "diagnosis/Diagnosis.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace diagnosistest {

using namespace lumaphone;

namespace {

using State = Finding::State;
using Windows = DisplayFacts::Windows;

/// Recognised and translated.
LanguageFacts language(const QString &name, const QString &recogniser)
{
    LanguageFacts facts;
    facts.name = name;
    facts.recogniser = recogniser;
    facts.isTranslated = true;
    return facts;
}

/// A machine on which everything is there.
MachineFacts completeMachine()
{
    MachineFacts machine;
    machine.program = "lumaphone-cli 1.0";
    machine.system = "Debian GNU/Linux 12";
    machine.toolkit = "Qt 6.4.2";
    machine.sound = {{}, "pulseaudio 16.1", {{"Speakers", true}, {"Screen", false}}, {{"Microphone", true}}};
    machine.languages = {language("日文", "四種語言的網路"), language("英文", "內建的英文網路"),
        language("中文", "四種語言的網路")};
    machine.languages.last().needsTranslation = false;
    machine.models = {{"ja-en", "日文到英文", ModelFacts::State::installed, 94'000'000},
        {"english-speech", "英文", ModelFacts::State::bundled, 30'000'000},
        {"ko-en", "韓文到英文", ModelFacts::State::missing, 0}};
    machine.keyring = {ServiceState::running, false};
    machine.display = {"GNOME", Windows::x11, Windows::x11, false};
    machine.portals = ServiceState::running;
    return machine;
}

QList<Finding> findingsOf(const MachineFacts &machine, const QString &title)
{
    for (const FindingGroup &group : diagnosisOf(machine).groups) {
        if (group.title == title) {
            return group.findings;
        }
    }
    return {};
}

/// All findings that are not good.
QList<Finding> shortcomings(const MachineFacts &machine)
{
    QList<Finding> found;
    for (const FindingGroup &group : diagnosisOf(machine).groups) {
        std::copy_if(group.findings.begin(), group.findings.end(), std::back_inserter(found),
            [](const Finding &finding) {
                return finding.state != State::good && finding.state != State::neutral;
            });
    }
    return found;
}

} // namespace

class DiagnosisTest : public QObject
{
    Q_OBJECT

private slots:
    void aCompleteMachineHasNoShortcoming()
    {
        QVERIFY(shortcomings(completeMachine()).isEmpty());
        QVERIFY(!diagnosisOf(completeMachine()).hasProblem());
    }

    void everyShortcomingNamesItsStep_data()
    {
        QTest::addColumn<MachineFacts>("machine");
        QTest::addColumn<bool>("isProblem");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("step");
        const auto row = [](const char *name, bool isProblem, const char *text, const char *step,
                             const std::function<void(MachineFacts &)> &change) {
            MachineFacts machine = completeMachine();
            change(machine);
            QTest::newRow(name) << machine << isProblem << text << step;
        };
        row("no sound server", true, "無法連線到聲音伺服器：Connection refused", "pipewire-pulse",
            [](MachineFacts &machine) {
                machine.sound = {"無法連線到聲音伺服器：Connection refused", {}, {}, {}};
            });
        row("no output", true, "沒有輸出裝置", "聲音設定",
            [](MachineFacts &machine) { machine.sound.outputs.clear(); });
        row("no default output", false, "沒有預設的輸出裝置", "聲音設定",
            [](MachineFacts &machine) { machine.sound.outputs.first().isDefault = false; });
        row("no microphone", false, "沒有麥克風", "輸入裝置",
            [](MachineFacts &machine) { machine.sound.inputs.clear(); });
        row("a language without a recogniser", false, "日文：尚未安裝", "請安裝四種語言的網路",
            [](MachineFacts &machine) {
                machine.languages[0].recogniser.clear();
                machine.languages[0].recogniserHint = "請安裝四種語言的網路";
            });
        row("a language without translation", false, "日文：尚未安裝",
            "lumaphone-cli models install ja-zh-Hant」（約 94 MB）", [](MachineFacts &machine) {
                machine.languages[0].isTranslated = false;
                machine.languages[0].translationModels = "ja-zh-Hant";
                machine.languages[0].translationSize = 94'000'000;
            });
        row("half a download", false, "下載到一半", "models install ja-en",
            [](MachineFacts &machine) { machine.models[0].state = ModelFacts::State::partial; });
        row("a damaged model", true, "已損壞", "models remove ja-en",
            [](MachineFacts &machine) { machine.models[0].state = ModelFacts::State::damaged; });
        row("no keyring", false, "鑰匙圈：找不到", "GNOME Keyring", [](MachineFacts &machine) {
            machine.keyring = {ServiceState::missing, {}};
        });
        row("no display", false, "沒有圖形畫面", "圖形桌面",
            [](MachineFacts &machine) { machine.display = {}; });
        row("a panel among other windows", false, "可能被其他視窗蓋住", "XWayland",
            [](MachineFacts &machine) {
                machine.display = {"GNOME", Windows::wayland, Windows::wayland, false};
            });
        row("no portal", false, "xdg-desktop-portal", "xdg-desktop-portal",
            [](MachineFacts &machine) { machine.portals = ServiceState::missing; });
        row("no session bus", false, "D-Bus", "工作階段",
            [](MachineFacts &machine) { machine.portals = ServiceState::noBus; });
    }
    void everyShortcomingNamesItsStep()
    {
        QFETCH(MachineFacts, machine);
        QFETCH(bool, isProblem);
        QFETCH(QString, text);
        QFETCH(QString, step);
        const QList<Finding> found = shortcomings(machine);
        QCOMPARE(found.size(), 1);
        QCOMPARE(found.first().state, isProblem ? State::problem : State::advice);
        QVERIFY2(found.first().text.contains(text), qPrintable(found.first().text));
        QVERIFY2(found.first().step.contains(step), qPrintable(found.first().step));
        QCOMPARE(diagnosisOf(machine).hasProblem(), isProblem);
    }

    void aMachineThatHearsNoLanguageHasAProblem()
    {
        MachineFacts machine = completeMachine();
        for (LanguageFacts &language : machine.languages) {
            language.recogniser.clear();
        }
        QCOMPARE(shortcomings(machine).size(), machine.languages.size());
        QVERIFY(diagnosisOf(machine).hasProblem());
    }

    void theDeviceInUseComesFirst()
    {
        MachineFacts machine = completeMachine();
        machine.sound.outputs = {{"Screen", false}, {"Speakers", true}};
        const QList<Finding> findings = findingsOf(machine, "聲音");
        QCOMPARE(findings.size(), 4);
        QCOMPARE(findings[0].text, QString("聲音伺服器：pulseaudio 16.1"));
        QCOMPARE(findings[1].text, QString("輸出：Speakers（使用中）"));
        QCOMPARE(findings[2].text, QString("輸出：Screen"));
        QCOMPARE(findings[3].text, QString("輸入：Microphone（使用中）"));
    }

    void thePanelIsToldForEachDisplay_data()
    {
        QTest::addColumn<int>("session");
        QTest::addColumn<int>("program");
        QTest::addColumn<bool>("hasLayerShell");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("panel");
        QTest::newRow("X11") << int(Windows::x11) << int(Windows::x11) << false << "畫面：X11（GNOME）"
                             << "浮動字幕：在所有視窗之上，位置可以自由擺放";
        QTest::newRow("XWayland") << int(Windows::wayland) << int(Windows::x11) << false
                                  << "畫面：Wayland，經由 XWayland（GNOME）"
                                  << "浮動字幕：在所有視窗之上，位置可以自由擺放";
        QTest::newRow("layer shell") << int(Windows::wayland) << int(Windows::wayland) << true
                                     << "畫面：Wayland（GNOME）"
                                     << "浮動字幕：在所有視窗之上，可以在所在的螢幕內拖曳";
    }
    void thePanelIsToldForEachDisplay()
    {
        QFETCH(int, session);
        QFETCH(int, program);
        QFETCH(bool, hasLayerShell);
        MachineFacts machine = completeMachine();
        machine.display = {"GNOME", Windows(session), Windows(program), hasLayerShell};
        const QList<Finding> findings = findingsOf(machine, "桌面");
        QTEST(findings[0].text, "display");
        QTEST(findings[1].text, "panel");
    }

    void theTextSaysEverythingOnce()
    {
        MachineFacts machine = completeMachine();
        machine.sound.inputs.clear();
        machine.models = {{"ja-en", "日文到英文", ModelFacts::State::damaged, 94'000'000},
            {"ko-en", "韓文到英文", ModelFacts::State::missing, 0}};
        QCOMPARE(diagnosisText(diagnosisOf(machine)), QString(R"(系統
  ✓ lumaphone-cli 1.0
  ✓ Debian GNU/Linux 12
  ✓ Qt 6.4.2

聲音
  ✓ 聲音伺服器：pulseaudio 16.1
  ✓ 輸出：Speakers（使用中）
  ✓ 輸出：Screen
  · 沒有麥克風。
    → 要聆聽麥克風時，請先連接或啟用一個輸入裝置。

語音辨識
  ✓ 日文：四種語言的網路
  ✓ 英文：內建的英文網路
  ✓ 中文：四種語言的網路

在這台電腦上翻譯成台灣繁體中文
  ✓ 日文：已安裝
  ✓ 英文：已安裝
  ✓ 中文：轉換成台灣用字，不需要模型

離線模型
  ✗ 日文到英文（ja-en，94 MB）：已損壞
    → 請執行「lumaphone-cli models remove ja-en」，再重新安裝。
  – 韓文到英文（ko-en）：未安裝

桌面
  ✓ 畫面：X11（GNOME）
  ✓ 浮動字幕：在所有視窗之上，位置可以自由擺放
  ✓ 鑰匙圈：可以使用
  ✓ 桌面入口（xdg-desktop-portal）：可以使用
)"));
    }
};

LUMAPHONE_TEST(DiagnosisTest)

} // namespace diagnosistest

#include "DiagnosisTest.moc"
