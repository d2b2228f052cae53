#pragma once

#include "app/inspector/FloatingCaptionSettingsModel.h"
#include "storage/LumaphoneSettings.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

class LumaphoneGlossaryStore;
class SystemAudioCaptureController;

/// The choices in the inspector, as raw values that QML can carry, with the lists to choose from. Each
/// element of a list has `value`, `title` and perhaps `symbol`. Main thread.
class InspectorModel final : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model.")
    Q_PROPERTY(lumaphone::LumaphoneSettings *settings READ settings CONSTANT)
    Q_PROPERTY(lumaphone::FloatingCaptionSettingsModel *captions READ captions CONSTANT)
    Q_PROPERTY(QVariantList audioInputSources READ audioInputSources CONSTANT)
    /// In the inspector's order.
    Q_PROPERTY(QVariantList sourceLanguages READ sourceLanguages CONSTANT)
    /// In the order of the command bar.
    Q_PROPERTY(QVariantList commandBarLanguages READ commandBarLanguages CONSTANT)
    Q_PROPERTY(QVariantList processingModes READ processingModes CONSTANT)
    Q_PROPERTY(QVariantList captionThemes READ captionThemes CONSTANT)
    Q_PROPERTY(QVariantList captionDisplayModes READ captionDisplayModes CONSTANT)
    Q_PROPERTY(QString audioInputSource READ audioInputSource WRITE setAudioInputSource NOTIFY
            audioInputSourceChanged)
    Q_PROPERTY(
        QString sourceLanguage READ sourceLanguage WRITE setSourceLanguage NOTIFY sourceLanguageChanged)
    Q_PROPERTY(
        QString processingMode READ processingMode WRITE setProcessingMode NOTIFY processingModeChanged)
    Q_PROPERTY(QString captionTheme READ captionTheme WRITE setCaptionTheme NOTIFY captionThemeChanged)
    Q_PROPERTY(QString captionDisplayMode READ captionDisplayMode WRITE setCaptionDisplayMode NOTIFY
            captionDisplayModeChanged)
    Q_PROPERTY(
        double captionFontSize READ captionFontSize WRITE setCaptionFontSize NOTIFY captionFontSizeChanged)
    Q_PROPERTY(double captionOpacity READ captionOpacity WRITE setCaptionOpacity NOTIFY captionOpacityChanged)
    Q_PROPERTY(QString fontSizeText READ fontSizeText NOTIFY captionFontSizeChanged)
    Q_PROPERTY(QString opacityText READ opacityText NOTIFY captionOpacityChanged)
    Q_PROPERTY(double minimumFontSize READ minimumFontSize CONSTANT)
    Q_PROPERTY(double maximumFontSize READ maximumFontSize CONSTANT)
    Q_PROPERTY(QString previewSourceText READ previewSourceText CONSTANT)
    Q_PROPERTY(QString previewSourceLanguage READ previewSourceLanguage CONSTANT)
    Q_PROPERTY(QString previewTranslationText READ previewTranslationText CONSTANT)
    Q_PROPERTY(QString providerSummary READ providerSummary NOTIFY providerChanged)
    Q_PROPERTY(bool supportsTextTranslation READ supportsTextTranslation NOTIFY providerChanged)
    Q_PROPERTY(bool supportsTextPolishing READ supportsTextPolishing NOTIFY providerChanged)
    Q_PROPERTY(bool supportsGlossary READ supportsGlossary NOTIFY providerChanged)
    Q_PROPERTY(QString glossarySummary READ glossarySummary NOTIFY glossarySummaryChanged)

public:
    /// Everything given must outlive the model.
    InspectorModel(SystemAudioCaptureController &controller, LumaphoneSettings &settings,
        const LumaphoneGlossaryStore &glossary, QObject *parent = nullptr);

    LumaphoneSettings *settings() const { return &m_settings; }
    FloatingCaptionSettingsModel *captions() { return &m_captions; }
    QVariantList audioInputSources() const;
    QVariantList sourceLanguages() const;
    QVariantList commandBarLanguages() const;
    QVariantList processingModes() const;
    QVariantList captionThemes() const;
    QVariantList captionDisplayModes() const;

    QString audioInputSource() const;
    void setAudioInputSource(const QString &value);
    QString sourceLanguage() const;
    void setSourceLanguage(const QString &value);
    QString processingMode() const;
    void setProcessingMode(const QString &value);
    QString captionTheme() const;
    void setCaptionTheme(const QString &value);
    QString captionDisplayMode() const;
    void setCaptionDisplayMode(const QString &value);
    double captionFontSize() const;
    void setCaptionFontSize(double points);
    double captionOpacity() const;
    void setCaptionOpacity(double opacity);
    QString fontSizeText() const;
    QString opacityText() const;
    double minimumFontSize() const { return 18; }
    double maximumFontSize() const { return 72; }
    QString previewSourceText() const;
    QString previewSourceLanguage() const;
    QString previewTranslationText() const;

    QString providerSummary() const;
    bool supportsTextTranslation() const;
    bool supportsTextPolishing() const;
    bool supportsGlossary() const;
    QString glossarySummary() const;

signals:
    void audioInputSourceChanged();
    void sourceLanguageChanged();
    void processingModeChanged();
    void captionThemeChanged();
    void captionDisplayModeChanged();
    void captionFontSizeChanged();
    void captionOpacityChanged();
    void providerChanged();
    void glossarySummaryChanged();

private:
    SystemAudioCaptureController &m_controller;
    LumaphoneSettings &m_settings;
    const LumaphoneGlossaryStore &m_glossary;
    FloatingCaptionSettingsModel m_captions;
};

} // namespace lumaphone
