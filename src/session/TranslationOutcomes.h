#pragma once

#include "session/LumaphoneCaptionLine.h"
#include "session/TranslationState.h"

#include <QHash>
#include <QSet>

#include <optional>
#include <set>
#include <utility>

namespace lumaphone {

/// What has become of the requests for the lines of one session, and which of them may be made again.
/// Failures belong to texts: equal lines share them.
class TranslationOutcomes
{
public:
    /// Requests in a row without an answer, after which the provider is left alone.
    static constexpr int mostTimeOuts = 3;

    /// Of a line that is neither pending nor under way now.
    LineTranslation of(const LumaphoneCaptionLine &line) const;
    /// Whether the text had failed, and is tried once more.
    bool isSecondChance(const QString &text) const;
    /// Whether nothing is asked of the provider but new texts.
    bool isPaused() const { return m_pauseReason.has_value(); }

    /// The text is requested for a reason of its own: what was before counts no more.
    void forget(const QString &text);
    /// A line's request was answered. It is not made again, whatever the line shows.
    void noteAnswered(const LumaphoneCaptionLine &line);
    void noteSuccess(const QString &text, AppleSystemSpeechLanguage language);
    void noteFailure(const QString &text, AppleSystemSpeechLanguage language, const QString &error);
    /// The provider has answered, if only with an error.
    void noteReply() { m_timeOutsInARow = 0; }
    /// The failure was that no answer came, for the `limit`th time in a row or later. Whether that makes the
    /// pause begin.
    bool noteTimeOut(const QString &error, int limit = mostTimeOuts);

    /// The line may be tried once more. Where that fails although nothing in its language has succeeded since
    /// trustAgain(), the second chances of that language are used up.
    void giveSecondChance(const LumaphoneCaptionLine &line, AppleSystemSpeechLanguage language);
    /// The provider may do better than before: the pause ends.
    void trustAgain();

private:
    struct Failed
    {
        QString error;
        AppleSystemSpeechLanguage language;
        bool hasSecondChance = false;
    };

    QHash<QString, Failed> m_failed; ///< by the text's canonical form
    QSet<std::pair<QUuid, QString>> m_answered; ///< lines by identity and canonical text
    std::set<AppleSystemSpeechLanguage> m_managedLanguages; ///< since trustAgain()
    std::optional<QString> m_pauseReason;
    int m_timeOutsInARow = 0;
};

} // namespace lumaphone
