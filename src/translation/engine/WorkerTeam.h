#pragma once

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

namespace lumaphone::engine {

/// A few threads that share very short pieces of work, hundreds of times per sentence. Between two rounds a
/// helper waits actively for some microseconds, and sleeps when nothing follows. The caller takes every piece
/// that no helper has begun: on a busy machine it never waits for a helper that does not get to run. One
/// thread at a time may call run().
class WorkerTeam
{
public:
    /// `members` counts the calling thread; at least 1.
    explicit WorkerTeam(int members);
    WorkerTeam(const WorkerTeam &) = delete;
    WorkerTeam &operator=(const WorkerTeam &) = delete;
    ~WorkerTeam();

    int members() const { return m_members; }

    /// Calls part(member, piece) once for every piece from 0 to pieces - 1 (at most 65,535) and returns when
    /// all have returned. `member` says who calls: two calls with the same one never overlap. `part` must not
    /// throw.
    template<class Part> void run(int pieces, const Part &part)
    {
        runErased(
            pieces,
            [](const void *object, int member, int piece) {
                (*static_cast<const Part *>(object))(member, piece);
            },
            &part);
    }

private:
    using Function = void (*)(const void *object, int member, int piece);

    void runErased(int pieces, Function function, const void *object);
    void help(int member);
    void takePieces(int member);

    const int m_members;
    // Valid while a piece of the current round is under way.
    Function m_function = nullptr;
    const void *m_object = nullptr;
    /// The round, its number of pieces and the next piece to take, in one word so that no one takes a piece
    /// of a round that is over.
    std::atomic<std::uint64_t> m_state = 0;
    std::atomic<int> m_unfinished = 0;
    std::atomic<std::uint32_t> m_alarm = 0; ///< changes with every round; what helpers sleep on
    std::atomic<bool> m_isClosing = false;
    std::vector<std::thread> m_helpers;
};

} // namespace lumaphone::engine
