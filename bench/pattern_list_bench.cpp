// A list of rule patterns against the paths of a large package: each pattern compiled for each
// path, as the plain reading has it, compiled once, and as PatternList does it.
#include <benchmark/benchmark.h>

#include <regex>
#include <string>
#include <vector>

#include "pkgvet/pattern/pattern_list.h"

namespace {

constexpr int kPatterns = 200;
constexpr int kPaths = 10000;
// The plain reading takes half a minute for all paths.
constexpr int kFewPaths = 100;

std::vector<std::string> patterns() {
    std::vector<std::string> list;
    for (int i = 0; i < kPatterns; ++i) {
        list.push_back("/usr/share/listed-" + std::to_string(i) + R"(/file\.txt)");
    }
    return list;
}

std::vector<std::string> paths(int count) {
    std::vector<std::string> list;
    for (int i = 0; i < count; ++i) {
        list.push_back("/usr/share/application/data/file-" + std::to_string(i));
    }
    return list;
}

void compiledForEachPath(benchmark::State& state) {
    const auto list = patterns();
    const auto subjects = paths(kFewPaths);
    for (auto _ : state) {
        for (const std::string& path : subjects) {
            for (const std::string& pattern : list) {
                benchmark::DoNotOptimize(std::regex_match(path, std::regex(pattern)));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kFewPaths);
}
BENCHMARK(compiledForEachPath)->Unit(benchmark::kMillisecond);

void compiledOnce(benchmark::State& state) {
    const auto subjects = paths(kPaths);
    for (auto _ : state) {
        std::vector<std::regex> list;
        for (const std::string& pattern : patterns()) {
            list.emplace_back(pattern);
        }
        for (const std::string& path : subjects) {
            for (const std::regex& pattern : list) {
                benchmark::DoNotOptimize(std::regex_match(path, pattern));
            }
        }
    }
    state.SetItemsProcessed(state.iterations() * kPaths);
}
BENCHMARK(compiledOnce)->Unit(benchmark::kMillisecond);

void patternList(benchmark::State& state) {
    const auto subjects = paths(kPaths);
    for (auto _ : state) {
        pkgvet::PatternList list(patterns());
        for (const std::string& path : subjects) {
            benchmark::DoNotOptimize(list.matches(path));
        }
    }
    state.SetItemsProcessed(state.iterations() * kPaths);
}
BENCHMARK(patternList)->Unit(benchmark::kMillisecond);

}  // namespace
