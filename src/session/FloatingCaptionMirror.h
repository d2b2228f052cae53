#pragma once

#include "language/AppleSystemSpeechLanguage.h"

#include <QString>

namespace lumaphone {

class CaptionLineList;
class FloatingCaptionPresenter;
struct CaptionTranslation;

/// What a session shows on the floating panel: its newest caption, and in its place notices and errors.
/// Main thread.
class FloatingCaptionMirror
{
public:
    /// Panel and lines outlive the mirror.
    FloatingCaptionMirror(FloatingCaptionPresenter &panel, const CaptionLineList &lines);

    /// Shows what the user should know of the session, in a new panel if none is open.
    void showNotice(const QString &title, const QString &message);
    /// The same for a translation's error, which gives way when the session is over.
    void showTranslationError(const QString &title, const QString &description);
    /// Shows recognised text, with the translation of its line if that has one: only that opens the panel.
    void updateFloatingCaptionForLiveSource(const QString &text, AppleSystemSpeechLanguage language);
    /// Only on an open panel.
    void showTranslation(const CaptionTranslation &translation);
    /// A translation's error leaves the panel, where the newest line takes its place.
    void clearTranslationError();

private:
    void show(const CaptionTranslation &translation);

    FloatingCaptionPresenter &m_panel;
    const CaptionLineList &m_lines;
    bool m_isShowingError = false; ///< of a translation
};

} // namespace lumaphone
