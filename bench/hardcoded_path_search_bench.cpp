// The search for hard-coded paths in a large file, beside plain reading of the same file.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>

#include "pkgvet/base/regular_file.h"
#include "pkgvet/files/hardcoded_path_search.h"

namespace {

constexpr std::size_t kFileSize = 400 * 1000 * 1000;
constexpr std::size_t kPieceSize = 256 * 1024;

// What a file is filled with; none holds the path.
enum Content { kBinary, kSlashes, kBlanks, kPartialMatches, kStarts, kRandomStarts, kContents };

constexpr const char* kNames[kContents] = {"binary",          "slashes", "blanks",
                                           "partial matches", "starts",  "random starts"};

std::string repeated(const std::string& text, std::size_t size) {
    std::string result;
    while (result.size() < size) {
        result += text;
    }
    result.resize(size);
    return result;
}

// A piece that the file repeats.
std::string pieceOf(Content content) {
    std::mt19937 engine(1);
    std::string piece(kPieceSize, ' ');
    switch (content) {
        case kBinary:
            for (char& c : piece) {
                c = static_cast<char>(engine());
            }
            return piece;
        case kSlashes:
            return repeated("/", kPieceSize);
        case kPartialMatches:
            return repeated("/home/defaultuse", kPieceSize);
        case kStarts:
            return repeated("/h", kPieceSize);
        case kRandomStarts:
            for (char& c : piece) {
                c = "/h "[engine() % 3];
            }
            return piece;
        default:
            return piece;
    }
}

// A file in the directory of temporary files, gone with the object.
class LargeFile {
public:
    explicit LargeFile(Content content) {
        const int descriptor = mkstemp(path_.data());
        const std::string piece = pieceOf(content);
        for (std::size_t size = 0; size < kFileSize && descriptor >= 0; size += piece.size()) {
            if (write(descriptor, piece.data(), piece.size()) < 0) {
                break;
            }
        }
        close(descriptor);
    }
    LargeFile(const LargeFile&) = delete;
    LargeFile(LargeFile&&) = delete;
    LargeFile& operator=(const LargeFile&) = delete;
    LargeFile& operator=(LargeFile&&) = delete;
    ~LargeFile() { unlink(path_.c_str()); }

    const std::string& path() const { return path_; }

private:
    std::string path_ = "/tmp/pkgvet-bench.XXXXXX";
};

void measure(benchmark::State& state, const std::function<void(const std::string&)>& work) {
    const auto content = static_cast<Content>(state.range(0));
    const LargeFile file(content);
    for (auto _ : state) {
        work(file.path());
    }
    state.SetLabel(kNames[content]);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kFileSize));
}

// Reads path in pieces and gives each to use.
void readInPieces(const std::string& path, const std::function<void(const std::string&)>& use) {
    pkgvet::RegularFileReader file(path);
    std::string piece;
    while (file.remaining() > 0) {
        piece.resize(kPieceSize);
        file.read(&piece);
        use(piece);
    }
}

void plainReading(benchmark::State& state) {
    measure(state, [](const std::string& path) {
        readInPieces(path,
                     [](const std::string& piece) { benchmark::DoNotOptimize(piece.data()); });
    });
}

void search(benchmark::State& state) {
    measure(state, [](const std::string& path) {
        benchmark::DoNotOptimize(pkgvet::HardcodedPathFinder().isIn(path));
    });
}

// What the search is defined by, and how it would be written at first.
void formattedStream(benchmark::State& state) {
    measure(state, [](const std::string& path) {
        std::ifstream stream(path, std::ios::binary);
        std::size_t slashes = 0;
        for (std::istream_iterator<char> next(stream), end; next != end; ++next) {
            slashes += *next == '/' ? 1 : 0;
        }
        benchmark::DoNotOptimize(slashes);
    });
}

BENCHMARK(plainReading)->Arg(kBinary)->Unit(benchmark::kMillisecond);
BENCHMARK(search)->DenseRange(kBinary, kRandomStarts)->Unit(benchmark::kMillisecond);
BENCHMARK(formattedStream)->Arg(kBinary)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
