// Runs a target on files, without libFuzzer: each argument is a file, or a directory of them.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesBelow(const fs::path& path) {
    if (!fs::is_directory(path)) {
        return {path};
    }
    std::vector<fs::path> files(fs::directory_iterator(path), {});
    std::sort(files.begin(), files.end());
    return files;
}

// The input lies in a block of its exact size, behind which a sanitizer sees every step.
void replay(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    const std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    LLVMFuzzerInitialize(&argc, &argv);
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path& file : filesBelow(argv[i])) {
            replay(file);
            ++count;
        }
    }
    // A corpus that got lost must not pass.
    return count > 0 ? 0 : 1;
}
