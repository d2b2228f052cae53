pragma Singleton
import QtQuick

/// Every fixed text that stands in a view, in Taiwan Traditional Chinese. What depends on the state of the program is said by the models.
QtObject {
    // What several views say.
    readonly property string appName: "Lumaphone"
    readonly property string cancel: "取消"
    readonly property string close: "關閉"
    readonly property string done: "完成"
    readonly property string save: "儲存"
    readonly property string clear: "清除"
    readonly property string source: "原文"
    readonly property string taiwanTranslation: "台灣繁中譯文"
    readonly property string note: "備註"
    readonly property string clearCaptions: "清除目前字幕"
    readonly property string showInFileManager: "在檔案管理員中顯示"
    readonly property string licence: "授權條款"
    readonly property string dismissMessage: "關閉訊息"
    readonly property string clearText: "清除文字"

    // The command bar.
    readonly property string toolbar: "工具列"
    readonly property string slogan: "聽不懂沒關係，交給 Luma"
    readonly property string switchWorkspaces: "切換即時字幕與字幕紀錄庫"
    readonly property string live: "即時"
    readonly property string library: "紀錄庫"
    readonly property string languageHelp: "選擇常用原文語言；不確定時用自動辨識"
    readonly property string startHelp: "開始即時字幕（Ctrl+Enter）"
    readonly property string stopHelp: "停止即時字幕（Ctrl+Enter）"
    readonly property string toggleFloatingCaptions: "開啟 / 關閉浮動字幕"
    readonly property string hideInspector: "收起 Inspector"
    readonly property string showInspector: "展開 Inspector"
    readonly property string moreSettings: "更多設定"
    readonly property string menuProvider: "自定義 API 提供者…"
    readonly property string menuGlossary: "術語表…"
    readonly property string menuCaptions: "字幕"
    readonly property string openFloatingCaptions: "開啟浮動字幕"
    readonly property string closeFloatingCaptions: "關閉浮動字幕"
    readonly property string menuDiagnosis: "檢查這台電腦…"
    readonly property string menuKeys: "鍵盤快速鍵…"

    // Questions before something is lost.
    readonly property string clearTitle: "清除目前字幕？"
    readonly property string clearMessage: "這段字幕尚未儲存。清除後，目前原文、譯文與命中的術語紀錄都會從畫面上移除。"
    readonly property string unsavedEditTitle: "這筆字幕紀錄的修改無法儲存"
    readonly property string unsavedEditMessage: "修改的內容還在視窗裡，可以排除原因後再儲存，或先複製下來。"
    readonly property string stayInWindow: "留在視窗"
    readonly property string giveUpEditAndEnd: "放棄修改並結束"
    readonly property string deleteRecordTitle: "刪除字幕紀錄？"
    readonly property string deleteRecordMessage: "這會移除索引與本機 session 資料夾。"
    readonly property string deleteIt: "刪除"
    readonly property string removeIt: "移除"

    // The live workspace.
    readonly property string currentCaptions: "目前字幕"
    readonly property string justHeard: "剛剛聽到的內容"
    readonly property string taiwanChinese: "台灣繁中"
    readonly property string translationsComing: "翻譯還在整理，完成後會更新到這裡。"
    readonly property string firstLineComing: "正在聽，第一句話很快就會出現在這裡。"
    readonly property string linesWillStay: "開始之後，聽到的每一句話都會留在這裡。"
    readonly property string translateAgain: "再試一次"
    readonly property string translateAllAgain: "全部再試一次"
    readonly property string translateAllAgainHelp: "把沒有翻譯的句子再送去翻譯一次"
    readonly property string toNewestLine: "回到最新一句"
    readonly property string find: "尋找"
    readonly property string findHelp: "在這段字幕裡尋找（Ctrl+F）"
    readonly property string findInCaptions: "在這段字幕裡尋找"
    readonly property string findPlaceholder: "尋找原文與譯文"
    readonly property string findNext: "下一處（F3）"
    readonly property string findPrevious: "上一處（Shift+F3）"
    readonly property string closeFind: "關閉尋找（Esc）"
    readonly property string notFound: "找不到"
    readonly property string copyLine: "複製這一句和譯文"
    readonly property string copySelection: "複製選取的文字"
    readonly property string selectAll: "全選"
    readonly property string theseCaptions: "這段字幕"
    readonly property string notSavedYet: "這段字幕還沒儲存。"
    readonly property string discard: "捨棄"
    readonly property string clearSavedHelp: "從畫面上清除這段字幕，紀錄庫裡的不會變"
    readonly property string discardHelp: "丟掉這段字幕，不儲存"
    readonly property string startNewCaptions: "開始新的字幕"
    readonly property string updateRecord: "更新紀錄"
    readonly property string soundTest: "測試聲音"
    readonly property string soundTestHelp: "看看 Lumaphone 聽不聽得到聲音"
    readonly property string soundTestSubtitle: "只看音量，不辨識也不錄下來；關掉這裡就停止。"

    // The library.
    readonly property string records: "字幕紀錄"
    readonly property string searchRecords: "搜尋字幕紀錄"
    readonly property string searchPlaceholder: "搜尋標題、備註、原文、譯文或術語"
    readonly property string selectRecord: "選擇一筆字幕紀錄"
    readonly property string selectRecordDetail: "儲存 live session 後，紀錄會出現在這裡。"
    readonly property string recordBroken: "無法開啟這筆字幕紀錄"
    readonly property string recordBrokenDetail: "檔案可能已損毀或被移走。可以在檔案管理員裡查看，或刪除這筆紀錄。"
    readonly property string openFolder: "開啟資料夾"
    readonly property string deleteRecord: "刪除字幕紀錄"
    readonly property string title: "標題"
    readonly property string titlePlaceholder: "字幕紀錄標題"
    readonly property string editLines: "編輯原文與譯文"
    readonly property string endEditing: "結束編輯"
    readonly property string copyText: "複製文字"
    readonly property string copyBoth: "複製原文與譯文"
    readonly property string copySource: "複製原文"
    readonly property string copyTranslation: "複製譯文"
    readonly property string exportRecord: "匯出"
    readonly property string exportTitle: "匯出字幕紀錄"
    readonly property string revert: "還原"
    readonly property string revertHelp: "放棄尚未儲存的修改"
    readonly property string saveEdits: "儲存修改"
    readonly property string saveEditsHelp: "儲存修改（Ctrl+S）"
    readonly property string transcript: "字幕內容"
    readonly property string noTranslation: "（沒有譯文）"
    readonly property string matchedTerms: "命中的術語"

    // The inspector.
    readonly property string inspector: "Inspector"
    readonly property string inspectorHint: "只放會影響這次字幕的控制。"
    readonly property string unsavedCaptions: "上一段已保留，先儲存或清除。"
    readonly property string input: "輸入"
    readonly property string audioSource: "音訊來源"
    readonly property string sourceLanguage: "原文語言"
    readonly property string processingMode: "處理模式"
    readonly property string outputLanguage: "輸出字幕：繁中"
    readonly property string floatingCaptions: "浮動字幕"
    readonly property string theme: "主題"
    readonly property string display: "顯示"
    readonly property string fontSize: "字級"
    readonly property string opacity: "背景不透明度"
    readonly property string order: "順序"
    readonly property string font: "字型"
    readonly property string lineSpacing: "行距"
    readonly property string lineWidth: "每行寬度"
    readonly property string readingMode: "閱讀模式"
    readonly property string readingModeHint: "讀完才換下一句，定稿的字幕不再改動。滾輪往回看，Ctrl+Shift+P 暫停。"
    readonly property string inSilence: "安靜時"
    readonly property string preview: "浮動字幕預覽"
    readonly property string customProvider: "自定義 API"
    readonly property string textTranslation: "文字翻譯"
    readonly property string textPolishing: "文字整理"
    readonly property string glossary: "術語表"
    readonly property string isAvailable: "可用"
    readonly property string isUnavailable: "不可用"
    readonly property string manageProvider: "管理提供者"
    readonly property string terms: "術語"
    readonly property string manage: "管理"
    readonly property string manageTerms: "管理術語"

    // The caption panel.
    readonly property string growPanel: "放大面板，顯示整句字幕"
    readonly property string holdCaptions: "暫停浮動字幕"
    readonly property string followCaptions: "繼續浮動字幕"
    readonly property string holdOrFollowCaptions: "暫停 / 繼續浮動字幕"

    // The sheet of the provider.
    readonly property string providerTitle: "自定義 API 提供者"
    readonly property string providerSubtitle: "Lumaphone 先用 macOS 聽出原文，再把文字交給 API 整理與翻譯。"
    readonly property string providerBaseURL: "Base URL"
    readonly property string providerModel: "Model"
    readonly property string providerModelPlaceholder: "模型名稱，例如 gpt-4o-mini"
    readonly property string providerKey: "API 金鑰"
    readonly property string clearProviderKey: "清除金鑰"
    readonly property string providerHint: "API 目前只接收轉錄後的文字，不會直接接收麥克風或系統音訊。API 金鑰只存在 macOS 鑰匙圈，不寫入設定檔，也不會回填顯示。"
    readonly property string testProvider: "測試"
    readonly property string testProviderHelp: "送出一句測試翻譯"

    // The sheets of the glossary.
    readonly property string glossarySubtitle: "固定專有名詞、產品名和字幕裡最不想被翻壞的詞。"
    readonly property string newTermSource: "新術語的原文"
    readonly property string newTermSourcePlaceholder: "原文，例如 ScreenCaptureKit"
    readonly property string newTermTarget: "新術語的固定譯法"
    readonly property string newTermTargetPlaceholder: "固定譯法，例如 ScreenCaptureKit"
    readonly property string mode: "模式"
    readonly property string caseSensitive: "大小寫敏感"
    readonly property string addTerm: "加入"
    readonly property string glossaryEmpty: "先加 Lumaphone、Codex、專案代號，翻譯就比較聽話。"
    readonly property string dropToImport: "放開以匯入 YAML、JSON 或 CSV"
    readonly property string importing: "正在匯入..."
    readonly property string importTerms: "匯入 YAML / JSON / CSV"
    readonly property string exportTerms: "匯出 YAML"
    readonly property string importTitle: "匯入術語表"
    readonly property string importFilter: "術語表 (*.yaml *.yml *.json *.csv)"
    readonly property string anyFileFilter: "所有檔案 (*)"
    readonly property string exportGlossaryTitle: "匯出術語表"
    readonly property string exportFilter: "YAML (*.yaml)"
    readonly property string undoDeletion: "復原"
    readonly property string keyUndoDeletion: "放回剛刪除的術語"
    readonly property string undoDeletionHelp: "把刪除的術語放回去（Ctrl+Z）"
    readonly property string editTerm: "編輯術語"
    readonly property string editTermSubtitle: "調整固定譯法後，下一次翻譯就會套用。"
    readonly property string target: "譯文"
    readonly property string notePlaceholder: "備註，可留空"
    readonly property string enable: "啟用"
    readonly property string disable: "停用"
    readonly property string edit: "編輯"
    readonly property string isEnabled: "已啟用"
    readonly property string isDisabled: "已停用"

    // Offline models.
    readonly property string offlineModels: "離線模型"
    readonly property string offlineModelsHint: "下載一次，之後不連網路也能辨識與翻譯。"
    readonly property string pauseInstallation: "暫停下載"
    readonly property string later: "之後再說"
    readonly property string continueInBackground: "在背景繼續"

    // What a new user is told.
    readonly property string menuWelcome: "認識 Lumaphone…"
    readonly property string welcomeTitle: "歡迎使用 Lumaphone"
    readonly property string welcomeSubtitle: "幾件事先說明。什麼都不選也能開始，之後隨時可以改。"
    readonly property string welcomeSource: "要聽什麼"
    readonly property string welcomeSourceHint: "這台電腦正在播放的聲音，或是麥克風收到的聲音。"
    readonly property string welcomeLanguage: "說的是哪一種語言"
    readonly property string welcomeLanguageHint: "不確定就用自動辨識。"
    readonly property string welcomePrivacy: "聲音不會離開這台電腦"
    readonly property string welcomePrivacyHint: "辨識在這台電腦上進行。自己設定了翻譯服務，文字才會送到那裡。"
    readonly property string welcomeBundled: "現在就能用"
    readonly property string welcomeModels: "想加的時候再加"
    readonly property string welcomeModelsHint: "下載一次，之後不連網路也能用。一邊下載一邊看字幕也沒問題。"
    readonly property string welcomeAgain: "之後可以從「更多設定」再打開。"
    readonly property string welcomeDone: "開始使用"

    // What the program finds on this machine.
    readonly property string diagnosisTitle: "檢查這台電腦"
    readonly property string diagnosisSubtitle: "檢查不會啟動任何服務，也不會要求解鎖。內容不含 API 金鑰與字幕，可以附在問題回報裡。"
    readonly property string checking: "正在檢查..."
    readonly property string checkAgain: "再檢查一次"
    readonly property string copy: "複製"
    readonly property string copied: "已複製"
    readonly property string findingProblem: "無法使用："
    readonly property string findingAdvice: "可以改善："
    readonly property string findingFine: "正常："

    // The list of keys.
    readonly property string keysTitle: "鍵盤快速鍵"
    readonly property string keysOfWindow: "視窗"
    readonly property string keyStartOrStop: "開始或停止"
    readonly property string keyStartOrStopFreely: "沒有選到控制項時，開始或停止"
    readonly property string keySave: "儲存字幕紀錄"
    readonly property string keySettings: "移到 Inspector"
    readonly property string keyList: "顯示這份清單"
    readonly property string keyClose: "關閉視窗並結束 Lumaphone"
    readonly property string keyPage: "往上或往下一頁"
    readonly property string keyEnd: "最早或最新一句"
    readonly property string keyLine: "上一句或下一句"
    readonly property string keySelect: "往上或往下連續選取"
    readonly property string keyLineMenu: "這一句的選單"
    readonly property string keyFound: "下一處或上一處"
    readonly property string keyLeave: "取消選取、關閉尋找"
    readonly property string comma: "，"

    // Sentences with a name or a number in them.
    function actionOn(action: string, name: string): string {
        return action + "「" + name + "」";
    }
    function removeModelTitle(name: string): string {
        return "移除「" + name + "」？";
    }
    function savedAs(title: string): string {
        return "已儲存：" + title;
    }
    /// `number`: which of them is looked at, counted from one; zero for none.
    function foundOf(number: int, count: int): string {
        return (number === 0 ? "" : "第 " + number + " 處，") + "共 " + count + " 處";
    }
    function copyAllOf(pane: string): string {
        return "複製全部" + pane;
    }
    function sourceOfLine(number: int): string {
        return "第 " + number + " 段原文";
    }
    function translationOfLine(number: int): string {
        return "第 " + number + " 段台灣繁中譯文";
    }
    /// What leads back to the newest line of the panel, where so many wait.
    function newestLines(waiting: int): string {
        return waiting > 0 ? "最新 · 還有 " + waiting + " 句" : "最新";
    }
    /// A name with its state, as it is read aloud.
    function stated(name: string, state: string): string {
        return name + "：" + state;
    }
    /// Two parts of a sentence, as they are read aloud.
    function listed(one: string, other: string): string {
        return one + "，" + other;
    }
    /// Sentences that follow each other, as they are read aloud.
    function followed(one: string, other: string): string {
        const isEnded = /[。．.！!？?…]$/.test(one);
        return other === "" ? one : one + (isEnded ? "" : "。") + other;
    }
}
