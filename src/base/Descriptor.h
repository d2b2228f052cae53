#pragma once

#include <QByteArrayView>

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace lumaphone {

/// Owns a file descriptor.
class Descriptor
{
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor()
    {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    Descriptor(Descriptor &&other) noexcept
        : m_fd(std::exchange(other.m_fd, -1))
    {
    }
    Descriptor &operator=(Descriptor &&) = delete;

    /// Negative if there is none.
    int get() const { return m_fd; }
    /// Closes now and reports whether the system had to say something about it.
    bool close() { return ::close(std::exchange(m_fd, -1)) == 0; }

private:
    int m_fd;
};

/// Writes all of it; false, with errno set, if the system refuses.
inline bool writeAll(int fd, QByteArrayView bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count
            = ::write(fd, bytes.data() + written, static_cast<std::size_t>(bytes.size() - written));
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        written += count;
    }
    return true;
}

} // namespace lumaphone
