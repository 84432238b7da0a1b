// Replays inputs through a fuzz target without libFuzzer: every file named,
// and every file of every directory named. The ordinary test run uses it to
// replay the corpus and past findings.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "PQFuzz.h"

namespace {

int replay(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in),
                                  std::istreambuf_iterator<char>()};
    return LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), // NOLINT
                                  bytes.size());
}

} // namespace

int main(int argc, char** argv) {
    std::size_t replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path path(argv[i]);
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
                if (entry.is_regular_file()) {
                    replay(entry.path());
                    ++replayed;
                }
            }
        } else {
            replay(path);
            ++replayed;
        }
    }
    std::cout << replayed << " inputs replayed\n";
    return replayed == 0 ? 1 : 0;
}
