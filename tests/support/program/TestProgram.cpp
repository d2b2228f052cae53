#include "support/program/TestProgram.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

namespace lumaphone::test {

namespace {

std::map<std::string_view, TestRun> &runs()
{
    static std::map<std::string_view, TestRun> all;
    return all;
}

} // namespace

RegisteredTest::RegisteredTest(const char *name, TestRun run)
{
    if (!runs().emplace(name, run).second) {
        std::fprintf(stderr, "There are two tests of the name %s.\n", name);
        std::abort();
    }
}

} // namespace lumaphone::test

int main(int argc, char *argv[])
{
    const auto &runs = lumaphone::test::runs();
    const auto chosen = argc > 1 ? runs.find(argv[1]) : runs.end();
    if (chosen != runs.end()) {
        argv[1] = argv[0];
        return chosen->second(argc - 1, argv + 1);
    }
    std::fprintf(stderr, "Usage: %s TEST [OPTION...]\nThe tests are:\n", argv[0]);
    for (const auto &[name, run] : runs) {
        std::fprintf(stderr, "  %s\n", name.data());
    }
    return 2;
}
