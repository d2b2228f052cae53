// Stands in for libFuzzer where it is not built in: runs every file of the given folders once.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char **argv)
{
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        if (argv[i][0] == '-') {
            continue; // an option for the fuzzer
        }
        for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (!entry.is_regular_file()) {
                continue;
            }
            std::ifstream stream(entry.path(), std::ios::binary);
            // Exactly as large as the input, so that a sanitizer sees every step beyond it.
            const std::vector<char> bytes {
                std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
            ++files;
        }
    }
    std::printf("%d inputs replayed\n", files);
    return files > 0 ? 0 : 1;
}
