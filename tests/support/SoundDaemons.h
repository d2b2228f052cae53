#pragma once

#include <QString>

namespace lumaphone::test {

/// The processes of a sound server of the test's own, none of which touches hardware. Failures throw
/// std::runtime_error.
class SoundDaemons
{
public:
    virtual ~SoundDaemons() = default;

    /// Where they listen.
    virtual QString socketPath() const = 0;
    /// Starts them, also again after kill(). Returns when they answer.
    virtual void start() = 0;
    virtual void kill() = 0;
    /// To all of them, such as SIGSTOP.
    virtual void signal(int number) = 0;
};

} // namespace lumaphone::test
