// The revision helper: reads one request from standard input to its end, answers it on standard output and
// exits with status 0. A request it does not understand ends it with status 1 and no output.

#include "session/revision/CoreRevisionExchange.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <exception>
#include <optional>

namespace {

std::optional<QByteArray> readStandardInput()
{
    QByteArray bytes;
    char block[16384];
    for (;;) {
        const ssize_t count = ::read(STDIN_FILENO, block, sizeof block);
        if (count == 0) {
            return bytes;
        }
        if (count > 0) {
            bytes.append(block, count);
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
}

bool writeStandardOutput(const QByteArray &bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count
            = ::write(STDOUT_FILENO, bytes.constData() + written, std::size_t(bytes.size() - written));
        if (count >= 0) {
            written += count;
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

} // namespace

int main()
{
    using namespace lumaphone;
    const auto input = readStandardInput();
    if (!input) {
        return EXIT_FAILURE;
    }
    try {
        return writeStandardOutput(answerOfTheRule(*input)) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception &) {
        return EXIT_FAILURE;
    }
}
