#include "app/inspector/InspectorModel.h"

#include "app/inspector/ProviderTexts.h"
#include "base/Text.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "session/SystemAudioCaptureController.h"
#include "storage/LumaphoneSettings.h"
#include "translation/provider/ProviderCapabilities.h"

#include <QVariantMap>

#include <array>
#include <cmath>

namespace lumaphone {

namespace {

QVariantMap choice(const QString &value, const QString &title, const QString &symbol = {})
{
    return {{QStringLiteral("value"), value}, {QStringLiteral("title"), title},
        {QStringLiteral("symbol"), symbol}};
}

template<typename Cases> QVariantList choices(const Cases &cases)
{
    QVariantList list;
    for (const auto value : cases) {
        list.append(choice(rawValue(value), title(value)));
    }
    return list;
}

template<typename Languages> QVariantList languageChoices(const Languages &languages)
{
    QVariantList list;
    for (const AppleSystemSpeechLanguage language : languages) {
        list.append(choice(rawValue(language), displayName(language)));
    }
    return list;
}

/// The command bar has an order of its own.
constexpr std::array languagesOfTheInspector {AppleSystemSpeechLanguage::automatic,
    AppleSystemSpeechLanguage::english, AppleSystemSpeechLanguage::korean,
    AppleSystemSpeechLanguage::mandarin, AppleSystemSpeechLanguage::japanese};

/// None of what a provider can do depends on its key.
ProviderCapabilities capabilities(const LumaphoneSettings &settings)
{
    return ProviderCapabilities(settings.providerEndpoint());
}

} // namespace

InspectorModel::InspectorModel(SystemAudioCaptureController &controller, LumaphoneSettings &settings,
    const LumaphoneGlossaryStore &glossary, QObject *parent)
    : QObject(parent)
    , m_controller(controller)
    , m_settings(settings)
    , m_glossary(glossary)
    , m_captions(settings)
{
    using Controller = SystemAudioCaptureController;
    using Settings = LumaphoneSettings;
    using Self = InspectorModel;
    connect(&controller, &Controller::audioInputSourceChanged, this, &Self::audioInputSourceChanged);
    connect(&controller, &Controller::sourceLanguageChanged, this, &Self::sourceLanguageChanged);
    connect(&settings, &Settings::processingModeChanged, this, &Self::processingModeChanged);
    connect(&settings, &Settings::captionThemeChanged, this, &Self::captionThemeChanged);
    connect(&settings, &Settings::captionDisplayModeChanged, this, &Self::captionDisplayModeChanged);
    connect(&settings, &Settings::captionFontSizeChanged, this, &Self::captionFontSizeChanged);
    connect(&settings, &Settings::captionOpacityChanged, this, &Self::captionOpacityChanged);
    connect(&settings, &Settings::providerBaseURLChanged, this, &Self::providerChanged);
    connect(&settings, &Settings::providerModelChanged, this, &Self::providerChanged);
    connect(&settings.providerKey(), &ProviderKeyStore::changed, this, &Self::providerChanged);
    connect(&glossary, &LumaphoneGlossaryStore::termsChanged, this, &Self::glossarySummaryChanged);
}

QVariantList InspectorModel::audioInputSources() const
{
    QVariantList list;
    for (const auto source : allLumaphoneAudioInputSources) {
        list.append(choice(rawValue(source), title(source), symbolName(source)));
    }
    return list;
}

QVariantList InspectorModel::sourceLanguages() const
{
    return languageChoices(languagesOfTheInspector);
}

QVariantList InspectorModel::commandBarLanguages() const
{
    return languageChoices(allSpeechLanguages());
}

QVariantList InspectorModel::processingModes() const
{
    return choices(allLumaphoneProcessingModes);
}

QVariantList InspectorModel::captionThemes() const
{
    return choices(allFloatingCaptionThemes);
}

QVariantList InspectorModel::captionDisplayModes() const
{
    return choices(allFloatingCaptionDisplayModes);
}

QString InspectorModel::audioInputSource() const
{
    return rawValue(m_controller.audioInputSource());
}

void InspectorModel::setAudioInputSource(const QString &value)
{
    if (const auto source = lumaphoneAudioInputSource(value)) {
        m_controller.setAudioInputSource(*source);
    }
}

QString InspectorModel::sourceLanguage() const
{
    return rawValue(m_controller.sourceLanguage());
}

void InspectorModel::setSourceLanguage(const QString &value)
{
    if (const auto language = speechLanguageFromRawValue(value)) {
        m_controller.setSourceLanguage(*language);
    }
}

QString InspectorModel::processingMode() const
{
    return rawValue(m_settings.processingMode());
}

void InspectorModel::setProcessingMode(const QString &value)
{
    if (const auto mode = lumaphoneProcessingMode(value)) {
        m_settings.setProcessingMode(*mode);
    }
}

QString InspectorModel::captionTheme() const
{
    return rawValue(m_settings.captionTheme());
}

void InspectorModel::setCaptionTheme(const QString &value)
{
    if (const auto theme = floatingCaptionTheme(value)) {
        m_settings.setCaptionTheme(*theme);
    }
}

QString InspectorModel::captionDisplayMode() const
{
    return rawValue(m_settings.captionDisplayMode());
}

void InspectorModel::setCaptionDisplayMode(const QString &value)
{
    if (const auto mode = floatingCaptionDisplayMode(value)) {
        m_settings.setCaptionDisplayMode(*mode);
    }
}

double InspectorModel::captionFontSize() const
{
    return m_settings.captionFontSize();
}

void InspectorModel::setCaptionFontSize(double points)
{
    m_settings.setCaptionFontSize(points);
}

double InspectorModel::captionOpacity() const
{
    return m_settings.captionOpacity();
}

void InspectorModel::setCaptionOpacity(double opacity)
{
    // A slider's steps add up to 0.30000000000000004.
    m_settings.setCaptionOpacity(std::round(opacity * 100) / 100);
}

QString InspectorModel::fontSizeText() const
{
    return QString::number(std::round(captionFontSize() * 10) / 10) + QStringLiteral(" pt");
}

QString InspectorModel::opacityText() const
{
    return QString::number(std::round(captionOpacity() * 100)) + QLatin1Char('%');
}

QString InspectorModel::previewSourceText() const
{
    return QStringLiteral("ちょっと待って、今のアイデアめちゃくちゃ良くない？");
}

QString InspectorModel::previewSourceLanguage() const
{
    return rawValue(AppleSystemSpeechLanguage::japanese);
}

QString InspectorModel::previewTranslationText() const
{
    return QStringLiteral("等一下，剛剛那個點子也太可以了吧？");
}

QString InspectorModel::providerSummary() const
{
    const ProviderKeyStore &key = m_settings.providerKey();
    return providertexts::summary(text::trimmed(m_settings.providerModel()), supportsTextTranslation(),
        providertexts::savedKey(key, key.configuredAddress()));
}

bool InspectorModel::supportsTextTranslation() const
{
    return capabilities(m_settings).supportsTextTranslation;
}

bool InspectorModel::supportsTextPolishing() const
{
    return capabilities(m_settings).supportsTextPolishing;
}

bool InspectorModel::supportsGlossary() const
{
    return capabilities(m_settings).supportsGlossary;
}

QString InspectorModel::glossarySummary() const
{
    return QString::number(m_glossary.enabledTerms().size()) + QStringLiteral(" 個啟用術語");
}

} // namespace lumaphone
