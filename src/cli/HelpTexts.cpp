#include "cli/HelpTexts.h"

namespace lumaphone::cli {

QString programHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli 指令 [選項]

在自己的電腦上把語音變成字幕。

指令：
  caption INPUT  聆聽系統音訊、麥克風或音訊檔，即時印出字幕

選項：
  -h, --help     顯示說明；「lumaphone-cli 指令 --help」顯示該指令的說明
  --version      顯示版本
)");
}

QString captionHelp()
{
    return QStringLiteral(R"(用法：lumaphone-cli caption INPUT [選項]

聆聽聲音並印出字幕。按 Ctrl-C 結束，進行中的字幕會先完成。

INPUT：
  system       電腦正在播放的聲音（目前預設輸出裝置）
  microphone   目前預設的麥克風
  檔案路徑     音訊檔（WAV、FLAC、Ogg、MP3 等）；檔名若為 system 或 microphone，請寫成 ./system

選項：
  --language LANGUAGE  原文語言：automatic（預設）、japanese、english、korean、mandarin
  --format FORMAT      text（預設）：終端機會就地更新進行中的字幕，管線只輸出完成的字幕
                       jsonl：字幕每次變動各輸出一個 JSON 物件
  --realtime           以原本的速度播放音訊檔，而不是盡快處理
  -h, --help           顯示這份說明

結束狀態：0 正常結束；1 無法開始或中途失敗，原因在標準錯誤輸出；2 用法錯誤。
)");
}

} // namespace lumaphone::cli
