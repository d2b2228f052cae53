#pragma once

#include <QString>

#include <sys/types.h>

namespace lumaphone {

/// A running speech host and the program's end of its socket, which does not block. The host dies with the
/// thread that made this object.
class SpeechHostProcess
{
public:
    /// Starts the host. Throws SpeechFrameworkError.
    explicit SpeechHostProcess(const QString &program);
    /// Ends it at once, and waits for that.
    ~SpeechHostProcess();
    SpeechHostProcess(const SpeechHostProcess &) = delete;
    SpeechHostProcess &operator=(const SpeechHostProcess &) = delete;

    int socket() const { return m_socket; }
    pid_t processId() const { return m_process; }

private:
    int m_socket = -1;
    pid_t m_process = -1;
};

} // namespace lumaphone
