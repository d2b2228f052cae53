#include "cli/StandardStreams.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace lumaphone::cli {

ByteSink descriptorSink(int descriptor)
{
    return [descriptor](const QByteArray &bytes) {
        qsizetype written = 0;
        while (written < bytes.size()) {
            const ssize_t count = ::write(
                descriptor, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
            if (count < 0 && errno != EINTR) {
                return;
            }
            written += count > 0 ? count : 0;
        }
    };
}

std::optional<int> terminalColumnsOf(int descriptor)
{
    winsize size = {};
    if (::isatty(descriptor) == 0 || ::ioctl(descriptor, TIOCGWINSZ, &size) != 0) {
        return std::nullopt;
    }
    return size.ws_col > 0 ? size.ws_col : 80;
}

} // namespace lumaphone::cli
