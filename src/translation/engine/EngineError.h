#pragma once

#include "base/LocalizedError.h"

#include <QString>

namespace lumaphone::engine {

/// Why a translation or the loading of its files failed.
class EngineError : public LocalizedError
{
public:
    enum class Case {
        Unreadable, ///< the file is missing, or the system refuses to read it
        Truncated, ///< the file ends before the part named by the subject does
        NotRecognised, ///< the file is of another kind altogether
        Damaged, ///< the subject contradicts the format
        Unsupported, ///< a sound file of an architecture that this engine does not compute
        Mismatched, ///< files that are sound in themselves do not belong together
        Cancelled, ///< the caller asked the translation to stop
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
