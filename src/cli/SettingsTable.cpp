#include "cli/SettingsTable.h"

#include "base/RawValue.h"
#include "storage/LumaphoneSettings.h"
#include "storage/SettingKeys.h"

#include <QLocale>

#include <cmath>

namespace lumaphone::cli {

namespace {

template<typename Cases, typename Get, typename Set>
Setting choice(const QString &key, Cases cases, Get get, Set set)
{
    return {key, QStringLiteral("下列其中之一：%1").arg(rawValues(cases).join(QStringLiteral("、"))),
        [get](const LumaphoneSettings &settings) { return rawValue((settings.*get)()); },
        [cases, set](LumaphoneSettings &settings, const QString &text) {
            const auto chosen = caseWithRawValue(cases, text);
            if (chosen) {
                (settings.*set)(*chosen);
            }
            return chosen.has_value();
        }};
}

template<typename Get, typename Set> Setting number(const QString &key, Get get, Set set)
{
    return {key, QStringLiteral("數字"),
        [get](const LumaphoneSettings &settings) {
            return QString::number((settings.*get)(), 'g', QLocale::FloatingPointShortest);
        },
        [set](LumaphoneSettings &settings, const QString &text) {
            bool isNumber = false;
            const double value = text.toDouble(&isNumber);
            if (!isNumber || !std::isfinite(value)) {
                return false;
            }
            (settings.*set)(value);
            return true;
        }};
}

template<typename Get, typename Set> Setting text(const QString &key, Get get, Set set)
{
    return {key, QStringLiteral("文字"),
        [get](const LumaphoneSettings &settings) { return (settings.*get)(); },
        [set](LumaphoneSettings &settings, const QString &value) {
            (settings.*set)(value);
            return true;
        }};
}

} // namespace

const std::vector<Setting> &settingsTable()
{
    using S = LumaphoneSettings;
    static const std::vector<Setting> table {
        choice(settingkeys::sourceLanguage, allSpeechLanguages(), &S::sourceLanguage, &S::setSourceLanguage),
        choice(settingkeys::audioInputSource, allLumaphoneAudioInputSources, &S::audioInputSource,
            &S::setAudioInputSource),
        choice(settingkeys::processingMode, allLumaphoneProcessingModes, &S::processingMode,
            &S::setProcessingMode),
        number(settingkeys::captionFontSize, &S::captionFontSize, &S::setCaptionFontSize),
        number(settingkeys::captionOpacity, &S::captionOpacity, &S::setCaptionOpacity),
        choice(settingkeys::captionTheme, allFloatingCaptionThemes, &S::captionTheme, &S::setCaptionTheme),
        choice(settingkeys::captionDisplayMode, allFloatingCaptionDisplayModes, &S::captionDisplayMode,
            &S::setCaptionDisplayMode),
        choice(settingkeys::captionOrder, allFloatingCaptionOrders, &S::captionOrder, &S::setCaptionOrder),
        text(settingkeys::captionFont, &S::captionFont, &S::setCaptionFont),
        number(settingkeys::captionLineSpacing, &S::captionLineSpacing, &S::setCaptionLineSpacing),
        number(settingkeys::captionLineWidth, &S::captionLineWidth, &S::setCaptionLineWidth),
        number(settingkeys::captionLines, &S::captionLines, &S::setCaptionLines),
        number(settingkeys::captionSilence, &S::captionSilence, &S::setCaptionSilence),
        text(settingkeys::providerBaseURL, &S::providerBaseURL, &S::setProviderBaseURL),
        text(settingkeys::providerModel, &S::providerModel, &S::setProviderModel),
    };
    return table;
}

} // namespace lumaphone::cli
