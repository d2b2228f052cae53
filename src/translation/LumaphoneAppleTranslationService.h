#pragma once

#include "platform/TranslationFramework.h"

#include <QCoroTask>
#include <QString>

#include <cstddef>
#include <memory>
#include <stop_token>

namespace lumaphone {

/// Translates caption texts on the device: one session per language pair, and the translations used last are
/// remembered. Main thread.
///
/// Requesting `stop`, on the main thread, asks the framework to end its call early; the framework's error
/// then reaches the caller.
class LumaphoneAppleTranslationService
{
public:
    static constexpr std::size_t cacheCapacity = 2000;

    /// `framework` outlives the service and every call under way.
    explicit LumaphoneAppleTranslationService(TranslationFramework &framework);
    ~LumaphoneAppleTranslationService();
    LumaphoneAppleTranslationService(const LumaphoneAppleTranslationService &) = delete;
    LumaphoneAppleTranslationService &operator=(const LumaphoneAppleTranslationService &) = delete;

    /// The translation of `text`; empty for blank text, and the trimmed text itself when both identifiers
    /// name the same language. Throws LumaphoneAppleTranslationError, or what the framework throws.
    QCoro::Task<QString> translate(QString text, QString source, QString target, std::stop_token stop = {});

    /// Makes the pair's session ready ahead of the first translation. Throws as translate() does.
    QCoro::Task<> prepare(QString source, QString target, std::stop_token stop = {});

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace lumaphone
