#pragma once

#include "base/LocalizedError.h"

namespace lumaphone {

/// What the library refuses to do. Shown by its description alone.
class TranscriptLibraryError : public LocalizedError
{
public:
    enum class Case {
        emptyTranscript, ///< no line is left to save
        recordNotFound,
    };

    explicit TranscriptLibraryError(Case errorCase);
    Case errorCase() const { return m_case; }

private:
    Case m_case;
};

} // namespace lumaphone
