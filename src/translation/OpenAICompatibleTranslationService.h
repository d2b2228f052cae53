#pragma once

#include "translation/LumaphoneGlossaryPrompt.h"
#include "translation/provider/OpenAICompatibleProviderConfiguration.h"

#include <QCoroTask>
#include <QString>

#include <chrono>
#include <cstddef>
#include <memory>
#include <stop_token>

namespace lumaphone {

/// Translates caption texts into Taiwan Traditional Chinese with one chat-completions request each, and
/// remembers the translations used last. Main thread.
class OpenAICompatibleTranslationService
{
public:
    static constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(60);
    static constexpr std::size_t cacheCapacity = 1000;
    /// A successful response that is longer than this is not read to its end.
    static constexpr qint64 maximumResponseBytes = 2LL * 1024 * 1024;

    /// `timeout` bounds one whole exchange, redirections included.
    explicit OpenAICompatibleTranslationService(std::chrono::milliseconds timeout = defaultTimeout);
    /// What is under way fails with TransportError::Reason::cancelled, after the destructor has returned.
    ~OpenAICompatibleTranslationService();
    OpenAICompatibleTranslationService(const OpenAICompatibleTranslationService &) = delete;
    OpenAICompatibleTranslationService &operator=(const OpenAICompatibleTranslationService &) = delete;

    /// The translation of `text`; empty for blank text. `source` is the language code written into the
    /// prompt. Two equal calls under way make two requests.
    ///
    /// Requesting `stop`, on the main thread, aborts the request: the call ends with
    /// TransportError::Reason::cancelled in a later turn of the event loop, never inside request_stop().
    /// Giving the task up without requesting stop lets the request finish and its translation be remembered.
    ///
    /// Throws OpenAICompatibleTranslationError; TransportError when the request fails below HTTP;
    /// json::DecodingError when a successful response is not a chat completion. No error text holds the key.
    QCoro::Task<QString> translate(QString text, QString source,
        OpenAICompatibleProviderConfiguration configuration, LumaphoneGlossaryPrompt glossaryPrompt,
        std::stop_token stop = {});

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace lumaphone
