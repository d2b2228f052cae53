#include "app/OffscreenTest.h"
#include "photographs/Studio.h"
#include "support/Coroutines.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QTest>

namespace textstest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

using Texts = QMap<QString, QString>;

Texts expectedTexts()
{
    return {
        // What several views say.
        {"appName", "Lumaphone"},
        {"cancel", "取消"},
        {"close", "關閉"},
        {"done", "完成"},
        {"save", "儲存"},
        {"clear", "清除"},
        {"source", "原文"},
        {"taiwanTranslation", "台灣繁中譯文"},
        {"note", "備註"},
        {"clearCaptions", "清除目前字幕"},
        {"showInFileManager", "在檔案管理員中顯示"},
        {"licence", "授權條款"},
        {"dismissMessage", "關閉訊息"},
        {"clearText", "清除文字"},
        // The command bar.
        {"toolbar", "工具列"},
        {"slogan", "聽不懂沒關係，交給 Luma"},
        {"switchWorkspaces", "切換即時字幕與字幕紀錄庫"},
        {"live", "即時"},
        {"library", "紀錄庫"},
        {"languageHelp", "選擇常用原文語言；不確定時用自動辨識"},
        {"startHelp", "開始即時字幕（Ctrl+Enter）"},
        {"stopHelp", "停止即時字幕（Ctrl+Enter）"},
        {"toggleFloatingCaptions", "開啟 / 關閉浮動字幕"},
        {"hideInspector", "收起 Inspector"},
        {"showInspector", "展開 Inspector"},
        {"moreSettings", "更多設定"},
        {"menuProvider", "自定義 API 提供者…"},
        {"menuGlossary", "術語表…"},
        {"menuCaptions", "字幕"},
        {"openFloatingCaptions", "開啟浮動字幕"},
        {"closeFloatingCaptions", "關閉浮動字幕"},
        {"menuDiagnosis", "檢查這台電腦…"},
        {"menuKeys", "鍵盤快速鍵…"},
        // Questions before something is lost.
        {"clearTitle", "清除目前字幕？"},
        {"clearMessage", "這段字幕尚未儲存。清除後，目前原文、譯文與命中的術語紀錄都會從畫面上移除。"},
        {"unsavedEditTitle", "這筆字幕紀錄的修改無法儲存"},
        {"unsavedEditMessage", "修改的內容還在視窗裡，可以排除原因後再儲存，或先複製下來。"},
        {"stayInWindow", "留在視窗"},
        {"giveUpEditAndEnd", "放棄修改並結束"},
        {"deleteRecordTitle", "刪除字幕紀錄？"},
        {"deleteRecordMessage", "這會移除索引與本機 session 資料夾。"},
        {"deleteIt", "刪除"},
        {"removeIt", "移除"},
        // The live workspace.
        {"currentCaptions", "目前字幕"},
        {"justHeard", "剛剛聽到的內容"},
        {"taiwanChinese", "台灣繁中"},
        {"translationsComing", "翻譯還在整理，完成後會更新到這裡。"},
        {"firstLineComing", "正在聽，第一句話很快就會出現在這裡。"},
        {"linesWillStay", "開始之後，聽到的每一句話都會留在這裡。"},
        {"translateAgain", "再試一次"},
        {"translateAllAgain", "全部再試一次"},
        {"translateAllAgainHelp", "把沒有翻譯的句子再送去翻譯一次"},
        {"toNewestLine", "回到最新一句"},
        {"find", "尋找"},
        {"findHelp", "在這段字幕裡尋找（Ctrl+F）"},
        {"findInCaptions", "在這段字幕裡尋找"},
        {"findPlaceholder", "尋找原文與譯文"},
        {"findNext", "下一處（F3）"},
        {"findPrevious", "上一處（Shift+F3）"},
        {"closeFind", "關閉尋找（Esc）"},
        {"notFound", "找不到"},
        {"copyLine", "複製這一句和譯文"},
        {"copySelection", "複製選取的文字"},
        {"selectAll", "全選"},
        {"theseCaptions", "這段字幕"},
        {"notSavedYet", "這段字幕還沒儲存。"},
        {"discard", "捨棄"},
        {"clearSavedHelp", "從畫面上清除這段字幕，紀錄庫裡的不會變"},
        {"discardHelp", "丟掉這段字幕，不儲存"},
        {"startNewCaptions", "開始新的字幕"},
        {"updateRecord", "更新紀錄"},
        {"soundTest", "測試聲音"},
        {"soundTestHelp", "看看 Lumaphone 聽不聽得到聲音"},
        {"soundTestSubtitle", "只看音量，不辨識也不錄下來；關掉這裡就停止。"},
        // The library.
        {"records", "字幕紀錄"},
        {"searchRecords", "搜尋字幕紀錄"},
        {"searchPlaceholder", "搜尋標題、備註、原文、譯文或術語"},
        {"selectRecord", "選擇一筆字幕紀錄"},
        {"selectRecordDetail", "儲存 live session 後，紀錄會出現在這裡。"},
        {"recordBroken", "無法開啟這筆字幕紀錄"},
        {"recordBrokenDetail", "檔案可能已損毀或被移走。可以在檔案管理員裡查看，或刪除這筆紀錄。"},
        {"openFolder", "開啟資料夾"},
        {"deleteRecord", "刪除字幕紀錄"},
        {"title", "標題"},
        {"titlePlaceholder", "字幕紀錄標題"},
        {"editLines", "編輯原文與譯文"},
        {"endEditing", "結束編輯"},
        {"copyText", "複製文字"},
        {"copyBoth", "複製原文與譯文"},
        {"copySource", "複製原文"},
        {"copyTranslation", "複製譯文"},
        {"exportRecord", "匯出"},
        {"exportTitle", "匯出字幕紀錄"},
        {"revert", "還原"},
        {"revertHelp", "放棄尚未儲存的修改"},
        {"saveEdits", "儲存修改"},
        {"saveEditsHelp", "儲存修改（Ctrl+S）"},
        {"transcript", "字幕內容"},
        {"noTranslation", "（沒有譯文）"},
        {"matchedTerms", "命中的術語"},
        // The inspector.
        {"inspector", "Inspector"},
        {"inspectorHint", "只放會影響這次字幕的控制。"},
        {"unsavedCaptions", "上一段已保留，先儲存或清除。"},
        {"input", "輸入"},
        {"audioSource", "音訊來源"},
        {"sourceLanguage", "原文語言"},
        {"processingMode", "處理模式"},
        {"outputLanguage", "輸出字幕：繁中"},
        {"floatingCaptions", "浮動字幕"},
        {"theme", "主題"},
        {"display", "顯示"},
        {"fontSize", "字級"},
        {"opacity", "背景不透明度"},
        {"order", "順序"},
        {"font", "字型"},
        {"lineSpacing", "行距"},
        {"lineWidth", "每行寬度"},
        {"readingMode", "閱讀模式"},
        {"readingModeHint", "讀完才換下一句，定稿的字幕不再改動。滾輪往回看，Ctrl+Shift+P 暫停。"},
        {"inSilence", "安靜時"},
        {"preview", "浮動字幕預覽"},
        {"customProvider", "自定義 API"},
        {"textTranslation", "文字翻譯"},
        {"textPolishing", "文字整理"},
        {"glossary", "術語表"},
        {"isAvailable", "可用"},
        {"isUnavailable", "不可用"},
        {"manageProvider", "管理提供者"},
        {"terms", "術語"},
        {"manage", "管理"},
        {"manageTerms", "管理術語"},
        // The caption panel.
        {"growPanel", "放大面板，顯示整句字幕"},
        {"holdCaptions", "暫停浮動字幕"},
        {"followCaptions", "繼續浮動字幕"},
        {"holdOrFollowCaptions", "暫停 / 繼續浮動字幕"},
        // The sheet of the provider.
        {"providerTitle", "自定義 API 提供者"},
        {"providerSubtitle", "Lumaphone 先用 macOS 聽出原文，再把文字交給 API 整理與翻譯。"},
        {"providerBaseURL", "Base URL"},
        {"providerModel", "Model"},
        {"providerModelPlaceholder", "模型名稱，例如 gpt-4o-mini"},
        {"providerKey", "API 金鑰"},
        {"clearProviderKey", "清除金鑰"},
        {"providerHint",
            "API 目前只接收轉錄後的文字，不會直接接收麥克風或系統音訊。API 金鑰只存在 macOS "
            "鑰匙圈，不寫入設定檔，也不會回填顯示。"},
        {"testProvider", "測試"},
        {"testProviderHelp", "送出一句測試翻譯"},
        // The sheets of the glossary.
        {"glossarySubtitle", "固定專有名詞、產品名和字幕裡最不想被翻壞的詞。"},
        {"newTermSource", "新術語的原文"},
        {"newTermSourcePlaceholder", "原文，例如 ScreenCaptureKit"},
        {"newTermTarget", "新術語的固定譯法"},
        {"newTermTargetPlaceholder", "固定譯法，例如 ScreenCaptureKit"},
        {"mode", "模式"},
        {"caseSensitive", "大小寫敏感"},
        {"addTerm", "加入"},
        {"glossaryEmpty", "先加 Lumaphone、Codex、專案代號，翻譯就比較聽話。"},
        {"dropToImport", "放開以匯入 YAML、JSON 或 CSV"},
        {"importing", "正在匯入..."},
        {"importTerms", "匯入 YAML / JSON / CSV"},
        {"exportTerms", "匯出 YAML"},
        {"importTitle", "匯入術語表"},
        {"importFilter", "術語表 (*.yaml *.yml *.json *.csv)"},
        {"anyFileFilter", "所有檔案 (*)"},
        {"exportGlossaryTitle", "匯出術語表"},
        {"exportFilter", "YAML (*.yaml)"},
        {"undoDeletion", "復原"},
        {"keyUndoDeletion", "放回剛刪除的術語"},
        {"undoDeletionHelp", "把刪除的術語放回去（Ctrl+Z）"},
        {"editTerm", "編輯術語"},
        {"editTermSubtitle", "調整固定譯法後，下一次翻譯就會套用。"},
        {"target", "譯文"},
        {"notePlaceholder", "備註，可留空"},
        {"enable", "啟用"},
        {"disable", "停用"},
        {"edit", "編輯"},
        {"isEnabled", "已啟用"},
        {"isDisabled", "已停用"},
        // Offline models.
        {"offlineModels", "離線模型"},
        {"offlineModelsHint", "下載一次，之後不連網路也能辨識與翻譯。"},
        {"pauseInstallation", "暫停下載"},
        {"later", "之後再說"},
        {"continueInBackground", "在背景繼續"},
        // What a new user is told.
        {"menuWelcome", "認識 Lumaphone…"},
        {"welcomeTitle", "歡迎使用 Lumaphone"},
        {"welcomeSubtitle", "幾件事先說明。什麼都不選也能開始，之後隨時可以改。"},
        {"welcomeSource", "要聽什麼"},
        {"welcomeSourceHint", "這台電腦正在播放的聲音，或是麥克風收到的聲音。"},
        {"welcomeLanguage", "說的是哪一種語言"},
        {"welcomeLanguageHint", "不確定就用自動辨識。"},
        {"welcomePrivacy", "聲音不會離開這台電腦"},
        {"welcomePrivacyHint", "辨識在這台電腦上進行。自己設定了翻譯服務，文字才會送到那裡。"},
        {"welcomeBundled", "現在就能用"},
        {"welcomeModels", "想加的時候再加"},
        {"welcomeModelsHint", "下載一次，之後不連網路也能用。一邊下載一邊看字幕也沒問題。"},
        {"welcomeAgain", "之後可以從「更多設定」再打開。"},
        {"welcomeDone", "開始使用"},
        // What the program finds on this machine.
        {"diagnosisTitle", "檢查這台電腦"},
        {"diagnosisSubtitle",
            "檢查不會啟動任何服務，也不會要求解鎖。內容不含 API 金鑰與字幕，可以附在問題回報裡。"},
        {"checking", "正在檢查..."},
        {"checkAgain", "再檢查一次"},
        {"copy", "複製"},
        {"copied", "已複製"},
        {"findingProblem", "無法使用："},
        {"findingAdvice", "可以改善："},
        {"findingFine", "正常："},
        // The list of keys.
        {"keysTitle", "鍵盤快速鍵"},
        {"keysOfWindow", "視窗"},
        {"keyStartOrStop", "開始或停止"},
        {"keyStartOrStopFreely", "沒有選到控制項時，開始或停止"},
        {"keySave", "儲存字幕紀錄"},
        {"keySettings", "移到 Inspector"},
        {"keyList", "顯示這份清單"},
        {"keyClose", "關閉視窗並結束 Lumaphone"},
        {"keyPage", "往上或往下一頁"},
        {"keyEnd", "最早或最新一句"},
        {"keyLine", "上一句或下一句"},
        {"keySelect", "往上或往下連續選取"},
        {"keyLineMenu", "這一句的選單"},
        {"keyFound", "下一處或上一處"},
        {"keyLeave", "取消選取、關閉尋找"},
        {"comma", "，"},
    };
}

/// All texts of a view and of what lies in it, shown or not.
QStringList textsIn(const QObject &view)
{
    QList<const QObject *> objects {&view};
    for (const QObject *object : view.findChildren<QObject *>()) {
        objects.append(object);
    }
    QStringList texts;
    for (const QObject *object : objects) {
        for (const char *name : {"text", "title", "subtitle", "message", "description", "help", "label",
                 "keys", "placeholderText", "accessibleName", "confirmText", "cancelText"}) {
            texts.append(object->property(name).toString());
        }
        texts.append(object->property("nameFilters").toStringList());
        if (QAccessibleInterface *read
            = QAccessible::queryAccessibleInterface(const_cast<QObject *>(object))) {
            texts.append({read->text(QAccessible::Name), read->text(QAccessible::Description)});
        }
    }
    return texts;
}

} // namespace

/// The fixed texts of the views: what they are, and where they stand.
class TextsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_studio.open();
        QQmlComponent component(m_studio.engine.get());
        component.setData(
            "import QtQml\nimport Lumaphone.Texts\nQtObject { readonly property var texts: Texts\n"
            "function of(name, one, other) { return Texts[name](one, other) } }",
            QUrl());
        m_holder.reset(component.create());
        QVERIFY2(m_holder, qPrintable(component.errorString()));
    }

    void everyTextIsTheExpectedOne()
    {
        const auto *texts = m_holder->property("texts").value<QObject *>();
        QVERIFY(texts);
        Texts found;
        const QMetaObject &meta = *texts->metaObject();
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
            found.insert(
                QString::fromLatin1(meta.property(i).name()), meta.property(i).read(texts).toString());
        }
        const Texts expected = expectedTexts();
        for (auto text = expected.begin(); text != expected.end(); ++text) {
            QVERIFY2(found.contains(text.key()), qPrintable(text.key()));
            QCOMPARE(found.value(text.key()), text.value());
        }
        for (const QString &name : found.keys()) {
            QVERIFY2(expected.contains(name), qPrintable(name));
        }
    }

    void sentencesNameWhatTheyAreAbout_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("one");
        QTest::addColumn<QVariant>("other");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QVariant &one, const QVariant &other, const char *text) {
            QTest::newRow(text) << QString(name) << one << other << QString(text);
        };
        row("actionOn", "編輯", "%1 100%", "編輯「%1 100%」");
        row("removeModelTitle", "英文", {}, "移除「英文」？");
        row("savedAs", "週會", {}, "已儲存：週會");
        row("foundOf", 3, 12, "第 3 處，共 12 處");
        row("foundOf", 0, 12, "共 12 處");
        row("copyAllOf", "原文", {}, "複製全部原文");
        row("sourceOfLine", 3, {}, "第 3 段原文");
        row("translationOfLine", 12, {}, "第 12 段台灣繁中譯文");
        row("newestLines", 0, {}, "最新");
        row("newestLines", 3, {}, "最新 · 還有 3 句");
        row("stated", "術語表", "可用", "術語表：可用");
        row("listed", "保留原文", "已停用", "保留原文，已停用");
        row("followed", "聲音伺服器", "請啟動它", "聲音伺服器。請啟動它");
        row("followed", "聲音伺服器", "", "聲音伺服器");
        row("followed", "お元気ですか？", "你好嗎？", "お元気ですか？你好嗎？");
    }
    void sentencesNameWhatTheyAreAbout()
    {
        QFETCH(QString, name);
        QFETCH(QVariant, one);
        QFETCH(QVariant, other);
        QVariant said;
        QVERIFY(QMetaObject::invokeMethod(m_holder.get(), "of", Q_RETURN_ARG(QVariant, said),
            Q_ARG(QVariant, name), Q_ARG(QVariant, one), Q_ARG(QVariant, other)));
        QTEST(said.toString(), "text");
    }

    void everyViewSaysItsTexts_data()
    {
        QTest::addColumn<QString>("view");
        QTest::addColumn<QStringList>("texts");
        const auto row = [](const char *view, const QStringList &texts) {
            QTest::newRow(view) << QString(view) << texts;
        };
        row("clearConfirmation",
            {"清除目前字幕？", "這段字幕尚未儲存。清除後，目前原文、譯文與命中的術語紀錄都會從畫面上移除。",
                "取消", "清除"});
        row("unsavedEdit", {"這筆字幕紀錄的修改無法儲存", "留在視窗", "放棄修改並結束"});
        row("library.deleteAlert", {"刪除字幕紀錄？", "這會移除索引與本機 session 資料夾。", "取消", "刪除"});
        row("commandBar",
            {"工具列", "聽不懂沒關係，交給 Luma", "切換即時字幕與字幕紀錄庫", "即時", "紀錄庫",
                "選擇常用原文語言；不確定時用自動辨識", "開始即時字幕（Ctrl+Enter）", "儲存字幕紀錄",
                "開始新的字幕", "清除目前字幕", "開啟 / 關閉浮動字幕", "收起 Inspector", "更多設定",
                "自定義 API 提供者…", "術語表…", "字幕", "開啟浮動字幕", "Ctrl+Shift+F", "關閉浮動字幕",
                "暫停浮動字幕", "Ctrl+Shift+P", "檢查這台電腦…", "鍵盤快速鍵…", "F1"});
        row("live",
            {"目前字幕", "剛剛聽到的內容", "原文", "台灣繁中", "複製全部原文", "複製全部台灣繁中",
                "開始之後，聽到的每一句話都會留在這裡。", "回到最新一句", "在這段字幕裡尋找（Ctrl+F）",
                "在這段字幕裡尋找", "尋找原文與譯文", "下一處（F3）", "上一處（Shift+F3）", "關閉尋找（Esc）",
                "複製這一句和譯文", "複製原文", "複製譯文", "複製選取的文字", "全選", "尋找",
                "這段字幕還沒儲存。", "捨棄", "開始新的字幕", "儲存"});
        row("library",
            {"紀錄庫", "搜尋字幕紀錄", "搜尋標題、備註、原文、譯文或術語", "選擇一筆字幕紀錄",
                "儲存 live session 後，紀錄會出現在這裡。", "無法開啟這筆字幕紀錄", "開啟資料夾",
                "字幕紀錄標題", "編輯原文與譯文", "複製文字", "複製原文與譯文", "複製原文", "複製譯文",
                "匯出", "在檔案管理員中顯示", "刪除字幕紀錄", "還原", "儲存修改", "備註", "匯出字幕紀錄"});
        row("inspectorPanel",
            {"只放會影響這次字幕的控制。", "上一段已保留，先儲存或清除。", "輸入", "音訊來源", "原文語言",
                "處理模式", "輸出字幕：繁中", "離線模型", "下載一次，之後不連網路也能辨識與翻譯。",
                "浮動字幕", "主題", "顯示", "順序", "字型", "字級", "背景不透明度", "行距", "每行寬度",
                "閱讀模式", "安靜時", "浮動字幕預覽", "自定義 API", "文字翻譯", "文字整理", "術語表",
                "管理提供者", "術語", "管理術語", "清除目前字幕"});
        row("providerSheet",
            {"自定義 API 提供者", "Lumaphone 先用 macOS 聽出原文，再把文字交給 API 整理與翻譯。", "Base URL",
                "Model", "模型名稱，例如 gpt-4o-mini", "API 金鑰", "清除金鑰",
                "API 目前只接收轉錄後的文字，不會直接接收麥克風或系統音訊。API 金鑰只存在 macOS "
                "鑰匙圈，不寫入設定檔，也不會回填顯示。",
                "測試", "送出一句測試翻譯", "取消", "儲存"});
        row("glossary",
            {"術語表", "固定專有名詞、產品名和字幕裡最不想被翻壞的詞。", "新術語的原文",
                "原文，例如 ScreenCaptureKit", "新術語的固定譯法", "固定譯法，例如 ScreenCaptureKit", "模式",
                "大小寫敏感", "加入", "先加 Lumaphone、Codex、專案代號，翻譯就比較聽話。",
                "放開以匯入 YAML、JSON 或 CSV", "匯入 YAML / JSON / CSV", "匯出 YAML", "完成", "匯入術語表",
                "匯出術語表", "術語表 (*.yaml *.yml *.json *.csv)", "所有檔案 (*)", "YAML (*.yaml)"});
        row("glossaryEditor",
            {"編輯術語", "調整固定譯法後，下一次翻譯就會套用。", "原文", "譯文", "備註，可留空", "模式",
                "大小寫敏感", "啟用", "取消", "儲存"});
        row("modelLicence", {"授權條款", "關閉"});
        row("modelOffer", {"之後再說"});
        row("keys", {"鍵盤快速鍵", "關閉"});
        row("diagnosis",
            {"檢查這台電腦",
                "檢查不會啟動任何服務，也不會要求解鎖。內容不含 API 金鑰與字幕，可以附在問題回報裡。", "複製",
                "再檢查一次", "關閉"});
    }
    void everyViewSaysItsTexts()
    {
        QFETCH(QString, view);
        QFETCH(QStringList, texts);
        const QStringList found = textsIn(m_studio.object(view));
        for (const QString &text : texts) {
            QVERIFY2(found.contains(text), qPrintable(text));
        }
    }

private:
    QTemporaryDir m_folder;
    Studio m_studio {m_folder.path()};
    std::unique_ptr<QObject> m_holder;
};

LUMAPHONE_OFFSCREEN_TEST(TextsTest)

} // namespace textstest

#include "TextsTest.moc"
