// runtime/fuzz/seed_main.cpp: replays every file of a seed folder through a fuzz target once.
//
//   fuzz_format_seeds runtime/fuzz/corpus/format     prints "N passed, 0 failed"
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s SEED_FOLDER\n", argv[0]);
        return 2;
    }
    std::error_code error;
    std::vector<fs::path> seeds;
    for (fs::directory_iterator it(argv[1], error), end; !error && it != end; it.increment(error))
        if (it->is_regular_file(error)) seeds.push_back(it->path());
    if (error) {
        std::fprintf(stderr, "Cannot list '%s': %s\n", argv[1], error.message().c_str());
        return 2;
    }
    std::sort(seeds.begin(), seeds.end());

    int passed = 0;
    int failed = 0;
    for (const fs::path& seed : seeds) {
        std::ifstream in(seed, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (in.bad() || !in.is_open()) {
            std::fprintf(stderr, "Cannot read '%s'\n", seed.c_str());
            ++failed;
            continue;
        }
        if (LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()) == 0) {
            ++passed;
        } else {
            std::fprintf(stderr, "Failed: '%s'\n", seed.c_str());
            ++failed;
        }
    }
    std::printf("%d passed, %d failed\n", passed, failed);
    if (passed == 0) std::fprintf(stderr, "No seeds in '%s'\n", argv[1]);
    return failed == 0 && passed > 0 ? 0 : 1;
}
