#pragma once

#include "base/LocalizedError.h"

#include <QString>

namespace lumaphone {

/// Something about the library's files or about a text keeps the library from doing its work.
class TranscriptStorageError : public LocalizedError
{
public:
    enum class Case {
        noDataFolder, ///< the user's data folder is unknown
        folderMissing, ///< `subject`: the session folder
        fileMissing, ///< `subject`: the file
        fileDamaged, ///< `subject`: the file; with what is wrong in it
        unpairedSurrogate, ///< `subject`: the text that cannot be written as UTF-8
    };

    explicit TranscriptStorageError(Case errorCase, const QString &subject = {}, const QString &detail = {});
    Case errorCase() const { return m_case; }

private:
    Case m_case;
};

} // namespace lumaphone
