#pragma once

#include "app/floating/FloatingCaptionFrames.h"
#include "app/floating/FloatingCaptionPanel.h"
#include "app/floating/FloatingCaptionReader.h"
#include "session/FloatingCaptionPresenter.h"

#include <QObject>
#include <QTimer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <memory>
#include <optional>

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
    Q_PROPERTY(lumaphone::FloatingCaptionReader *reader READ reader CONSTANT)
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(bool hasKeyboard READ hasKeyboard NOTIFY hasKeyboardChanged)
    Q_PROPERTY(QString currentSourceText READ currentSourceText NOTIFY currentSourceTextChanged)
    Q_PROPERTY(QVariantList dialogs READ dialogs WRITE setDialogs NOTIFY dialogsChanged)
    Q_PROPERTY(
        QString currentTranslationText READ currentTranslationText NOTIFY currentTranslationTextChanged)

public:
    using PanelMaker = std::function<std::unique_ptr<FloatingCaptionPanel>()>;

    /// The settings, whose store keeps the frame, must outlive the controller.
    FloatingCaptionWindowController(LumaphoneSettings &settings, std::shared_ptr<Clock> clock,
        PanelMaker makePanel, QObject *parent = nullptr);
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
    /// Where on the desktop the window's open dialogs lie, as rectangles; an empty one lies anywhere. The
    /// panel makes room for them, and comes back when they are closed.
    const QVariantList &dialogs() const { return m_dialogs; }
    void setDialogs(const QVariantList &areas);

    /// What is read on the panel, for its view.
    FloatingCaptionReader *reader() { return &m_reader; }

    /// Closes an open panel, or opens one that says it is ready.
    Q_INVOKABLE void toggle();
    Q_INVOKABLE void close();

    /// The open panel, or none.
    FloatingCaptionPanel *panel() const { return m_panel.get(); }

signals:
    void isOpenChanged();
    void hasKeyboardChanged();
    void dialogsChanged();
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
    void makeRoom();
    /// Where the panel covers none of the dialogs; none if it has to be hidden for that.
    std::optional<QRect> roomBesideDialogs(const QRect &home) const;
    void orderFront();
    void moveAside(const QRect &place);
    void setTexts(const QString &sourceText, const QString &translationText);

    FloatingCaptionReader m_reader;
    FloatingCaptionFrames m_frames;
    PanelMaker m_makePanel;
    std::unique_ptr<FloatingCaptionPanel> m_panel;
    QString m_currentSourceText;
    QString m_sourceLanguage;
    QString m_currentTranslationText;
    QVariantList m_dialogs;
    std::optional<QRect> m_home; ///< of a panel that makes room for a dialog
    std::optional<QRect> m_aside; ///< where it was put last without the user's doing
    bool m_isMovingAside = false;
    bool m_isHidden = false; ///< because there is no room beside a dialog
    QTimer m_saving; ///< a frame is stored when the dragging pauses, not for every step of it
};

} // namespace lumaphone
