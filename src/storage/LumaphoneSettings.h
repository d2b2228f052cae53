#pragma once

#include "language/AppleSystemSpeechLanguage.h"
#include "platform/DefaultsStore.h"
#include "storage/FloatingCaptionDisplayMode.h"
#include "storage/FloatingCaptionOrder.h"
#include "storage/FloatingCaptionTheme.h"
#include "storage/LumaphoneAudioInputSource.h"
#include "storage/LumaphoneProcessingMode.h"
#include "storage/ProviderKeyStore.h"
#include "translation/provider/OpenAICompatibleProviderConfiguration.h"

#include <QObject>

namespace lumaphone {

/// Every choice of the user that survives a restart. The program makes one and hands it to whoever needs it.
/// Main thread.
///
/// A set goes to the store at once, as it is: nothing is clamped or checked. Setting a property to the value
/// it has stores it again, without a notification. A stored value that makes no sense counts as absent and
/// stays where it is until the property is set.
class LumaphoneSettings : public QObject
{
    Q_OBJECT
    Q_PROPERTY(lumaphone::AppleSystemSpeechLanguage sourceLanguage READ sourceLanguage WRITE setSourceLanguage
            NOTIFY sourceLanguageChanged)
    Q_PROPERTY(lumaphone::LumaphoneAudioInputSource audioInputSource READ audioInputSource WRITE
            setAudioInputSource NOTIFY audioInputSourceChanged)
    Q_PROPERTY(lumaphone::LumaphoneProcessingMode processingMode READ processingMode WRITE setProcessingMode
            NOTIFY processingModeChanged)
    Q_PROPERTY(
        double captionFontSize READ captionFontSize WRITE setCaptionFontSize NOTIFY captionFontSizeChanged)
    Q_PROPERTY(double captionOpacity READ captionOpacity WRITE setCaptionOpacity NOTIFY captionOpacityChanged)
    Q_PROPERTY(lumaphone::FloatingCaptionTheme captionTheme READ captionTheme WRITE setCaptionTheme NOTIFY
            captionThemeChanged)
    Q_PROPERTY(lumaphone::FloatingCaptionDisplayMode captionDisplayMode READ captionDisplayMode WRITE
            setCaptionDisplayMode NOTIFY captionDisplayModeChanged)
    Q_PROPERTY(lumaphone::FloatingCaptionOrder captionOrder READ captionOrder WRITE setCaptionOrder NOTIFY
            captionOrderChanged)
    Q_PROPERTY(QString captionFont READ captionFont WRITE setCaptionFont NOTIFY captionFontChanged)
    Q_PROPERTY(double captionLineSpacing READ captionLineSpacing WRITE setCaptionLineSpacing NOTIFY
            captionLineSpacingChanged)
    Q_PROPERTY(double captionLineWidth READ captionLineWidth WRITE setCaptionLineWidth NOTIFY
            captionLineWidthChanged)
    Q_PROPERTY(double captionLines READ captionLines WRITE setCaptionLines NOTIFY captionLinesChanged)
    Q_PROPERTY(double captionSilence READ captionSilence WRITE setCaptionSilence NOTIFY captionSilenceChanged)
    Q_PROPERTY(
        QString providerBaseURL READ providerBaseURL WRITE setProviderBaseURL NOTIFY providerBaseURLChanged)
    Q_PROPERTY(QString providerModel READ providerModel WRITE setProviderModel NOTIFY providerModelChanged)
    Q_PROPERTY(bool hasProviderAPIKey READ hasProviderAPIKey NOTIFY hasProviderAPIKeyChanged)

public:
    /// Reads everything once; whether there is a key, when `runKeychain` gets to it. Both services must
    /// outlive the settings, and what has been given to `runKeychain` may end after them.
    LumaphoneSettings(DefaultsStore &defaults, KeychainServices &keychainServices,
        KeychainRunner runKeychain = runAtOnce, QObject *parent = nullptr);

    /// The endpoint that is used until the user names another one.
    static QString defaultProviderBaseURL();

    /// The language of the speech to recognise.
    AppleSystemSpeechLanguage sourceLanguage() const { return m_sourceLanguage; }
    void setSourceLanguage(AppleSystemSpeechLanguage language);

    LumaphoneAudioInputSource audioInputSource() const { return m_audioInputSource; }
    void setAudioInputSource(LumaphoneAudioInputSource source);

    LumaphoneProcessingMode processingMode() const { return m_processingMode; }
    void setProcessingMode(LumaphoneProcessingMode mode);

    /// In points.
    double captionFontSize() const { return m_captionFontSize; }
    void setCaptionFontSize(double points);

    /// Of the panel's background, 0...1.
    double captionOpacity() const { return m_captionOpacity; }
    void setCaptionOpacity(double opacity);

    FloatingCaptionTheme captionTheme() const { return m_captionTheme; }
    void setCaptionTheme(FloatingCaptionTheme theme);

    FloatingCaptionDisplayMode captionDisplayMode() const { return m_captionDisplayMode; }
    void setCaptionDisplayMode(FloatingCaptionDisplayMode mode);

    /// Of source and translation.
    FloatingCaptionOrder captionOrder() const { return m_captionOrder; }
    void setCaptionOrder(FloatingCaptionOrder order);

    /// The family of both lines; empty for those that readers of each language expect.
    const QString &captionFont() const { return m_captionFont; }
    void setCaptionFont(const QString &family);

    /// In heights of the font's own lines.
    double captionLineSpacing() const { return m_captionLineSpacing; }
    void setCaptionLineSpacing(double spacing);

    /// Of the lines, 0...1 of the width that the panel has for text.
    double captionLineWidth() const { return m_captionLineWidth; }
    void setCaptionLineWidth(double share);

    /// How many caption lines are read on the panel, 1...6; 0 shows the newest alone, at once, as it comes.
    double captionLines() const { return m_captionLines; }
    void setCaptionLines(double lines);

    /// Seconds after which captions leave the panel when nobody speaks; 0 lets them stay.
    double captionSilence() const { return m_captionSilence; }
    void setCaptionSilence(double seconds);

    /// As typed.
    const QString &providerBaseURL() const { return m_providerBaseURL; }
    void setProviderBaseURL(const QString &url);

    /// As typed.
    const QString &providerModel() const { return m_providerModel; }
    void setProviderModel(const QString &model);

    /// Whether a key was there when the settings were made, perhaps in a locked keychain, or has been saved
    /// since. It follows what was asked of the keychain, not what came of it; false until it has answered.
    bool hasProviderAPIKey() const { return m_providerKey.presence() == ProviderKeyPresence::present; }
    /// Whether it is for the server that is configured now.
    bool isProviderAPIKeyForEndpoint() const;

    /// Base URL and model without white space at their ends, with the key that the keychain holds now for
    /// this server, or "". Waits for the keychain.
    OpenAICompatibleProviderConfiguration providerConfiguration() const;
    /// The same without the key.
    OpenAICompatibleProviderConfiguration providerEndpoint() const;
    ProviderKeyStore &providerKey() { return m_providerKey; }
    const ProviderKeyStore &providerKey() const { return m_providerKey; }
    /// Keeps the key, without white space at its ends, in the keychain, for the server that is configured; a
    /// blank one deletes what is there.
    void saveProviderAPIKey(const QString &key);

    DefaultsStore &defaults() const { return m_defaults; }
    const LumaphoneKeychain &keychain() const { return m_providerKey.keychain(); }

signals:
    void sourceLanguageChanged();
    void audioInputSourceChanged();
    void processingModeChanged();
    void captionFontSizeChanged();
    void captionOpacityChanged();
    void captionThemeChanged();
    void captionDisplayModeChanged();
    void captionOrderChanged();
    void captionFontChanged();
    void captionLineSpacingChanged();
    void captionLineWidthChanged();
    void captionLinesChanged();
    void captionSilenceChanged();
    void providerBaseURLChanged();
    void providerModelChanged();
    void hasProviderAPIKeyChanged();

private:
    template<typename Value>
    void set(Value &member, const Value &value, const QString &key, void (LumaphoneSettings::*changed)());

    DefaultsStore &m_defaults;
    AppleSystemSpeechLanguage m_sourceLanguage;
    LumaphoneAudioInputSource m_audioInputSource;
    LumaphoneProcessingMode m_processingMode;
    double m_captionFontSize;
    double m_captionOpacity;
    FloatingCaptionTheme m_captionTheme;
    FloatingCaptionDisplayMode m_captionDisplayMode;
    FloatingCaptionOrder m_captionOrder;
    QString m_captionFont;
    double m_captionLineSpacing;
    double m_captionLineWidth;
    double m_captionLines;
    double m_captionSilence;
    QString m_providerBaseURL;
    QString m_providerModel;
    ProviderKeyStore m_providerKey;
};

} // namespace lumaphone
