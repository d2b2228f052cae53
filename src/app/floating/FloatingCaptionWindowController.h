#pragma once

#include "app/floating/FloatingCaptionFrames.h"
#include "app/floating/FloatingCaptionPanel.h"
#include "session/FloatingCaptionPresenter.h"

#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>

namespace lumaphone {

class LumaphoneSettings;

/// Owns the one caption panel and remembers where it lies. The program makes one. Main thread.
///
/// The panel's content is kept and given new texts, never made anew, so that nothing flickers.
class FloatingCaptionWindowController final : public QObject, public FloatingCaptionPresenter
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one controller.")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(bool hasKeyboard READ hasKeyboard NOTIFY hasKeyboardChanged)
    Q_PROPERTY(QString currentSourceText READ currentSourceText NOTIFY currentSourceTextChanged)
    Q_PROPERTY(
        QString currentTranslationText READ currentTranslationText NOTIFY currentTranslationTextChanged)

public:
    using PanelMaker = std::function<std::unique_ptr<FloatingCaptionPanel>()>;

    /// The settings, whose store keeps the frame, must outlive the controller.
    FloatingCaptionWindowController(
        LumaphoneSettings &settings, PanelMaker makePanel, QObject *parent = nullptr);
    ~FloatingCaptionWindowController() override;

    void show(const QString &sourceText, const QString &translationText) override;
    void showSpoken(const QString &sourceText, AppleSystemSpeechLanguage language,
        const QString &translationText) override;
    bool isOpen() const override { return m_panel != nullptr; }
    /// Whether the keys go to the panel, which it never asks for.
    bool hasKeyboard() const { return m_panel && m_panel->isActive(); }
    /// Both are empty while closed.
    QString currentTranslationText() const override { return m_currentTranslationText; }
    QString currentSourceText() const { return m_currentSourceText; }

    /// Closes an open panel, or opens one that says it is ready.
    Q_INVOKABLE void toggle();
    Q_INVOKABLE void close();

    /// The open panel, or none.
    FloatingCaptionPanel *panel() const { return m_panel.get(); }

signals:
    void isOpenChanged();
    void hasKeyboardChanged();
    void currentSourceTextChanged();
    void currentTranslationTextChanged();

private:
    /// `sourceLanguage` is a raw value, or empty for what is the program's own.
    void show(const QString &sourceText, const QString &sourceLanguage, const QString &translationText);
    void createPanel();
    void position(FloatingCaptionPanel &panel) const;
    QScreen *homeScreen() const;
    void goHome();
    void screenWasRemoved(const QScreen *screen);
    void screenWasAdded();
    void panelWasDroppedOn(const QScreen *screen, const QRect &geometry);
    void windowDidMoveOrResize(const FloatingCaptionPanel &panel);
    void windowWillClose(const FloatingCaptionPanel &panel);
    void saveFrame(const FloatingCaptionPanel &panel);
    void setTexts(const QString &sourceText, const QString &translationText);

    FloatingCaptionFrames m_frames;
    PanelMaker m_makePanel;
    std::unique_ptr<FloatingCaptionPanel> m_panel;
    QString m_currentSourceText;
    QString m_sourceLanguage;
    QString m_currentTranslationText;
    QTimer m_saving; ///< a frame is stored when the dragging pauses, not for every step of it
};

} // namespace lumaphone
