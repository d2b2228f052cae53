#pragma once

#include <QString>

namespace lumaphone {

/// Where chat-completions requests go. Made by the caller for every call; the three texts are used exactly
/// as given, and equality is that of their code units.
struct OpenAICompatibleProviderConfiguration
{
    QString baseURL; ///< as the user typed it; normalised only when a request is made
    QString apiKey; ///< secret; empty when the endpoint needs none
    QString model;

    bool operator==(const OpenAICompatibleProviderConfiguration &) const = default;
};

} // namespace lumaphone
