#pragma once

#include "base/LocalizedError.h"

namespace lumaphone {

/// What can go wrong in an import beside the errors of the file system and of the JSON decoder.
class LumaphoneGlossaryError : public LocalizedError
{
public:
    enum Case {
        unsupportedFormat, ///< the extension names none of the formats
    };

    explicit LumaphoneGlossaryError(Case errorCase);
    Case errorCase() const noexcept { return m_case; }

private:
    Case m_case;
};

} // namespace lumaphone
