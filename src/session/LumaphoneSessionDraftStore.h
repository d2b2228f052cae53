#pragma once

#include "session/CaptionLinesEncoder.h"
#include "session/LumaphoneSessionDraft.h"

#include <QString>

#include <optional>

namespace lumaphone {

class PlatformFolders;

/// Owns the file with the crash-recovery copy of the running session. Main thread; everything is synchronous
/// and silent: whatever the file system says, the session goes on.
class LumaphoneSessionDraftStore
{
public:
    /// Keeps nothing, for a session that nobody wants back.
    LumaphoneSessionDraftStore() = default;
    /// `rootPath` is the draft's folder, created when something is saved.
    explicit LumaphoneSessionDraftStore(QString rootPath);
    /// In the user's Application Support folder, or the home folder where there is none.
    explicit LumaphoneSessionDraftStore(const PlatformFolders &folders);

    QString draftPath() const;

    /// Replaces the file in one step. It survives the death of the process, and with each line that has
    /// become final a power cut as well. The first time it takes away what interrupted saves have left.
    void save(const LumaphoneSessionDraft &draft);
    /// Removes the file, and what interrupted saves have left beside it.
    void clear();
    /// The file's draft, or none if there is no file or it cannot be read; the file stays. Changes nothing,
    /// for another process may be saving.
    std::optional<LumaphoneSessionDraft> load() const;

private:
    void removeLeftovers();

    QString m_rootPath; ///< empty: nothing is kept
    CaptionLinesEncoder m_lines;
    bool m_isTidy = false; ///< no interrupted save has left anything
    bool m_mustFlush = false; ///< a final line has not been flushed to the disk yet
};

} // namespace lumaphone
