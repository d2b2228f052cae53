#include "capture/SystemAudioCaptureError.h"

#include "support/program/TestProgram.h"

#include <QTest>

namespace systemaudiocaptureerrortest {

using namespace lumaphone;

using Case = SystemAudioCaptureError::Case;

class SystemAudioCaptureErrorTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCaseHasItsText_data()
    {
        QTest::addColumn<int>("errorCase");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, Case errorCase, const char *text) {
            QTest::newRow(name) << static_cast<int>(errorCase) << QString::fromUtf8(text);
        };
        row("noDisplay", Case::noDisplay, "找不到可擷取的顯示器。");
        row("screenAudioPermissionDenied", Case::screenAudioPermissionDenied,
            "macOS 尚未允許 Lumaphone 使用螢幕與系統音訊錄製。請到系統設定 > 隱私權與安全性 > "
            "螢幕與系統音訊錄製，允許 Lumaphone 後重新開啟 App。");
        row("microphonePermissionDenied", Case::microphonePermissionDenied,
            "macOS 尚未允許 Lumaphone 使用麥克風。請到系統設定 > 隱私權與安全性 > 麥克風，允許 Lumaphone "
            "後重新開啟 App。");
        row("microphoneUnavailable", Case::microphoneUnavailable,
            "目前找不到可用的麥克風輸入。請確認外接麥克風已連接，並在系統設定選成目前輸入裝置。");
        row("speechPermissionDenied", Case::speechPermissionDenied,
            "請在系統設定允許 Lumaphone 使用語音辨識。");
        row("speechRecognizerUnavailable", Case::speechRecognizerUnavailable,
            "目前無法使用 Apple Speech 語音辨識。");
    }

    void everyCaseHasItsText()
    {
        QFETCH(const int, errorCase);
        QFETCH(const QString, text);
        const SystemAudioCaptureError error(static_cast<Case>(errorCase));
        QCOMPARE(error.errorDescription(), text);
        QVERIFY(error.errorCase() == static_cast<Case>(errorCase));
    }
};

LUMAPHONE_TEST(SystemAudioCaptureErrorTest)

} // namespace systemaudiocaptureerrortest

#include "SystemAudioCaptureErrorTest.moc"
