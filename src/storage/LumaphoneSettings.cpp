#include "storage/LumaphoneSettings.h"

#include "base/Text.h"

#include <utility>

namespace lumaphone {

namespace {

namespace keys {
const auto sourceLanguage = QStringLiteral("lumaphone.sourceLanguage");
const auto audioInputSource = QStringLiteral("lumaphone.audioInputSource");
const auto processingMode = QStringLiteral("lumaphone.processingMode");
const auto captionFontSize = QStringLiteral("lumaphone.caption.fontSize");
const auto captionOpacity = QStringLiteral("lumaphone.caption.opacity");
const auto captionTheme = QStringLiteral("lumaphone.caption.theme");
const auto captionDisplayMode = QStringLiteral("lumaphone.caption.displayMode");
const auto providerBaseURL = QStringLiteral("lumaphone.provider.baseURL");
const auto providerModel = QStringLiteral("lumaphone.provider.model");
} // namespace keys

const auto keychainService = QStringLiteral("dev.lumaphone.provider");
const auto apiKeyAccount = QStringLiteral("lumaphone.provider.apiKey");

/// The stored case, or `fallback` when there is none or `fromRawValue` does not know it.
template<typename Enum>
Enum stored(const DefaultsStore &defaults, const QString &key,
    std::optional<Enum> (*fromRawValue)(const QString &), Enum fallback)
{
    const std::optional<QString> raw = defaults.string(key);
    return raw ? fromRawValue(*raw).value_or(fallback) : fallback;
}

} // namespace

// The members are declared, and therefore read, in the order in which the store is asked for them.
LumaphoneSettings::LumaphoneSettings(
    DefaultsStore &defaults, KeychainServices &keychainServices, QObject *parent)
    : QObject(parent)
    , m_defaults(defaults)
    , m_keychain(keychainServices, keychainService)
    , m_sourceLanguage(stored(
          defaults, keys::sourceLanguage, speechLanguageFromRawValue, AppleSystemSpeechLanguage::automatic))
    , m_audioInputSource(stored(defaults, keys::audioInputSource, lumaphoneAudioInputSource,
          LumaphoneAudioInputSource::systemAudio))
    , m_processingMode(
          stored(defaults, keys::processingMode, lumaphoneProcessingMode, LumaphoneProcessingMode::appleMode))
    , m_captionFontSize(defaults.number(keys::captionFontSize).value_or(34.0))
    , m_captionOpacity(defaults.number(keys::captionOpacity).value_or(0.3))
    , m_captionTheme(stored(defaults, keys::captionTheme, floatingCaptionTheme, FloatingCaptionTheme::dark))
    , m_captionDisplayMode(stored(defaults, keys::captionDisplayMode, floatingCaptionDisplayMode,
          FloatingCaptionDisplayMode::bilingual))
    , m_providerBaseURL(defaults.string(keys::providerBaseURL).value_or(defaultProviderBaseURL()))
    , m_providerModel(defaults.string(keys::providerModel).value_or(QStringLiteral("gpt-4o-mini")))
    , m_hasProviderAPIKey(m_keychain.holds(apiKeyAccount))
{
}

QString LumaphoneSettings::defaultProviderBaseURL()
{
    return QStringLiteral("https://api.openai.com/v1");
}

template<typename Value>
void LumaphoneSettings::set(Value &member, const Value &value, const QString &key,
    const DefaultsValue &stored, void (LumaphoneSettings::*changed)())
{
    const bool isNew = member != value;
    member = value;
    m_defaults.setObject(key, stored);
    if (isNew) {
        emit(this->*changed)();
    }
}

void LumaphoneSettings::setSourceLanguage(AppleSystemSpeechLanguage language)
{
    set(m_sourceLanguage, language, keys::sourceLanguage, rawValue(language),
        &LumaphoneSettings::sourceLanguageChanged);
}

void LumaphoneSettings::setAudioInputSource(LumaphoneAudioInputSource source)
{
    set(m_audioInputSource, source, keys::audioInputSource, rawValue(source),
        &LumaphoneSettings::audioInputSourceChanged);
}

void LumaphoneSettings::setProcessingMode(LumaphoneProcessingMode mode)
{
    set(m_processingMode, mode, keys::processingMode, rawValue(mode),
        &LumaphoneSettings::processingModeChanged);
}

void LumaphoneSettings::setCaptionFontSize(double points)
{
    set(m_captionFontSize, points, keys::captionFontSize, points, &LumaphoneSettings::captionFontSizeChanged);
}

void LumaphoneSettings::setCaptionOpacity(double opacity)
{
    set(m_captionOpacity, opacity, keys::captionOpacity, opacity, &LumaphoneSettings::captionOpacityChanged);
}

void LumaphoneSettings::setCaptionTheme(FloatingCaptionTheme theme)
{
    set(m_captionTheme, theme, keys::captionTheme, rawValue(theme), &LumaphoneSettings::captionThemeChanged);
}

void LumaphoneSettings::setCaptionDisplayMode(FloatingCaptionDisplayMode mode)
{
    set(m_captionDisplayMode, mode, keys::captionDisplayMode, rawValue(mode),
        &LumaphoneSettings::captionDisplayModeChanged);
}

void LumaphoneSettings::setProviderBaseURL(const QString &url)
{
    set(m_providerBaseURL, url, keys::providerBaseURL, url, &LumaphoneSettings::providerBaseURLChanged);
}

void LumaphoneSettings::setProviderModel(const QString &model)
{
    set(m_providerModel, model, keys::providerModel, model, &LumaphoneSettings::providerModelChanged);
}

OpenAICompatibleProviderConfiguration LumaphoneSettings::providerConfiguration() const
{
    OpenAICompatibleProviderConfiguration configuration = providerEndpoint();
    configuration.apiKey = readProviderAPIKey(m_keychain);
    return configuration;
}

OpenAICompatibleProviderConfiguration LumaphoneSettings::providerEndpoint() const
{
    return {text::trimmed(m_providerBaseURL), {}, text::trimmed(m_providerModel)};
}

QString LumaphoneSettings::readProviderAPIKey(const LumaphoneKeychain &keychain)
{
    return keychain.read(apiKeyAccount).value_or(QString());
}

void LumaphoneSettings::saveProviderAPIKey(const QString &key, const KeychainRunner &run)
{
    const QString trimmedKey = text::trimmed(key);
    const bool hasKey = !trimmedKey.isEmpty();
    const auto noteEnd = [this] {
        --m_keySaves;
        emit providerAPIKeySaved();
    };
    const auto work = [this, keychain = m_keychain, trimmedKey, noteEnd] {
        if (trimmedKey.isEmpty()) {
            keychain.remove(apiKeyAccount);
        } else {
            keychain.save(trimmedKey, apiKeyAccount);
        }
        QMetaObject::invokeMethod(this, noteEnd);
    };
    ++m_keySaves;
    if (run) {
        run(work);
    } else {
        work();
    }
    if (std::exchange(m_hasProviderAPIKey, hasKey) != hasKey) {
        emit hasProviderAPIKeyChanged();
    }
}

} // namespace lumaphone
