#pragma once

#include "base/LocalizedError.h"

#include <QString>

namespace lumaphone::engine {

/// Why a translation or the loading of its files failed.
class EngineError : public LocalizedError
{
public:
    enum class Case {
        unreadable, ///< the file is missing, or the system refuses to read it
        truncated, ///< the file ends before the part named by the subject does
        notRecognised, ///< the file is of another kind altogether
        damaged, ///< the subject contradicts the format
        unsupported, ///< a sound file of an architecture that this engine does not compute
        mismatched, ///< files that are sound in themselves do not belong together
        cancelled, ///< the caller asked the translation to stop
    };

    /// `path` names the file; `subject` is the part of it that is at fault, in the format's own terms.
    EngineError(Case which, const QString &path, const QString &subject);

    Case which() const noexcept { return m_which; }
    const QString &path() const noexcept { return m_path; }
    const QString &subject() const noexcept { return m_subject; }

private:
    Case m_which;
    QString m_path;
    QString m_subject;
};

} // namespace lumaphone::engine
