#include "storage/FloatingCaptionDisplayMode.h"
#include "storage/FloatingCaptionOrder.h"
#include "storage/FloatingCaptionTheme.h"
#include "storage/LumaphoneAudioInputSource.h"
#include "storage/LumaphoneProcessingMode.h"
#include "support/program/TestProgram.h"

#include <QTest>

namespace choicestest {

using namespace lumaphone;

namespace {

struct Case
{
    const char *raw;
    const char *title;
};

/// Whether `all` are exactly `wanted`, in that order, and every raw value leads back to its case.
template<typename Cases, typename FromRaw>
void compareCases(const Cases &all, FromRaw fromRaw, std::initializer_list<Case> wanted)
{
    QCOMPARE(all.size(), wanted.size());
    auto expected = wanted.begin();
    for (const auto value : all) {
        QCOMPARE(rawValue(value), QString::fromUtf8(expected->raw));
        QCOMPARE(title(value), QString::fromUtf8(expected->title));
        QVERIFY(fromRaw(rawValue(value)) == value);
        QVERIFY(!fromRaw(rawValue(value).toUpper()));
        ++expected;
    }
    QVERIFY(!fromRaw(QString()));
}

} // namespace

class ChoicesTest : public QObject
{
    Q_OBJECT

private slots:
    void processingModes();
    void audioInputSources();
    void captionThemes();
    void captionDisplayModes();
    void captionOrders();
};

void ChoicesTest::processingModes()
{
    compareCases(allLumaphoneProcessingModes, lumaphoneProcessingMode,
        {{"appleMode", "Apple Mode"}, {"customAPI", "自定義 API"}});
}

void ChoicesTest::audioInputSources()
{
    compareCases(allLumaphoneAudioInputSources, lumaphoneAudioInputSource,
        {{"systemAudio", "系統音訊"}, {"microphone", "麥克風"}});
    QCOMPARE(symbolName(LumaphoneAudioInputSource::systemAudio), QStringLiteral("speaker.wave.2.fill"));
    QCOMPARE(symbolName(LumaphoneAudioInputSource::microphone), QStringLiteral("mic.fill"));
}

void ChoicesTest::captionThemes()
{
    compareCases(allFloatingCaptionThemes, floatingCaptionTheme,
        {{"dark", "深色"}, {"light", "淺色"}, {"glass", "玻璃"}});
}

void ChoicesTest::captionDisplayModes()
{
    compareCases(allFloatingCaptionDisplayModes, floatingCaptionDisplayMode,
        {{"bilingual", "雙語"}, {"translationOnly", "只顯示譯文"}, {"sourceOnly", "只顯示原文"}});
}

void ChoicesTest::captionOrders()
{
    compareCases(allFloatingCaptionOrders, floatingCaptionOrder,
        {{"sourceFirst", "原文在上"}, {"translationFirst", "譯文在上"}});
}

LUMAPHONE_TEST(ChoicesTest)

} // namespace choicestest

#include "ChoicesTest.moc"
