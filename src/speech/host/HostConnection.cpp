#include "speech/host/HostConnection.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace lumaphone::host {

std::optional<Request> HostConnection::receive()
{
    std::array<std::uint8_t, 65536> bytes;
    while (true) {
        if (const auto content = m_frames.next()) {
            return decodeRequest(*content);
        }
        const ssize_t count = ::read(m_socket, bytes.data(), bytes.size());
        if (count > 0) {
            m_frames.append(std::span(bytes).first(static_cast<std::size_t>(count)));
        } else if (count == 0 || errno != EINTR) {
            return std::nullopt;
        }
    }
}

bool HostConnection::isClosed() const
{
    pollfd socket {m_socket, POLLRDHUP, 0};
    return ::poll(&socket, 1, 0) > 0 && (socket.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

void HostConnection::send(const Report &report)
{
    const Bytes frame = framed(encode(report));
    const std::lock_guard lock(m_sending);
    std::span<const std::uint8_t> left = frame;
    while (!left.empty()) {
        const ssize_t count = ::write(m_socket, left.data(), left.size());
        if (count > 0) {
            left = left.subspan(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return;
        }
    }
}

} // namespace lumaphone::host
