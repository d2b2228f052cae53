#pragma once

#include "base/LocalizedError.h"

namespace lumaphone {

/// What the platform translation service itself can refuse.
class LumaphoneAppleTranslationError : public LocalizedError
{
public:
    enum class Case { unsupportedPair };

    /// The identifiers as the caller passed them.
    static LumaphoneAppleTranslationError unsupportedPair(const QString &source, const QString &target);

    Case errorCase() const noexcept { return m_case; }
    const QString &source() const noexcept { return m_source; }
    const QString &target() const noexcept { return m_target; }

private:
    LumaphoneAppleTranslationError(Case errorCase, const QString &source, const QString &target);

    Case m_case;
    QString m_source;
    QString m_target;
};

} // namespace lumaphone
