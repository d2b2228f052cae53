#pragma once

#include "speech/protocol/FrameReader.h"
#include "speech/protocol/SpeechHostMessages.h"

#include <mutex>

namespace lumaphone::host {

/// The host's end of the socket. One thread receives; any may send.
class HostConnection
{
public:
    explicit HostConnection(int socket)
        : m_socket(socket)
    {
    }

    /// Waits for the next request. None when the program has gone. Throws WireError.
    std::optional<Request> receive();
    /// Whether the program has gone, without waiting or receiving.
    bool isClosed() const;
    /// Waits until it is sent. Nothing happens when the program has gone.
    void send(const Report &report);

private:
    const int m_socket;
    FrameReader m_frames;
    std::mutex m_sending;
};

} // namespace lumaphone::host
