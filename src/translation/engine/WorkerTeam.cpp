#include "translation/engine/WorkerTeam.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

#include <pthread.h>

#include <algorithm>

namespace lumaphone::engine {
namespace {

// About as long as putting a thread to sleep and waking it takes.
constexpr int activeRounds = 1000;

constexpr std::uint64_t pieceMask = 0xFFFF;
constexpr unsigned countShift = 16;
constexpr unsigned roundShift = 32;

void pause()
{
#if defined(__x86_64__)
    _mm_pause();
#endif
}

/// Returns once `value` differs from `old`.
template<class Value> void waitForChange(const std::atomic<Value> &value, Value old)
{
    for (int round = 0; round < activeRounds; ++round) {
        if (value.load(std::memory_order_acquire) != old)
            return;
        pause();
    }
    value.wait(old, std::memory_order_acquire);
}

} // namespace

WorkerTeam::WorkerTeam(int members)
    : m_members(std::max(1, members))
{
    for (int member = 1; member < m_members; ++member)
        m_helpers.emplace_back([this, member] { help(member); });
}

WorkerTeam::~WorkerTeam()
{
    m_isClosing = true;
    m_alarm.fetch_add(1, std::memory_order_release);
    m_alarm.notify_all();
    for (std::thread &helper : m_helpers)
        helper.join();
}

void WorkerTeam::runErased(int pieces, Function function, const void *object)
{
    if (m_helpers.empty() || pieces == 1) {
        for (int piece = 0; piece < pieces; ++piece)
            function(object, 0, piece);
        return;
    }
    m_function = function;
    m_object = object;
    m_unfinished.store(pieces, std::memory_order_relaxed);
    const std::uint32_t round = m_alarm.load(std::memory_order_relaxed) + 1;
    m_state.store(
        std::uint64_t(round) << roundShift | std::uint64_t(pieces) << countShift, std::memory_order_release);
    m_alarm.store(round, std::memory_order_release);
    m_alarm.notify_all();
    takePieces(0);
    for (int left = m_unfinished.load(std::memory_order_acquire); left != 0;
         left = m_unfinished.load(std::memory_order_acquire))
        waitForChange(m_unfinished, left);
}

void WorkerTeam::takePieces(int member)
{
    std::uint64_t state = m_state.load(std::memory_order_acquire);
    while ((state & pieceMask) < (state >> countShift & pieceMask)) {
        if (!m_state.compare_exchange_weak(
                state, state + 1, std::memory_order_acq_rel, std::memory_order_acquire))
            continue;
        m_function(m_object, member, int(state & pieceMask));
        if (m_unfinished.fetch_sub(1, std::memory_order_acq_rel) == 1)
            m_unfinished.notify_one();
        state = m_state.load(std::memory_order_acquire);
    }
}

void WorkerTeam::help(int member)
{
    pthread_setname_np(pthread_self(), "translation");
    std::uint32_t seen = 0;
    while (!m_isClosing) {
        waitForChange(m_alarm, seen);
        seen = m_alarm.load(std::memory_order_acquire);
        takePieces(member);
    }
}

} // namespace lumaphone::engine
