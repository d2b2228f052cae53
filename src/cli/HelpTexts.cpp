#include "cli/HelpTexts.h"

#include "language/AppleSystemSpeechLanguage.h"

#include <QStringList>

namespace lumaphone::cli {

QString programHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli 指令 [選項]

在自己的電腦上把語音變成字幕。

指令：
  caption INPUT  聆聽系統音訊、麥克風或音訊檔，即時印出字幕
  models         安裝、檢查或移除翻譯與語音的模型
  settings       列出、讀取或變更設定
  key            儲存、移除或查看翻譯服務的 API 金鑰
  glossary       管理固定譯法的詞彙
  draft          查看或捨棄尚未儲存的字幕草稿
  library        儲存、搜尋、匯出或刪除字幕紀錄
  doctor         檢查這台電腦缺少什麼

選項：
  -h, --help     顯示說明；「lumaphone-cli 指令 --help」顯示該指令的說明
  --version      顯示版本
)");
}

QString captionHelp()
{
    QStringList languages;
    for (const AppleSystemSpeechLanguage language : allSpeechLanguages()) {
        const bool isDefault = language == AppleSystemSpeechLanguage::automatic;
        languages.append(rawValue(language) + (isDefault ? QStringLiteral("（預設）") : QString()));
    }
    return QStringLiteral(R"(用法：lumaphone-cli caption INPUT [選項]

聆聽聲音並印出字幕。按 Ctrl-C 結束，進行中的字幕會先完成。

INPUT：
  system       電腦正在播放的聲音（目前預設輸出裝置）
  microphone   目前預設的麥克風
  檔案路徑     音訊檔（WAV、FLAC、Ogg、MP3 等）；檔名若為 system 或 microphone，請寫成 ./system

選項：
  --language LANGUAGE  原文語言：%1
  --format FORMAT      text（預設）：終端機會就地更新進行中的字幕，管線只輸出完成的字幕
                       jsonl：字幕每次變動各輸出一個 JSON 物件
  --translate HOW      翻譯成台灣繁體中文：off 不翻譯、apple 在這台電腦上、custom 用自定義 API；
                       預設依照設定（lumaphone.processingMode）
  --draft              把進行中的字幕存成草稿，當機後可用「lumaphone-cli draft show」取回
  --realtime           以原本的速度播放音訊檔，而不是盡快處理
  -h, --help           顯示這份說明

結束狀態：0 正常結束；1 無法開始或中途失敗，原因在標準錯誤輸出；2 用法錯誤。
)")
        .arg(languages.join(QStringLiteral("、")));
}

QString modelsHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli models list
      lumaphone-cli models install [--from PATH] [--accept-licence] PAIR...
      lumaphone-cli models remove PAIR...
      lumaphone-cli models verify [PAIR...]
      lumaphone-cli models licence PAIR...

PAIR 是模型的名稱（例如 ja-en），或原文與譯文的語言（例如 ja-zh-Hant，經由英文，會用到兩個模型）。
沒有人要求就不會下載。中斷或按 Ctrl-C 後，下次會從中斷處繼續。

list 每行列出一個模型：名稱、狀態（missing、partial、installed、damaged 或 bundled）、在磁碟上的大小、說明，
     以 TAB 分隔。bundled 是 Lumaphone 內建的，不需要安裝，也不能移除。
remove 移除模型；語言對只移除第一個，另一個可能還有別的語言在用。
verify 讀取所有檔案並比對大小與 SHA-256；沒有指定 PAIR 時檢查所有已安裝與內建的模型。
licence 印出授權說明；模型在這台電腦上而且附有授權條款時，一併印出全文。

  --from PATH       從資料夾或檔案安裝，不下載
  --accept-licence  接受模型的授權條款；有些模型必須先接受
)");
}

QString settingsHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli settings list
      lumaphone-cli settings get KEY
      lumaphone-cli settings set KEY VALUE

list 每行列出一個設定：名稱、TAB、目前的值。值的種類不對時不會變更，並說明需要的種類。
)");
}

QString keyHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli key set
      lumaphone-cli key clear
      lumaphone-cli key status

set 從標準輸入讀取一行 API 金鑰（在終端機上不會顯示），存入鑰匙圈。金鑰只會送到儲存時設定的位址，換了位址要再存一次。
status 只說明是否已儲存、屬於哪個位址，不會顯示內容。
)");
}

QString doctorHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli doctor

檢查這台電腦：聲音伺服器與裝置、每種語言的辨識與翻譯、離線模型、鑰匙圈、畫面與桌面入口。缺少什麼，就說明怎麼補上。
不會啟動任何服務，也不會要求解鎖。印出的內容不含 API 金鑰與字幕，可以附在問題回報裡。

✓ 可以使用；– 沒有安裝；· 可以使用，但還少了些什麼；✗ 無法使用。

結束狀態：0 沒有 ✗；1 有 ✗；2 用法錯誤。
)");
}

QString draftHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli draft show
      lumaphone-cli draft discard

草稿是上一段還沒有儲存的字幕，每句原文之下是它的譯文。
)");
}

QString glossaryHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli glossary list
      lumaphone-cli glossary add SOURCE [--target TEXT] [--mode MODE] [--note TEXT] [--case-sensitive]
      lumaphone-cli glossary remove SOURCE
      lumaphone-cli glossary enable SOURCE
      lumaphone-cli glossary disable SOURCE
      lumaphone-cli glossary import FILE
      lumaphone-cli glossary export FILE

import 讀取 JSON、YAML 或 CSV 檔（依副檔名），加入尚未收錄的詞彙。export 把所有詞彙寫成 YAML 檔；
備註不會匯出，含有換行的詞彙也無法完整匯出。
list 每行列出一個詞彙：on 或 off、處理方式、原文、譯文、備註，以 TAB 分隔。

  --target TEXT     固定的譯文；指定後處理方式預設為 translate
  --mode MODE       preserve：譯文保留原文；translate：一律譯成 --target
  --note TEXT       備註，不會送出
  --case-sensitive  比對時區分大小寫
)");
}

QString libraryHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli library list [--search TEXT]
      lumaphone-cli library show ID
      lumaphone-cli library export ID --format FORMAT [--text WHICH] [-o FILE]
      lumaphone-cli library delete ID [--yes]
      lumaphone-cli library save

list 每行列出一筆字幕紀錄，由新到舊：ID、建立時間、段落數、標題，以 TAB 分隔。ID 可以只寫開頭幾個字元，
只要沒有別的紀錄以它開頭。save 把目前的草稿存成字幕紀錄，然後刪除草稿。

  --search TEXT      只列出標題、備註、原文、譯文或術語含有這段文字的紀錄，不分大小寫
  --format FORMAT    md、txt、srt（SubRip 字幕）、vtt（WebVTT 字幕）或 json（完整內容）
  --text WHICH       txt、srt 和 vtt 的內容：source 原文、translation 譯文、bilingual 兩者（預設）
  -o, --output FILE  寫入檔案，而不是標準輸出；已有的檔案會被取代
  -y, --yes          刪除前不再詢問；不在終端機上時必須指定
)");
}

} // namespace lumaphone::cli
