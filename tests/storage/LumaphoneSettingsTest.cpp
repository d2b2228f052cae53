#include "storage/LumaphoneSettings.h"

#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/program/TestProgram.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace lumaphonesettingstest {

using namespace lumaphone;
using namespace lumaphone::test;

namespace {

const KeychainQuery keyQuery {
    QStringLiteral("dev.lumaphone.provider"), QStringLiteral("lumaphone.provider.apiKey")};

/// A settings object over a store and a keychain that the test can look into.
struct Fixture
{
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    std::unique_ptr<LumaphoneSettings> settings;

    LumaphoneSettings &make()
    {
        settings = std::make_unique<LumaphoneSettings>(defaults, keychain);
        return *settings;
    }
};

DefaultsValue textValue(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

class LumaphoneSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void aFreshStoreYieldsTheDefaults();
    void everyKeyIsReadOnceInOrder();
    void aStoredTextChoosesTheCaseWithThatRawValue_data();
    void aStoredTextChoosesTheCaseWithThatRawValue();
    void onlyAStoredNumberIsANumber_data();
    void onlyAStoredNumberIsANumber();
    void aStoredProviderTextIsTakenAsItIs_data();
    void aStoredProviderTextIsTakenAsItIs();
    void readingLeavesSenselessValuesWhereTheyAre();
    void everySetIsStoredAtOnceUnderItsKey();
    void numbersAreStoredAsTheyAreSet();
    void anotherObjectReadsWhatWasSet();
    void settingTheSameValueStoresItWithoutANotification();
    void everyPropertyNotifiesOnceAfterItsChange();
    void theProviderConfigurationIsTrimmedButItsKeyIsNot();
    void theKeychainIsReadForEveryConfiguration();
    void anEmptyKeyCountsAsPresent();
    void aKeyThatIsNotTextCountsAsMissing();
    void aKeyIsSavedWithoutTheBlanksAroundIt();
    void savingOverAKeyUpdatesItInPlace();
    void aBlankKeyDeletesTheItem_data();
    void aBlankKeyDeletesTheItem();
    void theKeyFlagFollowsTheRequestWhenTheKeychainFails();
    void aFailedUpdateAddsNothing();
    void aKeyIsKeptWithTheServerThatIsConfigured();
    void aKeyOfAnotherServerIsNotPartOfTheConfiguration();
    void aKeyWithoutAServerBelongsToTheOneConfiguredThen_data();
    void aKeyWithoutAServerBelongsToTheOneConfiguredThen();
    void theKeyNeverReachesTheDefaultsStore();
};

void LumaphoneSettingsTest::aFreshStoreYieldsTheDefaults()
{
    Fixture fixture;
    const LumaphoneSettings &settings = fixture.make();
    QCOMPARE(settings.sourceLanguage(), AppleSystemSpeechLanguage::automatic);
    QCOMPARE(settings.audioInputSource(), LumaphoneAudioInputSource::systemAudio);
    QCOMPARE(settings.processingMode(), LumaphoneProcessingMode::appleMode);
    QCOMPARE(settings.captionFontSize(), 34.0);
    QCOMPARE(settings.captionOpacity(), 0.3);
    QCOMPARE(settings.captionTheme(), FloatingCaptionTheme::dark);
    QCOMPARE(settings.captionDisplayMode(), FloatingCaptionDisplayMode::bilingual);
    QCOMPARE(settings.captionOrder(), FloatingCaptionOrder::sourceFirst);
    QCOMPARE(settings.captionFont(), QString());
    QCOMPARE(settings.captionLineSpacing(), 1.0);
    QCOMPARE(settings.captionLineWidth(), 1.0);
    QCOMPARE(settings.captionLines(), 0.0);
    QCOMPARE(settings.captionSilence(), 0.0);
    QCOMPARE(settings.providerBaseURL(), QStringLiteral("https://api.openai.com/v1"));
    QCOMPARE(settings.providerModel(), QStringLiteral("gpt-4o-mini"));
    QCOMPARE(settings.hasProviderAPIKey(), false);
    QVERIFY(fixture.defaults.writes.isEmpty());
}

void LumaphoneSettingsTest::everyKeyIsReadOnceInOrder()
{
    Fixture fixture;
    fixture.make();
    const QStringList wanted {
        QStringLiteral("lumaphone.sourceLanguage"),
        QStringLiteral("lumaphone.audioInputSource"),
        QStringLiteral("lumaphone.processingMode"),
        QStringLiteral("lumaphone.caption.fontSize"),
        QStringLiteral("lumaphone.caption.opacity"),
        QStringLiteral("lumaphone.caption.theme"),
        QStringLiteral("lumaphone.caption.displayMode"),
        QStringLiteral("lumaphone.caption.order"),
        QStringLiteral("lumaphone.caption.font"),
        QStringLiteral("lumaphone.caption.lineSpacing"),
        QStringLiteral("lumaphone.caption.lineWidth"),
        QStringLiteral("lumaphone.caption.lines"),
        QStringLiteral("lumaphone.caption.silence"),
        QStringLiteral("lumaphone.provider.baseURL"),
        QStringLiteral("lumaphone.provider.model"),
    };
    QCOMPARE(fixture.defaults.reads, wanted);
    QCOMPARE(fixture.keychain.calls, QStringList {QStringLiteral("copyMatching")});
}

void LumaphoneSettingsTest::aStoredTextChoosesTheCaseWithThatRawValue_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("property");
    QTest::addColumn<DefaultsValue>("stored");
    QTest::addColumn<int>("wanted");
    const auto row = [](const char *name, const char *key, const char *property, const DefaultsValue &stored,
                         auto wanted) {
        QTest::newRow(name) << QString::fromUtf8(key) << QString::fromUtf8(property) << stored
                            << static_cast<int>(wanted);
    };
    const char *language = "lumaphone.sourceLanguage";
    for (const AppleSystemSpeechLanguage wanted : allSpeechLanguages()) {
        row(qPrintable(rawValue(wanted)), language, "sourceLanguage", rawValue(wanted), wanted);
    }
    row("unknown language", language, "sourceLanguage", textValue("french"),
        AppleSystemSpeechLanguage::automatic);
    row("number as language", language, "sourceLanguage", std::int64_t {1},
        AppleSystemSpeechLanguage::automatic);

    const char *input = "lumaphone.audioInputSource";
    row("microphone", input, "audioInputSource", textValue("microphone"),
        LumaphoneAudioInputSource::microphone);
    row("systemAudio", input, "audioInputSource", textValue("systemAudio"),
        LumaphoneAudioInputSource::systemAudio);
    row("capital Microphone", input, "audioInputSource", textValue("Microphone"),
        LumaphoneAudioInputSource::systemAudio);
    row("microphone with a blank", input, "audioInputSource", textValue("microphone "),
        LumaphoneAudioInputSource::systemAudio);
    row("true as input", input, "audioInputSource", true, LumaphoneAudioInputSource::systemAudio);

    const char *mode = "lumaphone.processingMode";
    row("customAPI", mode, "processingMode", textValue("customAPI"), LumaphoneProcessingMode::customAPI);
    row("appleMode", mode, "processingMode", textValue("appleMode"), LumaphoneProcessingMode::appleMode);
    row("customapi", mode, "processingMode", textValue("customapi"), LumaphoneProcessingMode::appleMode);

    const char *theme = "lumaphone.caption.theme";
    for (const FloatingCaptionTheme wanted : allFloatingCaptionThemes) {
        row(qPrintable(rawValue(wanted)), theme, "captionTheme", rawValue(wanted), wanted);
    }
    row("unknown theme", theme, "captionTheme", textValue("sepia"), FloatingCaptionTheme::dark);
    row("empty theme", theme, "captionTheme", textValue(""), FloatingCaptionTheme::dark);

    const char *display = "lumaphone.caption.displayMode";
    for (const FloatingCaptionDisplayMode wanted : allFloatingCaptionDisplayModes) {
        row(qPrintable(rawValue(wanted)), display, "captionDisplayMode", rawValue(wanted), wanted);
    }
    row("unknown display mode", display, "captionDisplayMode", textValue("translationonly"),
        FloatingCaptionDisplayMode::bilingual);
}

void LumaphoneSettingsTest::aStoredTextChoosesTheCaseWithThatRawValue()
{
    QFETCH(const QString, key);
    QFETCH(const QString, property);
    QFETCH(const DefaultsValue, stored);
    QFETCH(const int, wanted);
    Fixture fixture;
    fixture.defaults.values[key] = stored;
    const LumaphoneSettings &settings = fixture.make();
    const std::map<QString, int> chosen {
        {QStringLiteral("sourceLanguage"), static_cast<int>(settings.sourceLanguage())},
        {QStringLiteral("audioInputSource"), static_cast<int>(settings.audioInputSource())},
        {QStringLiteral("processingMode"), static_cast<int>(settings.processingMode())},
        {QStringLiteral("captionTheme"), static_cast<int>(settings.captionTheme())},
        {QStringLiteral("captionDisplayMode"), static_cast<int>(settings.captionDisplayMode())},
    };
    QCOMPARE(chosen.at(property), wanted);
}

void LumaphoneSettingsTest::onlyAStoredNumberIsANumber_data()
{
    QTest::addColumn<DefaultsValue>("stored");
    QTest::addColumn<double>("fontSize");
    QTest::addColumn<double>("opacity");
    QTest::newRow("double") << DefaultsValue(0.5) << 0.5 << 0.5;
    QTest::newRow("integer") << DefaultsValue(std::int64_t {40}) << 40.0 << 40.0;
    QTest::newRow("outside every slider") << DefaultsValue(-1e9) << -1e9 << -1e9;
    QTest::newRow("zero") << DefaultsValue(0.0) << 0.0 << 0.0;
    QTest::newRow("text of a number") << textValue("40") << 34.0 << 0.3;
    QTest::newRow("truth") << DefaultsValue(true) << 34.0 << 0.3;
}

void LumaphoneSettingsTest::onlyAStoredNumberIsANumber()
{
    QFETCH(const DefaultsValue, stored);
    QFETCH(const double, fontSize);
    QFETCH(const double, opacity);
    Fixture fixture;
    fixture.defaults.values[QStringLiteral("lumaphone.caption.fontSize")] = stored;
    fixture.defaults.values[QStringLiteral("lumaphone.caption.opacity")] = stored;
    const LumaphoneSettings &settings = fixture.make();
    QCOMPARE(settings.captionFontSize(), fontSize);
    QCOMPARE(settings.captionOpacity(), opacity);
}

void LumaphoneSettingsTest::aStoredProviderTextIsTakenAsItIs_data()
{
    QTest::addColumn<DefaultsValue>("stored");
    QTest::addColumn<bool>("isText");
    QTest::newRow("text") << textValue("anything at all") << true;
    QTest::newRow("empty") << textValue("") << true;
    QTest::newRow("blanks") << textValue("  \n") << true;
    QTest::newRow("number") << DefaultsValue(1.0) << false;
}

void LumaphoneSettingsTest::aStoredProviderTextIsTakenAsItIs()
{
    QFETCH(const DefaultsValue, stored);
    QFETCH(const bool, isText);
    Fixture fixture;
    fixture.defaults.values[QStringLiteral("lumaphone.provider.baseURL")] = stored;
    fixture.defaults.values[QStringLiteral("lumaphone.provider.model")] = stored;
    const LumaphoneSettings &settings = fixture.make();
    const QString url = isText ? std::get<QString>(stored) : QStringLiteral("https://api.openai.com/v1");
    QCOMPARE(settings.providerBaseURL(), url);
    QCOMPARE(settings.providerModel(), isText ? std::get<QString>(stored) : QStringLiteral("gpt-4o-mini"));
}

void LumaphoneSettingsTest::readingLeavesSenselessValuesWhereTheyAre()
{
    Fixture fixture;
    const auto key = QStringLiteral("lumaphone.caption.fontSize");
    fixture.defaults.values[key] = textValue("40");
    LumaphoneSettings &settings = fixture.make();
    QCOMPARE(std::get<QString>(fixture.defaults.values.at(key)), QStringLiteral("40"));
    settings.setCaptionFontSize(41);
    QCOMPARE(std::get<double>(fixture.defaults.values.at(key)), 41.0);
}

void LumaphoneSettingsTest::everySetIsStoredAtOnceUnderItsKey()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    settings.setSourceLanguage(AppleSystemSpeechLanguage::korean);
    settings.setAudioInputSource(LumaphoneAudioInputSource::microphone);
    settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
    settings.setCaptionFontSize(50);
    settings.setCaptionOpacity(0.75);
    settings.setCaptionTheme(FloatingCaptionTheme::glass);
    settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::sourceOnly);
    settings.setCaptionOrder(FloatingCaptionOrder::translationFirst);
    settings.setCaptionFont(QStringLiteral("Some Font"));
    settings.setCaptionLineSpacing(1.5);
    settings.setCaptionLineWidth(0.6);
    settings.setCaptionLines(3);
    settings.setCaptionSilence(10);
    settings.setProviderBaseURL(QStringLiteral("  https://example.org/v1\n"));
    settings.setProviderModel(QString());
    const std::map<QString, DefaultsValue> wanted {
        {QStringLiteral("lumaphone.sourceLanguage"), textValue("korean")},
        {QStringLiteral("lumaphone.audioInputSource"), textValue("microphone")},
        {QStringLiteral("lumaphone.processingMode"), textValue("customAPI")},
        {QStringLiteral("lumaphone.caption.fontSize"), 50.0},
        {QStringLiteral("lumaphone.caption.opacity"), 0.75},
        {QStringLiteral("lumaphone.caption.theme"), textValue("glass")},
        {QStringLiteral("lumaphone.caption.displayMode"), textValue("sourceOnly")},
        {QStringLiteral("lumaphone.caption.order"), textValue("translationFirst")},
        {QStringLiteral("lumaphone.caption.font"), textValue("Some Font")},
        {QStringLiteral("lumaphone.caption.lineSpacing"), 1.5},
        {QStringLiteral("lumaphone.caption.lineWidth"), 0.6},
        {QStringLiteral("lumaphone.caption.lines"), 3.0},
        {QStringLiteral("lumaphone.caption.silence"), 10.0},
        {QStringLiteral("lumaphone.provider.baseURL"), textValue("  https://example.org/v1\n")},
        {QStringLiteral("lumaphone.provider.model"), textValue("")},
    };
    QVERIFY(fixture.defaults.values == wanted);
}

void LumaphoneSettingsTest::numbersAreStoredAsTheyAreSet()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    settings.setCaptionOpacity(7.5);
    settings.setCaptionFontSize(-3);
    QCOMPARE(settings.captionOpacity(), 7.5);
    QCOMPARE(settings.captionFontSize(), -3.0);
    QVERIFY(fixture.defaults.values.at(QStringLiteral("lumaphone.caption.opacity")) == DefaultsValue(7.5));
    QVERIFY(fixture.defaults.values.at(QStringLiteral("lumaphone.caption.fontSize")) == DefaultsValue(-3.0));
}

void LumaphoneSettingsTest::anotherObjectReadsWhatWasSet()
{
    Fixture fixture;
    fixture.make().setCaptionTheme(FloatingCaptionTheme::light);
    fixture.settings->setProviderModel(QStringLiteral("模型"));
    const LumaphoneSettings again(fixture.defaults, fixture.keychain);
    QCOMPARE(again.captionTheme(), FloatingCaptionTheme::light);
    QCOMPARE(again.providerModel(), QStringLiteral("模型"));
}

void LumaphoneSettingsTest::settingTheSameValueStoresItWithoutANotification()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    QSignalSpy spy(&settings, &LumaphoneSettings::captionThemeChanged);
    settings.setCaptionTheme(FloatingCaptionTheme::dark);
    settings.setCaptionTheme(FloatingCaptionTheme::dark);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(fixture.defaults.writes.size(), 2);
    QVERIFY(fixture.defaults.values.at(QStringLiteral("lumaphone.caption.theme")) == textValue("dark"));
}

void LumaphoneSettingsTest::everyPropertyNotifiesOnceAfterItsChange()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    QStringList seen;
    const auto watch = [&](auto signal, auto value) {
        connect(&settings, signal, this, [&seen, value] { seen.append(value()); });
    };
    watch(&LumaphoneSettings::sourceLanguageChanged, [&] { return rawValue(settings.sourceLanguage()); });
    watch(&LumaphoneSettings::audioInputSourceChanged, [&] { return rawValue(settings.audioInputSource()); });
    watch(&LumaphoneSettings::processingModeChanged, [&] { return rawValue(settings.processingMode()); });
    watch(&LumaphoneSettings::captionFontSizeChanged,
        [&] { return QString::number(settings.captionFontSize()); });
    watch(&LumaphoneSettings::captionOpacityChanged,
        [&] { return QString::number(settings.captionOpacity()); });
    watch(&LumaphoneSettings::captionThemeChanged, [&] { return rawValue(settings.captionTheme()); });
    watch(&LumaphoneSettings::captionDisplayModeChanged,
        [&] { return rawValue(settings.captionDisplayMode()); });
    watch(&LumaphoneSettings::captionOrderChanged, [&] { return rawValue(settings.captionOrder()); });
    watch(&LumaphoneSettings::captionFontChanged, [&] { return settings.captionFont(); });
    watch(&LumaphoneSettings::captionLineSpacingChanged,
        [&] { return QString::number(settings.captionLineSpacing()); });
    watch(&LumaphoneSettings::captionLineWidthChanged,
        [&] { return QString::number(settings.captionLineWidth()); });
    watch(&LumaphoneSettings::captionLinesChanged, [&] { return QString::number(settings.captionLines()); });
    watch(&LumaphoneSettings::captionSilenceChanged,
        [&] { return QString::number(settings.captionSilence()); });
    watch(&LumaphoneSettings::providerBaseURLChanged, [&] { return settings.providerBaseURL(); });
    watch(&LumaphoneSettings::providerModelChanged, [&] { return settings.providerModel(); });
    watch(&LumaphoneSettings::hasProviderAPIKeyChanged,
        [&] { return settings.hasProviderAPIKey() ? QStringLiteral("key") : QStringLiteral("no key"); });

    settings.setSourceLanguage(AppleSystemSpeechLanguage::english);
    settings.setAudioInputSource(LumaphoneAudioInputSource::microphone);
    settings.setProcessingMode(LumaphoneProcessingMode::customAPI);
    settings.setCaptionFontSize(20);
    settings.setCaptionOpacity(0.5);
    settings.setCaptionTheme(FloatingCaptionTheme::light);
    settings.setCaptionDisplayMode(FloatingCaptionDisplayMode::translationOnly);
    settings.setCaptionOrder(FloatingCaptionOrder::translationFirst);
    settings.setCaptionFont(QStringLiteral("f"));
    settings.setCaptionLineSpacing(1.5);
    settings.setCaptionLineWidth(0.6);
    settings.setCaptionLines(3);
    settings.setCaptionSilence(10);
    settings.setProviderBaseURL(QStringLiteral("u"));
    settings.setProviderModel(QStringLiteral("m"));
    settings.saveProviderAPIKey(QStringLiteral("k"));
    settings.saveProviderAPIKey(QStringLiteral("k2"));
    settings.saveProviderAPIKey(QString());
    const QStringList wanted {QStringLiteral("english"), QStringLiteral("microphone"),
        QStringLiteral("customAPI"), QStringLiteral("20"), QStringLiteral("0.5"), QStringLiteral("light"),
        QStringLiteral("translationOnly"), QStringLiteral("translationFirst"), QStringLiteral("f"),
        QStringLiteral("1.5"), QStringLiteral("0.6"), QStringLiteral("3"), QStringLiteral("10"),
        QStringLiteral("u"), QStringLiteral("m"), QStringLiteral("key"), QStringLiteral("no key")};
    QCOMPARE(seen, wanted);
}

void LumaphoneSettingsTest::theProviderConfigurationIsTrimmedButItsKeyIsNot()
{
    Fixture fixture;
    fixture.keychain.items.push_back({keyQuery, " secret \n", QStringLiteral("https://example.org")});
    LumaphoneSettings &settings = fixture.make();
    settings.setProviderBaseURL(QStringLiteral(" \t https://example.org/v1\n"));
    settings.setProviderModel(QStringLiteral("\u3000small model\r\n"));
    const OpenAICompatibleProviderConfiguration wanted {QStringLiteral("https://example.org/v1"),
        QStringLiteral(" secret \n"), QStringLiteral("small model")};
    QVERIFY(settings.providerConfiguration() == wanted);
    QCOMPARE(settings.providerBaseURL(), QStringLiteral(" \t https://example.org/v1\n"));
}

void LumaphoneSettingsTest::theKeychainIsReadForEveryConfiguration()
{
    Fixture fixture;
    const LumaphoneSettings &settings = fixture.make();
    QCOMPARE(settings.providerConfiguration().apiKey, QString());
    fixture.keychain.items.push_back({keyQuery, "elsewhere"});
    QCOMPARE(settings.providerConfiguration().apiKey, QStringLiteral("elsewhere"));
    QCOMPARE(settings.hasProviderAPIKey(), false);
    fixture.keychain.items.clear();
    QCOMPARE(settings.providerConfiguration().apiKey, QString());
}

void LumaphoneSettingsTest::anEmptyKeyCountsAsPresent()
{
    Fixture fixture;
    fixture.keychain.items.push_back({keyQuery, QByteArray()});
    QCOMPARE(fixture.make().hasProviderAPIKey(), true);
    QCOMPARE(fixture.settings->providerConfiguration().apiKey, QString());
}

void LumaphoneSettingsTest::aKeyThatIsNotTextCountsAsMissing()
{
    Fixture fixture;
    fixture.keychain.items.push_back({keyQuery, "\xff\xfe"});
    QCOMPARE(fixture.make().hasProviderAPIKey(), false);
    QCOMPARE(fixture.settings->providerConfiguration().apiKey, QString());
}

void LumaphoneSettingsTest::aKeyIsSavedWithoutTheBlanksAroundIt()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    settings.saveProviderAPIKey(QStringLiteral("\n  sk-é 鍵\t "));
    QCOMPARE(fixture.keychain.items.size(), std::size_t {1});
    QVERIFY(fixture.keychain.items.front().query == keyQuery);
    QCOMPARE(fixture.keychain.items.front().data, QByteArray("sk-é 鍵"));
    QCOMPARE(settings.hasProviderAPIKey(), true);
}

void LumaphoneSettingsTest::savingOverAKeyUpdatesItInPlace()
{
    Fixture fixture;
    fixture.keychain.items.push_back({keyQuery, "old"});
    LumaphoneSettings &settings = fixture.make();
    fixture.keychain.calls.clear();
    settings.saveProviderAPIKey(QStringLiteral("new"));
    QCOMPARE(fixture.keychain.calls, QStringList {QStringLiteral("update")});
    QCOMPARE(fixture.keychain.items.size(), std::size_t {1});
    QCOMPARE(fixture.keychain.items.front().data, QByteArray("new"));
}

void LumaphoneSettingsTest::aBlankKeyDeletesTheItem_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks") << QStringLiteral("  \t");
    QTest::newRow("line breaks and wide blanks") << QStringLiteral("\r\n\u3000\u2028");
}

void LumaphoneSettingsTest::aBlankKeyDeletesTheItem()
{
    QFETCH(const QString, key);
    Fixture fixture;
    fixture.keychain.items.push_back({keyQuery, "old"});
    LumaphoneSettings &settings = fixture.make();
    QCOMPARE(settings.hasProviderAPIKey(), true);
    settings.saveProviderAPIKey(key);
    QVERIFY(fixture.keychain.items.empty());
    QCOMPARE(settings.hasProviderAPIKey(), false);
}

void LumaphoneSettingsTest::theKeyFlagFollowsTheRequestWhenTheKeychainFails()
{
    Fixture fixture;
    fixture.keychain.items.push_back({keyQuery, "old"});
    LumaphoneSettings &settings = fixture.make();
    fixture.keychain.failure = KeychainStatus::other;
    settings.saveProviderAPIKey(QString());
    QCOMPARE(settings.hasProviderAPIKey(), false);
    settings.saveProviderAPIKey(QStringLiteral("new"));
    QCOMPARE(settings.hasProviderAPIKey(), true);
    QCOMPARE(settings.providerConfiguration().apiKey, QString());
    QCOMPARE(fixture.keychain.items.front().data, QByteArray("old"));
}

void LumaphoneSettingsTest::aFailedUpdateAddsNothing()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    fixture.keychain.calls.clear();
    fixture.keychain.failure = KeychainStatus::other;
    settings.saveProviderAPIKey(QStringLiteral("key"));
    QCOMPARE(fixture.keychain.calls, QStringList {QStringLiteral("update")});
    fixture.keychain.calls.clear();
    fixture.keychain.failure = KeychainStatus::itemNotFound;
    settings.saveProviderAPIKey(QStringLiteral("key"));
    QCOMPARE(fixture.keychain.calls, (QStringList {QStringLiteral("update"), QStringLiteral("add")}));
}

void LumaphoneSettingsTest::aKeyIsKeptWithTheServerThatIsConfigured()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    settings.setProviderBaseURL(QStringLiteral(" https://Example.org:443/v1 "));
    settings.saveProviderAPIKey(QStringLiteral("key"));
    QCOMPARE(fixture.keychain.items.front().address, QStringLiteral("https://example.org"));
    // One that no request can be sent to is nobody's, so that the next one is not given the key either.
    settings.setProviderBaseURL(QStringLiteral("example.org"));
    settings.saveProviderAPIKey(QStringLiteral("key"));
    QCOMPARE(fixture.keychain.items.front().address, QStringLiteral("-"));
    QVERIFY(!settings.isProviderAPIKeyForEndpoint());
}

void LumaphoneSettingsTest::aKeyOfAnotherServerIsNotPartOfTheConfiguration()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    settings.setProviderBaseURL(QStringLiteral("https://example.org/v1"));
    settings.saveProviderAPIKey(QStringLiteral("key"));
    for (const auto &[url, key] : {std::pair("https://example.org/v2", "key"),
             std::pair("http://example.org/v1", ""), std::pair("https://example.org:444/v1", ""),
             std::pair("https://other.org/v1", ""), std::pair("", "")}) {
        settings.setProviderBaseURL(QString::fromLatin1(url));
        QCOMPARE(settings.providerConfiguration().apiKey, QString::fromLatin1(key));
        QCOMPARE(settings.isProviderAPIKeyForEndpoint(), *key != '\0');
        QVERIFY(settings.hasProviderAPIKey());
    }
}

void LumaphoneSettingsTest::aKeyWithoutAServerBelongsToTheOneConfiguredThen_data()
{
    QTest::addColumn<bool>("isSeenAtFirst");
    QTest::newRow("the keychain is open from the beginning") << true;
    QTest::newRow("the keychain answers only after the address has changed") << false;
}

void LumaphoneSettingsTest::aKeyWithoutAServerBelongsToTheOneConfiguredThen()
{
    QFETCH(const bool, isSeenAtFirst);
    Fixture fixture;
    fixture.keychain.items.push_back({keyQuery, "old"});
    if (!isSeenAtFirst) {
        fixture.keychain.failure = KeychainStatus::other;
    }
    fixture.make().setProviderBaseURL(QStringLiteral("https://example.org/v1"));
    fixture.keychain.failure.reset();
    QCOMPARE(fixture.settings->providerConfiguration().apiKey, QString());
    QCOMPARE(fixture.make().providerConfiguration().apiKey, QString());
    // A second change does not make it the first one's.
    fixture.settings->setProviderBaseURL(QStringLiteral("https://third.org/v1"));
    QCOMPARE(fixture.make().providerConfiguration().apiKey, QString());
    fixture.settings->setProviderBaseURL(LumaphoneSettings::defaultProviderBaseURL());
    QCOMPARE(fixture.make().providerConfiguration().apiKey, QStringLiteral("old"));
}

void LumaphoneSettingsTest::theKeyNeverReachesTheDefaultsStore()
{
    Fixture fixture;
    LumaphoneSettings &settings = fixture.make();
    settings.saveProviderAPIKey(QStringLiteral("secret"));
    QCOMPARE(settings.providerConfiguration().apiKey, QStringLiteral("secret"));
    QVERIFY(fixture.defaults.writes.isEmpty());
}

LUMAPHONE_TEST(LumaphoneSettingsTest)

} // namespace lumaphonesettingstest

#include "LumaphoneSettingsTest.moc"
