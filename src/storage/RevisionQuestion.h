#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <type_traits>
#include <utility>

namespace lumaphone {

/// Asks which texts are revisions of the one before them: the same utterance, recognised again. All texts are
/// handed over at once, because an answer may cost the start of a process.
class RevisionQuestion
{
public:
    /// One answer for each text but the first.
    using AboutAll = std::function<QList<bool>(const QStringList &texts)>;

    static RevisionQuestion aboutAll(AboutAll question) { return RevisionQuestion(std::move(question), {}); }

    /// From a question about one pair, put for each pair in order.
    template<typename AboutPair>
    requires std::is_invocable_r_v<bool, const AboutPair &, const QString &, const QString &>
    RevisionQuestion(AboutPair isRevision) // NOLINT(google-explicit-constructor): a pair's question is one
        : m_aboutAll([isRevision = std::move(isRevision)](const QStringList &texts) {
            QList<bool> answers;
            for (qsizetype i = 1; i < texts.size(); ++i) {
                answers.append(isRevision(texts[i - 1], texts[i]));
            }
            return answers;
        })
    {
    }

    QList<bool> operator()(const QStringList &texts) const { return m_aboutAll(texts); }

private:
    struct Whole
    {
    };
    RevisionQuestion(AboutAll question, Whole)
        : m_aboutAll(std::move(question))
    {
    }

    AboutAll m_aboutAll;
};

} // namespace lumaphone
