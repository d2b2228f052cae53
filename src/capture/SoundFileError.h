#pragma once

#include "base/LocalizedError.h"

#include <QString>

namespace lumaphone {

/// Why a sound file cannot be captioned. The text names the file.
class SoundFileError : public LocalizedError
{
public:
    enum class Case {
        notFound,
        unreadable, ///< detail: what the system says
        notSound, ///< detail: what the decoder says
        unsupportedFormat, ///< detail: rate and channels
        empty,
    };

    SoundFileError(Case errorCase, const QString &path, const QString &detail = {});
    Case errorCase() const { return m_case; }

private:
    Case m_case;
};

} // namespace lumaphone
