#include "storage/LumaphoneSettings.h"

#include "base/Text.h"
#include "storage/SettingKeys.h"
#include "translation/provider/ProviderAddress.h"

#include <type_traits>
#include <utility>

namespace lumaphone {

namespace {

const auto keychainService = QStringLiteral("dev.lumaphone.provider");

/// The stored case, or `fallback` when there is none or `fromRawValue` does not know it.
template<typename Enum>
Enum stored(const DefaultsStore &defaults, const QString &key,
    std::optional<Enum> (*fromRawValue)(const QString &), Enum fallback)
{
    const std::optional<QString> raw = defaults.string(key);
    return raw ? fromRawValue(*raw).value_or(fallback) : fallback;
}

template<typename Value> DefaultsValue storedForm(const Value &value)
{
    if constexpr (std::is_enum_v<Value>) {
        return rawValue(value);
    } else {
        return value;
    }
}

} // namespace

// The members are declared, and therefore read, in the order in which the store is asked for them.
LumaphoneSettings::LumaphoneSettings(
    DefaultsStore &defaults, KeychainServices &keychainServices, KeychainRunner runKeychain, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_sourceLanguage(stored(defaults, settingkeys::sourceLanguage, speechLanguageFromRawValue,
          AppleSystemSpeechLanguage::automatic))
    , m_audioInputSource(stored(defaults, settingkeys::audioInputSource, lumaphoneAudioInputSource,
          LumaphoneAudioInputSource::systemAudio))
    , m_processingMode(stored(
          defaults, settingkeys::processingMode, lumaphoneProcessingMode, LumaphoneProcessingMode::appleMode))
    , m_captionFontSize(defaults.number(settingkeys::captionFontSize).value_or(34.0))
    , m_captionOpacity(defaults.number(settingkeys::captionOpacity).value_or(0.3))
    , m_captionTheme(
          stored(defaults, settingkeys::captionTheme, floatingCaptionTheme, FloatingCaptionTheme::dark))
    , m_captionDisplayMode(stored(defaults, settingkeys::captionDisplayMode, floatingCaptionDisplayMode,
          FloatingCaptionDisplayMode::bilingual))
    , m_captionOrder(stored(
          defaults, settingkeys::captionOrder, floatingCaptionOrder, FloatingCaptionOrder::sourceFirst))
    , m_captionFont(defaults.string(settingkeys::captionFont).value_or(QString()))
    , m_captionLineSpacing(defaults.number(settingkeys::captionLineSpacing).value_or(1.0))
    , m_captionLineWidth(defaults.number(settingkeys::captionLineWidth).value_or(1.0))
    , m_captionLines(defaults.number(settingkeys::captionLines).value_or(0.0))
    , m_captionSilence(defaults.number(settingkeys::captionSilence).value_or(0.0))
    , m_providerBaseURL(defaults.string(settingkeys::providerBaseURL).value_or(defaultProviderBaseURL()))
    , m_providerModel(defaults.string(settingkeys::providerModel).value_or(QStringLiteral("gpt-4o-mini")))
    , m_providerKey(defaults, LumaphoneKeychain(keychainServices, keychainService), std::move(runKeychain),
          providerAddress(text::trimmed(m_providerBaseURL)))
{
    const auto tellIfNew = [this, hadKey = hasProviderAPIKey()]() mutable {
        if (std::exchange(hadKey, hasProviderAPIKey()) != hasProviderAPIKey()) {
            emit hasProviderAPIKeyChanged();
        }
    };
    connect(&m_providerKey, &ProviderKeyStore::changed, this, tellIfNew);
}

QString LumaphoneSettings::defaultProviderBaseURL()
{
    return QStringLiteral("https://api.openai.com/v1");
}

template<typename Value>
void LumaphoneSettings::set(
    Value &member, const Value &value, const QString &key, void (LumaphoneSettings::*changed)())
{
    const bool isNew = member != value;
    member = value;
    m_defaults.setObject(key, storedForm(value));
    if (isNew) {
        emit(this->*changed)();
    }
}

void LumaphoneSettings::setSourceLanguage(AppleSystemSpeechLanguage language)
{
    set(m_sourceLanguage, language, settingkeys::sourceLanguage, &LumaphoneSettings::sourceLanguageChanged);
}

void LumaphoneSettings::setAudioInputSource(LumaphoneAudioInputSource source)
{
    set(m_audioInputSource, source, settingkeys::audioInputSource,
        &LumaphoneSettings::audioInputSourceChanged);
}

void LumaphoneSettings::setProcessingMode(LumaphoneProcessingMode mode)
{
    set(m_processingMode, mode, settingkeys::processingMode, &LumaphoneSettings::processingModeChanged);
}

void LumaphoneSettings::setCaptionFontSize(double points)
{
    set(m_captionFontSize, points, settingkeys::captionFontSize, &LumaphoneSettings::captionFontSizeChanged);
}

void LumaphoneSettings::setCaptionOpacity(double opacity)
{
    set(m_captionOpacity, opacity, settingkeys::captionOpacity, &LumaphoneSettings::captionOpacityChanged);
}

void LumaphoneSettings::setCaptionTheme(FloatingCaptionTheme theme)
{
    set(m_captionTheme, theme, settingkeys::captionTheme, &LumaphoneSettings::captionThemeChanged);
}

void LumaphoneSettings::setCaptionDisplayMode(FloatingCaptionDisplayMode mode)
{
    set(m_captionDisplayMode, mode, settingkeys::captionDisplayMode,
        &LumaphoneSettings::captionDisplayModeChanged);
}

void LumaphoneSettings::setCaptionOrder(FloatingCaptionOrder order)
{
    set(m_captionOrder, order, settingkeys::captionOrder, &LumaphoneSettings::captionOrderChanged);
}

void LumaphoneSettings::setCaptionFont(const QString &family)
{
    set(m_captionFont, family, settingkeys::captionFont, &LumaphoneSettings::captionFontChanged);
}

void LumaphoneSettings::setCaptionLineSpacing(double spacing)
{
    set(m_captionLineSpacing, spacing, settingkeys::captionLineSpacing,
        &LumaphoneSettings::captionLineSpacingChanged);
}

void LumaphoneSettings::setCaptionLineWidth(double share)
{
    set(m_captionLineWidth, share, settingkeys::captionLineWidth,
        &LumaphoneSettings::captionLineWidthChanged);
}

void LumaphoneSettings::setCaptionLines(double lines)
{
    set(m_captionLines, lines, settingkeys::captionLines, &LumaphoneSettings::captionLinesChanged);
}

void LumaphoneSettings::setCaptionSilence(double seconds)
{
    set(m_captionSilence, seconds, settingkeys::captionSilence, &LumaphoneSettings::captionSilenceChanged);
}

void LumaphoneSettings::setProviderBaseURL(const QString &url)
{
    // First, so that whoever is told of the address finds the key to be of another.
    m_providerKey.setConfiguredAddress(providerAddress(text::trimmed(url)));
    set(m_providerBaseURL, url, settingkeys::providerBaseURL, &LumaphoneSettings::providerBaseURLChanged);
}

void LumaphoneSettings::setProviderModel(const QString &model)
{
    set(m_providerModel, model, settingkeys::providerModel, &LumaphoneSettings::providerModelChanged);
}

bool LumaphoneSettings::isProviderAPIKeyForEndpoint() const
{
    return m_providerKey.address() == m_providerKey.configuredAddress();
}

OpenAICompatibleProviderConfiguration LumaphoneSettings::providerConfiguration() const
{
    OpenAICompatibleProviderConfiguration configuration = providerEndpoint();
    const AddressedText key = m_providerKey.readNow();
    if (key.address == providerAddress(configuration.baseURL)) {
        configuration.apiKey = key.text;
    }
    return configuration;
}

OpenAICompatibleProviderConfiguration LumaphoneSettings::providerEndpoint() const
{
    return {text::trimmed(m_providerBaseURL), {}, text::trimmed(m_providerModel)};
}

void LumaphoneSettings::saveProviderAPIKey(const QString &key)
{
    m_providerKey.save(text::trimmed(key));
}

} // namespace lumaphone
