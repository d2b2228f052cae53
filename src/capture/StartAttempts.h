#pragma once

#include <QCoroTask>

#include <memory>

namespace lumaphone {

/// Counts the starts and stops of one thing, such as a pipeline: a start that is not the latest of them ends
/// quietly. Part of that thing; main thread.
class StartAttempts
{
public:
    /// A start or a stop. Attempts before it are void.
    int begin() { return ++m_latest; }
    bool isLatest(int attempt) const { return attempt == m_latest; }

    /// Starts the pipeline that this is part of by `run`. What `run` throws counts as long as the attempt
    /// does.
    template<typename Pipeline>
    QCoro::Task<> start(std::shared_ptr<Pipeline> pipeline, QCoro::Task<> (Pipeline::*run)(int attempt))
    {
        const int attempt = begin();
        try {
            co_await ((*pipeline).*run)(attempt);
        } catch (...) {
            if (isLatest(attempt)) {
                throw;
            }
        }
    }

private:
    int m_latest = 0;
};

} // namespace lumaphone
