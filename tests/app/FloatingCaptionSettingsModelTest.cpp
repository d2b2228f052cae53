#include "app/inspector/FloatingCaptionSettingsModel.h"

#include "app/OffscreenTest.h"
#include "storage/LumaphoneSettings.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"

#include <QFontDatabase>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace floatingcaptionsettingsmodeltest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

struct Fixture
{
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    FloatingCaptionSettingsModel model {settings};
};

QStringList titles(const QVariantList &choices)
{
    QStringList list;
    for (const QVariant &choice : choices) {
        list.append(choice.toMap().value("title").toString());
    }
    return list;
}

bool offers(const QVariantList &choices, const QString &value)
{
    return std::any_of(choices.begin(), choices.end(),
        [&](const QVariant &choice) { return choice.toMap().value("value") == value; });
}

} // namespace

class FloatingCaptionSettingsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void theChoicesHaveTheirTitles()
    {
        const Fixture f;
        QCOMPARE(titles(f.model.lineCounts()),
            QStringList(
                {"關閉", "最新 1 句", "最新 2 句", "最新 3 句", "最新 4 句", "最新 5 句", "最新 6 句"}));
        QCOMPARE(titles(f.model.orders()), QStringList({"原文在上", "譯文在上"}));
        QCOMPARE(titles(f.model.silences()),
            QStringList({"一直顯示", "5 秒後消失", "10 秒後消失", "30 秒後消失", "1 分鐘後消失"}));
        QCOMPARE(titles(f.model.fonts()).first(), QString("依語言選擇"));
        for (const QString &family : QFontDatabase::families()) {
            QCOMPARE(offers(f.model.fonts(), family), !QFontDatabase::isPrivateFamily(family));
        }
    }

    void theDefaultsAreTodaysPanel()
    {
        const Fixture f;
        QCOMPARE(f.model.lineCount(), QString("0"));
        QCOMPARE(f.model.order(), QString("sourceFirst"));
        QCOMPARE(f.model.font(), QString());
        QCOMPARE(f.model.silence(), QString("0"));
        QCOMPARE(f.model.lineSpacingText(), QString("1.0 倍"));
        QCOMPARE(f.model.lineWidthText(), QString("100%"));
    }

    void aChoiceReachesTheSettings()
    {
        Fixture f;
        f.model.setLineCount("4");
        f.model.setOrder("translationFirst");
        f.model.setOrder("sideways");
        f.model.setFont("DejaVu Serif");
        f.model.setSilence("30");
        f.model.setLineSpacing(0.8 + 4 * 0.1);
        f.model.setLineWidth(0.3 + 6 * 0.05);
        QCOMPARE(f.settings.captionLines(), 4.0);
        QCOMPARE(f.settings.captionOrder(), FloatingCaptionOrder::translationFirst);
        QCOMPARE(f.settings.captionFont(), QString("DejaVu Serif"));
        QCOMPARE(f.settings.captionSilence(), 30.0);
        QVERIFY(f.defaults.object("lumaphone.caption.lineSpacing") == DefaultsValue(1.2));
        QVERIFY(f.defaults.object("lumaphone.caption.lineWidth") == DefaultsValue(0.6));
        QVERIFY(f.model.previewReader()->isOn());
    }

    void aChoiceMadeElsewhereIsTold()
    {
        Fixture f;
        using Model = FloatingCaptionSettingsModel;
        QSignalSpy fonts(&f.model, &Model::fontChanged);
        QSignalSpy silences(&f.model, &Model::silenceChanged);
        f.settings.setCaptionFont("A font of another machine");
        f.settings.setCaptionSilence(7.5);
        QCOMPARE(fonts.count(), 1);
        QCOMPARE(silences.count(), 1);
        QVERIFY(offers(f.model.fonts(), "A font of another machine"));
        QCOMPARE(f.model.silence(), QString("7.5"));
        QCOMPARE(titles(f.model.silences()).last(), QString("7.5 秒後消失"));
        f.settings.setCaptionLines(99);
        QCOMPARE(f.model.lineCount(), QString("6"));
    }
};

LUMAPHONE_OFFSCREEN_TEST(FloatingCaptionSettingsModelTest)

} // namespace floatingcaptionsettingsmodeltest

#include "FloatingCaptionSettingsModelTest.moc"
