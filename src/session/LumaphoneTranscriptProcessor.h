#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaphone {

class BundleResources;

enum class CoreRevisionDecision {
    yes,
    no,
    noAnswer, ///< there is no helper, or it gave nothing usable
};

/// Answers whether an incoming recognised text is a revision of a current one or a new utterance. The core
/// helper is asked first, the built-in rule where the helper gives no answer.
class LumaphoneTranscriptProcessor
{
public:
    static constexpr auto executableName = "lumaphone-core-cli";

    /// With the helper shipped among the program's resources, if there is one.
    explicit LumaphoneTranscriptProcessor(const BundleResources &resources);
    /// With the helper at a path, or without one.
    explicit LumaphoneTranscriptProcessor(std::optional<QString> executableURL);

    const std::optional<QString> &executableURL() const { return m_executableURL; }

    /// One run of the helper. Blocks until it has exited, without a time limit. Failures are silent.
    CoreRevisionDecision coreRevisionDecision(const QString &current, const QString &incoming) const;

    /// The question as every caller puts it: the helper's answer, else the built-in rule's.
    bool isRevision(const QString &current, const QString &incoming) const;

    /// isRevision() of each text but the first, and the one before it. A helper that understands it is asked
    /// once for all, which spares thousands of processes for a long transcript; any other once for each.
    QList<bool> areRevisions(const QStringList &texts) const;

private:
    std::optional<QList<bool>> coreRevisionDecisions(const QStringList &texts) const;

    std::optional<QString> m_executableURL;
};

} // namespace lumaphone
