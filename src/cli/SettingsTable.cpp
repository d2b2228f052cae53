#include "cli/SettingsTable.h"

#include "storage/LumaphoneSettings.h"

#include <QLocale>
#include <QStringList>

#include <cmath>

namespace lumaphone::cli {

namespace {

template<typename Cases, typename Get, typename Set>
Setting choice(const QString &key, Cases cases, Get get, Set set)
{
    QStringList names;
    for (const auto candidate : cases) {
        names.append(rawValue(candidate));
    }
    return {key, QStringLiteral("下列其中之一：%1").arg(names.join(QStringLiteral("、"))),
        [get](const LumaphoneSettings &settings) { return rawValue((settings.*get)()); },
        [cases, set](LumaphoneSettings &settings, const QString &text) {
            for (const auto candidate : cases) {
                if (rawValue(candidate) == text) {
                    (settings.*set)(candidate);
                    return true;
                }
            }
            return false;
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
        choice(QStringLiteral("lumaphone.sourceLanguage"), allSpeechLanguages(), &S::sourceLanguage,
            &S::setSourceLanguage),
        choice(QStringLiteral("lumaphone.audioInputSource"), allLumaphoneAudioInputSources,
            &S::audioInputSource, &S::setAudioInputSource),
        choice(QStringLiteral("lumaphone.processingMode"), allLumaphoneProcessingModes, &S::processingMode,
            &S::setProcessingMode),
        number(QStringLiteral("lumaphone.caption.fontSize"), &S::captionFontSize, &S::setCaptionFontSize),
        number(QStringLiteral("lumaphone.caption.opacity"), &S::captionOpacity, &S::setCaptionOpacity),
        choice(QStringLiteral("lumaphone.caption.theme"), allFloatingCaptionThemes, &S::captionTheme,
            &S::setCaptionTheme),
        choice(QStringLiteral("lumaphone.caption.displayMode"), allFloatingCaptionDisplayModes,
            &S::captionDisplayMode, &S::setCaptionDisplayMode),
        text(QStringLiteral("lumaphone.provider.baseURL"), &S::providerBaseURL, &S::setProviderBaseURL),
        text(QStringLiteral("lumaphone.provider.model"), &S::providerModel, &S::setProviderModel),
    };
    return table;
}

} // namespace lumaphone::cli
