#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace lumaphone {

/// A word with what stands before it; where no blanks divide words, a character.
struct TextUnit
{
    QString lead; ///< blanks and punctuation between it and the unit before
    QString word;
    QString key; ///< the word as it is compared: without case, composed

    bool says(const TextUnit &other) const { return key == other.key; }
};

/// The words of a text. Punctuation at its end belongs to none of them.
std::vector<TextUnit> unitsOf(const QString &text);

/// Makes the hypotheses of a recogniser restful for the reader, who sees them while they still change: shown
/// is what several hypotheses in a row agree on, and what is shown keeps its spelling while words are added
/// to it. Every text either continues the one before it or is its beginning, so that nobody takes it for
/// another utterance. One object for one recogniser; any thread, one at a time.
class GrowingText
{
public:
    /// How many hypotheses in a row must agree.
    struct Agreement
    {
        int onFirstWord = 2; ///< which cannot be taken back
        int onOtherWords = 2;
    };

    explicit GrowingText(Agreement agreement);

    /// The texts to show for the next hypothesis of the utterance, in order; mostly none or one.
    QStringList heard(const QString &hypothesis);
    /// Takes the next hypothesis without showing anything yet.
    void listen(const QString &hypothesis);
    /// The texts that end the utterance, in order. The last one is the final text, those before it lead from
    /// what is shown to it. Where there is no final text, what is shown is final; none if nothing is. The
    /// next hypothesis begins another utterance.
    QStringList concluded(const QString &finalText);
    /// Forgets the utterance: nothing of it will come.
    void forget();

private:
    using Units = std::vector<TextUnit>;

    std::size_t agreed(const Units &newest) const;
    void remember(Units newest);

    const Agreement m_agreement;
    std::vector<Units> m_previous; ///< the hypotheses before, newest last
    Units m_shown;
};

} // namespace lumaphone
