#include "app/MachineWithoutSound.h"
#include "app/ScreenReaderProgram.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"
#include "support/GlossaryTerms.h"
#include "support/NeededPrograms.h"
#include "support/VisibleItems.h"

#include <QTest>

#include <algorithm>
#include <memory>

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

/// What has no role that people know.
const QStringList rolesOfNothing {"unknown", "invalid", "filler"};
/// What is only read.
const QStringList rolesOfTexts {"label", "heading", "panel", "alert", "image", "status bar", "tool bar"};

/// What cannot be used while nothing has been said.
const QStringList withoutSession {
    "push button|儲存字幕紀錄", "push button|開始新的字幕", "push button|清除目前字幕"};

const QString mainWindow = QStringLiteral("frame|Lumaphone");

QStringList toldOf(const QList<AccessibleItem> &items)
{
    QStringList told;
    for (const AccessibleItem &item : items) {
        told.append(item.told());
    }
    return told;
}

/// What is in the part of a window that is told as `root`.
QList<AccessibleItem> within(const QList<AccessibleItem> &items, const QString &root)
{
    const auto begin = std::find_if(
        items.begin(), items.end(), [&](const AccessibleItem &item) { return item.told() == root; });
    if (begin == items.end()) {
        return {};
    }
    const auto end = std::find_if(
        begin + 1, items.end(), [&](const AccessibleItem &item) { return item.depth <= begin->depth; });
    return {begin + 1, end};
}

/// What can be used, in its order.
QList<AccessibleItem> controlsOf(QList<AccessibleItem> items)
{
    items.removeIf([](const AccessibleItem &item) { return rolesOfTexts.contains(item.role); });
    return items;
}

/// Where Tab leads, in the order in which a screen reader finds it. It passes over what cannot be used now,
/// or has keys of its own; of neither the toolkit tells.
QStringList stopsOf(QList<AccessibleItem> items, const QStringList &passedOver)
{
    items.removeIf([&passedOver](const AccessibleItem &item) {
        return item.role == QStringLiteral("list item") || passedOver.contains(item.told())
            || !item.states.contains(QStringLiteral("FOCUSABLE"));
    });
    return toldOf(items);
}

QStringList commandBar(
    const QString &start, const QString &save, const QString &startNew, const QString &inspector)
{
    return {"page tab list|切換即時字幕與字幕紀錄庫", "page tab|即時", "page tab|紀錄庫",
        "combo box|選擇常用原文語言；不確定時用自動辨識", "push button|" + start, "push button|" + save,
        "push button|" + startNew, "push button|清除目前字幕", "push button|開啟 / 關閉浮動字幕",
        "push button|" + inspector, "push button|更多設定"};
}

QStringList inspector()
{
    return {"combo box|音訊來源", "combo box|原文語言", "combo box|處理模式",
        "push button|安裝「英文翻譯成繁體中文」", "push button|安裝「日文翻譯成繁體中文」",
        "push button|安裝「韓文翻譯成繁體中文」", "push button|授權條款「英文的語音辨識（Moonshine Tiny）」",
        "push button|安裝「四種語言的語音辨識（SenseVoice-Small）」", "combo box|主題", "combo box|顯示",
        "combo box|順序", "combo box|字型", "slider|字級", "slider|背景不透明度", "slider|行距",
        "slider|每行寬度", "combo box|閱讀模式", "combo box|安靜時", "push button|管理提供者",
        "push button|管理術語", "push button|清除目前字幕"};
}

/// Without the inspector.
QStringList library(const QString &edit)
{
    return commandBar("開始", "儲存字幕紀錄", "開始新的字幕", "展開 Inspector")
        + QStringList {"text|搜尋字幕紀錄", "list|字幕紀錄", "list item|讀書會", "list item|設計週會",
            "text|標題", "push button|" + edit, "push button|複製文字", "push button|匯出",
            "push button|在檔案管理員中顯示", "push button|刪除字幕紀錄", "list|字幕內容", "text|備註",
            "list|命中的術語"};
}

} // namespace

/// A screen reader's walk through everything that the window can show: what it is told of each control, in
/// which order, and that Tab leads the same way.
class ScreenReaderWalkTest : public QObject
{
    Q_OBJECT

public:
    explicit ScreenReaderWalkTest(AccessibilityBus *bus)
        : m_bus(bus)
    {
    }

private slots:
    void initTestCase()
    {
        LUMAPHONE_NEEDS(AccessibilityBus::missing());
        m_studio = std::make_unique<Studio>(m_folder.path());
        m_studio->welcome = std::make_unique<WelcomeModel>(m_studio->session.settings, false);
        m_studio->diagnosis
            = std::make_unique<DiagnosisModel>(&machineWithoutSound, m_tasks, m_studio->session.mainQueue);
        // So high that nothing of the inspector lies below the edge.
        m_studio->open(QSize(1280, 2100));
        QVERIFY(m_bus->listen(QStringLiteral("lumaphone")));
    }
    void cleanupTestCase() { m_studio.reset(); }

    void theWelcome()
    {
        hear("welcome", "dialog|歡迎使用 Lumaphone",
            {"combo box|音訊來源", "combo box|原文語言", "push button|安裝「英文翻譯成繁體中文」",
                "push button|安裝「日文翻譯成繁體中文」", "push button|安裝「韓文翻譯成繁體中文」",
                "push button|安裝「四種語言的語音辨識（SenseVoice-Small）」", "push button|開始使用"});
    }

    void theLiveWorkspaceAndTheInspector()
    {
        hear({}, mainWindow,
            commandBar("開始", "儲存字幕紀錄", "開始新的字幕", "收起 Inspector")
                + QStringList {"push button|複製全部原文", "push button|複製全部台灣繁中",
                    "list|剛剛聽到的內容", "push button|測試聲音"}
                + inspector(),
            withoutSession + QStringList {"push button|複製全部原文", "push button|複製全部台灣繁中"});
    }

    void theTestOfSound()
    {
        m_studio->click("status.testSound");
        hear("soundTest", "dialog|測試聲音", {"push button|完成"});
    }

    void theOfferOfModels()
    {
        m_studio->modelOffer->languageChosen("japanese");
        hear("modelOffer", "dialog|安裝「日文」的語音辨識？",
            {"push button|之後再說", "push button|接受並安裝"});
    }

    void theLicenceOfAModel()
    {
        m_studio->click("models.3.licence");
        hear("modelLicence", "dialog|英文的語音辨識（Moonshine Tiny）",
            {"document frame|英文的語音辨識（Moonshine Tiny）", "push button|關閉"});
    }

    void theGlossary()
    {
        m_studio->glossaryStore->add(translated("tea", "茶"));
        m_studio->content().setProperty("isGlossaryPresented", true);
        hear("glossary", "dialog|術語表",
            {"text|新術語的原文", "text|新術語的固定譯法", "combo box|模式", "check box|大小寫敏感",
                "push button|加入", "list|術語", "list item|tea → 茶", "push button|停用「tea」",
                "push button|編輯「tea」", "push button|刪除「tea」", "push button|匯入 YAML / JSON / CSV",
                "push button|匯出 YAML", "push button|在檔案管理員中顯示", "push button|完成"},
            {"push button|加入", "push button|停用「tea」", "push button|編輯「tea」",
                "push button|刪除「tea」"});
    }

    void theEditorOfATerm()
    {
        m_studio->content().setProperty("isGlossaryPresented", true);
        m_studio->glossary->edit(0);
        hear("glossaryEditor", "dialog|編輯術語",
            {"text|原文", "text|譯文", "text|備註", "combo box|模式", "check box|大小寫敏感",
                "check box|啟用", "push button|取消", "push button|儲存"});
        m_studio->content().setProperty("isGlossaryPresented", false);
    }

    void theProvider()
    {
        m_studio->content().setProperty("isProviderSettingsPresented", true);
        hear("providerSheet", "dialog|自定義 API 提供者",
            {"text|Base URL", "text|Model", "password text|API 金鑰", "push button|清除金鑰",
                "push button|測試", "push button|取消", "push button|儲存"},
            {"push button|清除金鑰"});
    }

    void theListOfKeys()
    {
        QTest::keyClick(m_studio->window, Qt::Key_F1);
        hear("keys", "dialog|鍵盤快速鍵", {"document frame|鍵盤快速鍵", "push button|關閉"});
    }

    void theDiagnosis()
    {
        m_studio->click("moreSettings");
        m_studio->click("menu.diagnosis");
        QVERIFY(comes([&] { return m_studio->find("diagnosis.1.0") != nullptr; }));
        hear("diagnosis", "dialog|檢查這台電腦",
            {"document frame|檢查這台電腦", "push button|複製", "push button|再檢查一次",
                "push button|關閉"});
    }

    void theMenu()
    {
        m_studio->click("moreSettings");
        const QStringList entries {"menu item|自定義 API 提供者…", "menu item|術語表…",
            "menu item|開啟浮動字幕", "menu item|關閉浮動字幕", "menu item|暫停浮動字幕",
            "menu item|認識 Lumaphone…", "menu item|檢查這台電腦…", "menu item|鍵盤快速鍵…"};
        QStringList found;
        QVERIFY(comes([&] {
            found = toldOf(m_bus->walk()).filter("menu item|");
            // Some toolkits tell of a heading as well.
            found.removeAll("menu item|字幕");
            return !found.isEmpty();
        }));
        QCOMPARE(found, entries);
        QTest::keyClick(m_studio->window, Qt::Key_Down);
        QVERIFY(isComeTo("menu item|自定義 API 提供者…"));
        QTest::keyClick(m_studio->window, Qt::Key_Escape);
        QVERIFY(isComeTo("push button|更多設定"));
    }

    void theChoicesOfAPicker()
    {
        focus("inspector.mode.picker");
        QVERIFY(isComeTo("combo box|處理模式"));
        QTest::keyClick(m_studio->window, Qt::Key_Space);
        QStringList found;
        QVERIFY(comes([&] {
            found = toldOf(within(m_bus->walk(), "dialog|處理模式"));
            return !found.isEmpty();
        }));
        QCOMPARE(found, (QStringList {"list|處理模式", "list item|Apple Mode", "list item|自定義 API"}));
        QTest::keyClick(m_studio->window, Qt::Key_Down);
        QVERIFY(isComeTo("list item|自定義 API"));
        QTest::keyClick(m_studio->window, Qt::Key_Escape);
        QVERIFY(isComeTo("combo box|處理模式"));
    }

    void theLibrary()
    {
        m_studio->save("設計週會", AppleSystemSpeechLanguage::japanese, {{"一。", "譯一。"}, {"二", "譯二"}});
        m_studio->save("讀書會", AppleSystemSpeechLanguage::korean, {{"三", "譯三"}});
        m_studio->content().setProperty("isInspectorVisible", false);
        m_studio->click("workspace.library");
        m_studio->workspace->selectRow(1);
        hear({}, mainWindow,
            library("編輯原文與譯文") + QStringList {"list item|1。一。譯一。", "list item|2。二。譯二"},
            withoutSession);
        focus("library.list");
        QTest::keyClick(m_studio->window, Qt::Key_Up);
        QVERIFY(isComeTo("list item|讀書會"));
        QTest::keyClick(m_studio->window, Qt::Key_Down);
        QVERIFY(isComeTo("list item|設計週會"));
    }

    void theReaderWhileEditing()
    {
        m_studio->workspace->setEditingTranscript(true);
        focus("library.search");
        hear({}, mainWindow,
            library("結束編輯")
                + QStringList {"text|第 1 段原文", "text|第 1 段台灣繁中譯文", "text|第 2 段原文",
                    "text|第 2 段台灣繁中譯文"},
            withoutSession);
        m_studio->workspace->setEditingTranscript(false);
    }

    void theDeletionOfARecord()
    {
        m_studio->workspace->requestDelete();
        hear("library.deleteAlert", "dialog|刪除字幕紀錄？", {"push button|取消", "push button|刪除"});
        m_studio->click("workspace.live");
        m_studio->content().setProperty("isInspectorVisible", true);
    }

    void aSessionThatHasEnded()
    {
        m_studio->live->startOrStop();
        m_studio->settle();
        m_studio->say("一。", "譯一。", AppleSystemSpeechLanguage::japanese);
        m_studio->say("二。", "譯二。", AppleSystemSpeechLanguage::japanese);
        m_studio->live->startOrStop();
        m_studio->settle();
        hear({}, mainWindow,
            commandBar("重開", "儲存字幕紀錄", "捨棄上一段並立刻開始新的字幕", "收起 Inspector")
                + QStringList {"push button|捨棄", "push button|開始新的字幕", "push button|儲存",
                    "push button|在這段字幕裡尋找（Ctrl+F）", "push button|複製全部原文",
                    "push button|複製全部台灣繁中", "list|剛剛聽到的內容", "list item|一。 譯一。",
                    "list item|二。 譯二。", "push button|測試聲音"}
                + inspector());
        focus("card.lines");
        QTest::keyClick(m_studio->window, Qt::Key_Up);
        QVERIFY(isComeTo("list item|二。 譯二。"));
        QTest::keyClick(m_studio->window, Qt::Key_Up);
        QVERIFY(isComeTo("list item|一。 譯一。"));
        m_studio->content().setProperty("isClearConfirmationPresented", true);
        hear("clearConfirmation", "dialog|清除目前字幕？", {"push button|取消", "push button|清除"});
    }

private:
    template<typename Condition> static bool comes(Condition condition)
    {
        return waitUntil(condition, accessibilityPatienceMs);
    }
    void focus(const QString &name) const { m_studio->find(name)->forceActiveFocus(Qt::TabFocusReason); }
    /// Whether that is the last place of which the screen reader is told.
    bool isComeTo(const QString &told) const
    {
        return comes([&] {
            const QString last = m_bus->focused().isEmpty() ? QString() : m_bus->focused().last();
            // A list with rows is heard as its row.
            return last == told || (told.startsWith("list|") && last.startsWith("list item|"));
        });
    }

    /// Walks through a part of the window, which has these controls, some of which Tab passes over, and
    /// closes it if it is a sheet.
    void hear(const QString &sheet, const QString &root, const QStringList &controls,
        const QStringList &passedOver = {})
    {
        if (!sheet.isEmpty()) {
            QVERIFY(comes([&] { return m_studio->object(sheet).property("opened").toBool(); }));
        }
        m_studio->settle();
        const QList<AccessibleItem> all = m_bus->walk();
        for (const AccessibleItem &item : all) {
            QVERIFY2(!item.name.isEmpty() && !rolesOfNothing.contains(item.role), qPrintable(item.told()));
        }
        const QList<AccessibleItem> found = controlsOf(within(all, root));
        if (toldOf(found) != controls) {
            qInfo("%s", qPrintable(toldOf(found).join(QLatin1Char('\n'))));
        }
        QCOMPARE(toldOf(found), controls);
        followTab(all, stopsOf(found, passedOver));
        if (!sheet.isEmpty()) {
            QTest::keyClick(m_studio->window, Qt::Key_Escape);
            QVERIFY(comes([&] { return !m_studio->object(sheet).property("visible").toBool(); }));
        }
    }
    /// Goes once round with Tab, from what has the keyboard.
    void followTab(const QList<AccessibleItem> &all, const QStringList &stops)
    {
        qsizetype here = -1;
        for (const AccessibleItem &item : all) {
            if (item.states.contains(QStringLiteral("FOCUSED"))) {
                here = stops.indexOf(item.told());
            }
        }
        // Where there is one place alone, Tab leads nowhere.
        for (qsizetype step = 1; stops.size() > 1 && step <= stops.size(); ++step) {
            const QString &next = stops[(here + step) % stops.size()];
            QTest::keyClick(m_studio->window, Qt::Key_Tab);
            QVERIFY2(isComeTo(next), qPrintable(next + " after " + m_bus->focused().last()));
        }
    }

    AccessibilityBus *m_bus; ///< none if something is missing
    QTemporaryDir m_folder;
    DetachedTasks m_tasks;
    std::unique_ptr<Studio> m_studio;
};

int main(int argc, char *argv[])
{
    return runWithScreenReader<ScreenReaderWalkTest>(argc, argv, QSize(1440, 2200));
}

#include "ScreenReaderWalkTest.moc"
