#pragma once

#include <QString>

namespace lumaphone {

enum class TranslationState {
    unwanted, ///< the session does not translate
    pending, ///< it waits for its turn, or is being translated
    arrived,
    failed, ///< tried, and not again by itself until something has changed
};

/// How far the translation of one caption line is.
struct LineTranslation
{
    TranslationState state = TranslationState::pending;
    QString error = {}; ///< why it failed, for the user

    bool operator==(const LineTranslation &) const = default;
};

} // namespace lumaphone
