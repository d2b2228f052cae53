#include "app/floating/FloatingCaptionLook.h"

namespace lumaphone {

FloatingCaptionLook::FloatingCaptionLook(QObject *parent)
    : QObject(parent)
{
}

FloatingCaptionLook::~FloatingCaptionLook() = default;

LumaphoneSettings *FloatingCaptionLook::settings() const
{
    return m_settings;
}

void FloatingCaptionLook::setSettings(LumaphoneSettings *settings)
{
    if (m_settings == settings) {
        return;
    }
    if (LumaphoneSettings *former = m_settings.data()) {
        former->disconnect(this);
    }
    m_settings = settings;
    if (settings != nullptr) {
        using Settings = LumaphoneSettings;
        for (const auto changed : {&Settings::captionThemeChanged, &Settings::captionDisplayModeChanged,
                 &Settings::captionFontSizeChanged, &Settings::captionOpacityChanged,
                 &Settings::captionOrderChanged, &Settings::captionFontChanged,
                 &Settings::captionLineSpacingChanged, &Settings::captionLineWidthChanged}) {
            connect(settings, changed, this, &FloatingCaptionLook::update);
        }
    }
    emit settingsChanged();
    update();
}

template<typename Value>
void FloatingCaptionLook::set(Value &member, const Value &value, void (FloatingCaptionLook::*changed)())
{
    if (member == value) {
        return;
    }
    member = value;
    emit(this->*changed)();
    update();
}

void FloatingCaptionLook::setSourceText(const QString &text)
{
    set(m_sourceText, text, &FloatingCaptionLook::sourceTextChanged);
}

void FloatingCaptionLook::setTranslationText(const QString &text)
{
    set(m_translationText, text, &FloatingCaptionLook::translationTextChanged);
}

void FloatingCaptionLook::setLabelColor(const QColor &color)
{
    set(m_desktop.label, color, &FloatingCaptionLook::labelColorChanged);
}

void FloatingCaptionLook::setSecondaryLabelColor(const QColor &color)
{
    set(m_desktop.secondaryLabel, color, &FloatingCaptionLook::secondaryLabelColorChanged);
}

void FloatingCaptionLook::setWindowBackgroundColor(const QColor &color)
{
    set(m_desktop.windowBackground, color, &FloatingCaptionLook::windowBackgroundColorChanged);
}

void FloatingCaptionLook::setAccentColor(const QColor &color)
{
    set(m_desktop.accent, color, &FloatingCaptionLook::accentColorChanged);
}

CaptionRoom FloatingCaptionLook::roomIn(double panelHeight, double leastSource, double leastTranslation) const
{
    return {panelHeight, m_style.verticalPadding, {leastSource, leastTranslation}};
}

void FloatingCaptionLook::update()
{
    FloatingCaptionStyle style;
    if (const LumaphoneSettings *settings = m_settings.data()) {
        style = FloatingCaptionStyle({.theme = settings->captionTheme(),
                                         .displayMode = settings->captionDisplayMode(),
                                         .order = settings->captionOrder(),
                                         .fontSize = settings->captionFontSize(),
                                         .fontFamily = settings->captionFont(),
                                         .lineSpacing = settings->captionLineSpacing(),
                                         .lineWidth = settings->captionLineWidth(),
                                         .opacity = settings->captionOpacity(),
                                         .sourceText = m_sourceText,
                                         .translationText = m_translationText},
            m_desktop);
    }
    if (m_style != style) {
        m_style = style;
        emit styleChanged();
    }
}

} // namespace lumaphone
