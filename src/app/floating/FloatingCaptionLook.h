#pragma once

#include "app/floating/CaptionRoom.h"
#include "app/floating/FloatingCaptionStyle.h"
#include "storage/LumaphoneSettings.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace lumaphone {

/// Keeps the style of a caption up to date while the settings, its texts or the desktop's colours change.
/// Without settings there is nothing to show.
class FloatingCaptionLook : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(lumaphone::LumaphoneSettings *settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(QString sourceText READ sourceText WRITE setSourceText NOTIFY sourceTextChanged)
    Q_PROPERTY(
        QString translationText READ translationText WRITE setTranslationText NOTIFY translationTextChanged)
    Q_PROPERTY(QColor labelColor READ labelColor WRITE setLabelColor NOTIFY labelColorChanged)
    Q_PROPERTY(QColor secondaryLabelColor READ secondaryLabelColor WRITE setSecondaryLabelColor NOTIFY
            secondaryLabelColorChanged)
    Q_PROPERTY(QColor windowBackgroundColor READ windowBackgroundColor WRITE setWindowBackgroundColor NOTIFY
            windowBackgroundColorChanged)
    Q_PROPERTY(QColor accentColor READ accentColor WRITE setAccentColor NOTIFY accentColorChanged)
    Q_PROPERTY(lumaphone::FloatingCaptionStyle style READ style NOTIFY styleChanged)

public:
    explicit FloatingCaptionLook(QObject *parent = nullptr);
    ~FloatingCaptionLook() override;

    LumaphoneSettings *settings() const;
    void setSettings(LumaphoneSettings *settings);

    const QString &sourceText() const { return m_sourceText; }
    void setSourceText(const QString &text);
    const QString &translationText() const { return m_translationText; }
    void setTranslationText(const QString &text);

    QColor labelColor() const { return m_desktop.label; }
    void setLabelColor(const QColor &color);
    QColor secondaryLabelColor() const { return m_desktop.secondaryLabel; }
    void setSecondaryLabelColor(const QColor &color);
    QColor windowBackgroundColor() const { return m_desktop.windowBackground; }
    void setWindowBackgroundColor(const QColor &color);
    QColor accentColor() const { return m_desktop.accent; }
    void setAccentColor(const QColor &color);

    const FloatingCaptionStyle &style() const { return m_style; }
    /// In a panel of that height, for lines of these least heights; 0 for one that is not wanted.
    Q_INVOKABLE lumaphone::CaptionRoom roomIn(
        double panelHeight, double leastSource, double leastTranslation) const;

signals:
    void settingsChanged();
    void sourceTextChanged();
    void translationTextChanged();
    void labelColorChanged();
    void secondaryLabelColorChanged();
    void windowBackgroundColorChanged();
    void accentColorChanged();
    void styleChanged();

private:
    template<typename Value>
    void set(Value &member, const Value &value, void (FloatingCaptionLook::*changed)());
    void update();

    QPointer<LumaphoneSettings> m_settings;
    QString m_sourceText;
    QString m_translationText;
    DesktopColors m_desktop;
    FloatingCaptionStyle m_style;
};

} // namespace lumaphone
