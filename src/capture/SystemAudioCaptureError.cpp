#include "capture/SystemAudioCaptureError.h"

namespace lumaphone {

namespace {

QString description(SystemAudioCaptureError::Case errorCase)
{
    using enum SystemAudioCaptureError::Case;
    switch (errorCase) {
    case noDisplay:
        return QStringLiteral("找不到可擷取的顯示器。");
    case screenAudioPermissionDenied:
        return QStringLiteral(
            "macOS 尚未允許 Lumaphone 使用螢幕與系統音訊錄製。請到系統設定 > 隱私權與安全性 > "
            "螢幕與系統音訊錄製，允許 Lumaphone 後重新開啟 App。");
    case microphonePermissionDenied:
        return QStringLiteral("macOS 尚未允許 Lumaphone 使用麥克風。請到系統設定 > 隱私權與安全性 > "
                              "麥克風，允許 Lumaphone 後重新開啟 App。");
    case microphoneUnavailable:
        return QStringLiteral(
            "目前找不到可用的麥克風輸入。請確認外接麥克風已連接，並在系統設定選成目前輸入裝置。");
    case speechPermissionDenied:
        return QStringLiteral("請在系統設定允許 Lumaphone 使用語音辨識。");
    case speechRecognizerUnavailable:
        return QStringLiteral("目前無法使用 Apple Speech 語音辨識。");
    }
    Q_UNREACHABLE();
}

} // namespace

SystemAudioCaptureError::SystemAudioCaptureError(Case errorCase)
    : LocalizedError(description(errorCase))
    , m_case(errorCase)
{
}

} // namespace lumaphone
