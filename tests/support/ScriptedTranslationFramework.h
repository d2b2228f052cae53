#pragma once

#include "platform/TranslationFramework.h"

#include <QHash>
#include <QList>
#include <QString>

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

namespace lumaphone::test {

/// A door that calls wait at until the test opens it. Open unless it was closed. Main thread.
class Door
{
public:
    void close() { m_isOpen = false; }
    /// Lets everybody through, those who wait in the order of their coming.
    void open();
    /// Lets the one through who came last. The door stays closed.
    void letLastThrough();
    int waiting() const { return static_cast<int>(m_waiting.size()); }

    /// To be awaited by who wants to pass.
    auto passed()
    {
        struct Awaiter
        {
            Door &door;

            bool await_ready() const { return door.m_isOpen; }
            void await_suspend(std::coroutine_handle<> caller) const { door.m_waiting.push_back(caller); }
            void await_resume() const { }
        };
        return Awaiter {*this};
    }

private:
    bool m_isOpen = true;
    std::vector<std::coroutine_handle<>> m_waiting;
};

/// A translation framework that does as it is told and remembers what it was asked. By default every pair is
/// installed and the translation of "x" is "<source>-><target>:x".
class ScriptedTranslationFramework final : public TranslationFramework
{
public:
    struct Call
    {
        QString pair; ///< such as "en->zh-Hant"
        QString text;
        bool operator==(const Call &) const = default;
    };

    // What happens; may be changed at any time.
    LanguageAvailabilityStatus availability = LanguageAvailabilityStatus::installed;
    bool isReady = true;
    bool preparingMakesReady = true;
    std::exception_ptr prepareError;
    std::exception_ptr translateError;
    std::function<QString(const QString &text)> translation;
    Door statusGate;
    Door readinessGate;
    Door prepareGate;
    Door translateGate;

    // What happened, in order.
    QList<QString> statusQuestions; ///< pairs
    QList<QString> sessionsMade; ///< pairs
    QList<QString> preparations; ///< pairs
    QList<Call> translations;

    QCoro::Task<LanguageAvailabilityStatus> status(LocaleLanguage source, LocaleLanguage target) override;
    std::shared_ptr<TranslationSession> makeSession(
        const LocaleLanguage &source, const LocaleLanguage &target) override;

private:
    class Session;
};

} // namespace lumaphone::test
