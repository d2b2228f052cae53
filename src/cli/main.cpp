#include "base/CoreDumps.h"
#include "cli/RunCommand.h"
#include "cli/StandardStreams.h"
#include "machine/Machine.h"

#include <QCoreApplication>

#include <langinfo.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>

using namespace lumaphone;
using namespace lumaphone::cli;

namespace {

/// Captions are UTF-8, whatever the locale of the shell.
void ensureUtf8()
{
    std::setlocale(LC_ALL, "");
    if (qstrcmp(nl_langinfo(CODESET), "UTF-8") != 0) {
        ::setenv(std::getenv("LC_ALL") != nullptr ? "LC_ALL" : "LC_CTYPE", "C.UTF-8", 1);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    forgoCoreDumps();
    ensureUtf8();
    const QCoreApplication application(argc, argv);
    const CommandStreams streams {descriptorSink(STDOUT_FILENO), descriptorSink(STDERR_FILENO)};
    Machine machine;
    try {
        return runCommand(parseCommandLine(QCoreApplication::arguments().mid(1)), machine, streams);
    } catch (const UsageError &error) {
        streams.complain(error.errorDescription());
        streams.complain(QStringLiteral("「lumaphone-cli --help」說明用法。"));
        return exitUsage;
    } catch (const std::exception &error) {
        streams.complain(localizedDescription(error));
        return exitFailure;
    }
}
