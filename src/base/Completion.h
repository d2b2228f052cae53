#pragma once

#include "base/MainQueue.h"
#include "base/SerialQueue.h"

#include <QCoroTask>

#include <coroutine>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

namespace lumaphone {

namespace detail {
template<typename T> using CompletionValue = std::conditional_t<std::is_void_v<T>, std::monostate, T>;
}

/// One answer, given on any thread and awaited once on the main thread:
///
///     Completion<int> answer(mainQueue);
///     startSomething([answer] { answer.resolve(42); });
///     const int value = co_await answer;
///
/// Copies share the same state. The first resolve() or fail() counts, later ones are ignored.
template<typename T = void> class Completion
{
    struct State
    {
        std::mutex mutex;
        std::optional<detail::CompletionValue<T>> value;
        std::exception_ptr error;
        std::coroutine_handle<> waiting;
    };

public:
    explicit Completion(std::shared_ptr<MainQueue> mainQueue)
        : m_mainQueue(std::move(mainQueue))
        , m_state(std::make_shared<State>())
    {
    }

    void resolve(detail::CompletionValue<T> value = {}) const
    {
        settle([&value](State &state) { state.value.emplace(std::move(value)); });
    }

    void fail(std::exception_ptr error) const
    {
        settle([&error](State &state) { state.error = std::move(error); });
    }

    bool await_ready() const
    {
        const std::lock_guard lock(m_state->mutex);
        return isSettled(*m_state);
    }

    bool await_suspend(std::coroutine_handle<> waiting) const
    {
        const std::lock_guard lock(m_state->mutex);
        if (isSettled(*m_state)) {
            return false;
        }
        m_state->waiting = waiting;
        return true;
    }

    /// Awaits the same answer, but never goes on at once: whoever awaits it gives way to its caller first,
    /// even where the answer is there already.
    auto inTurn() const
    {
        struct InTurn
        {
            const Completion *completion;

            bool await_ready() const { return false; }
            void await_suspend(std::coroutine_handle<> waiting) const
            {
                if (!completion->await_suspend(waiting)) {
                    completion->m_mainQueue->post([waiting] { waiting.resume(); });
                }
            }
            T await_resume() const { return completion->await_resume(); }
        };
        return InTurn {this};
    }

    T await_resume() const
    {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->error) {
            std::rethrow_exception(m_state->error);
        }
        if constexpr (!std::is_void_v<T>) {
            return std::move(*m_state->value);
        }
    }

private:
    static bool isSettled(const State &state) { return state.value.has_value() || state.error; }

    template<typename Change> void settle(Change change) const
    {
        std::coroutine_handle<> waiting;
        {
            const std::lock_guard lock(m_state->mutex);
            if (isSettled(*m_state)) {
                return;
            }
            change(*m_state);
            waiting = std::exchange(m_state->waiting, nullptr);
        }
        if (waiting) {
            m_mainQueue->post([waiting] { waiting.resume(); });
        }
    }

    std::shared_ptr<MainQueue> m_mainQueue;
    std::shared_ptr<State> m_state;
};

/// Runs `work` on a thread of its own and hands its result, or its exception, to the awaiting main thread,
/// never before the event loop has its turn.
template<typename Work>
QCoro::Task<std::invoke_result_t<Work>> runInBackground(
    std::shared_ptr<MainQueue> mainQueue, std::string threadName, Work work)
{
    using Result = std::invoke_result_t<Work>;
    const Completion<Result> done(std::move(mainQueue));
    std::jthread thread([done, threadName = std::move(threadName), work = std::move(work)]() mutable {
        nameCurrentThread(threadName);
        try {
            if constexpr (std::is_void_v<Result>) {
                work();
                done.resolve();
            } else {
                done.resolve(work());
            }
        } catch (...) {
            done.fail(std::current_exception());
        }
    });
    // The thread's last act is the answer, so joining it at the end of this scope never waits for work.
    co_return co_await done.inTurn();
}

} // namespace lumaphone
