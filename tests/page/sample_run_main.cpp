// Writes a run as a page and as JSON, for the browser test and the benchmark of the page.
// usage: page-sample-run hostile|large PAGE JSON
#include <fstream>
#include <iostream>
#include <string>

#include "cli/catalogue/catalogue.h"
#include "cli/report/reports.h"
#include "tests/support/program/sample_runs.h"

namespace {

using namespace pkgvet::cli;

constexpr std::size_t kManyPackages = 10000;
constexpr std::size_t kFindingsOfRejected = 32;
constexpr std::size_t kUsedRules = 64;
constexpr std::size_t kOddPackages = 20;  // one in so many was not judged
constexpr std::size_t kLongName = 4000;

// What a page must show as text, and nothing else must come of.
std::vector<std::string> hostileTexts() {
    return {"<img src=x onerror=\"document.title='taken'\">",
            "</script><script>document.title='taken'</script>",
            "</noscript></main><h1>taken</h1>",
            "\"'><style>*{display:none}</style>",
            "<!-- --!> ]]> &lt;b&gt; &amp; {{data}}",
            "javascript:document.title='taken'",
            "a\x1b[31m\r\n\tb\x7f",
            "gpj.\u202eexe.\u2066rpm\u2069",
            "\u05d0\u05d1\u05d2 123 (\u05d3)",
            "line\u2028and\u2029paragraph",
            "bytes \xff\xfe\x80 beyond UTF-8",
            std::string(kLongName, 'W'),
            "$& $1 `$` \\u003c"};
}

RunReport hostileRun() {
    std::vector<PackageReport> packages;
    for (const std::string& text : hostileTexts()) {
        PackageReport one = package(
            {judgement({findingAbout(text, "path-not-allowed", Severity::Error, "About " + text),
                        finding("other-remark", Severity::Info, text)})});
        one.path = one.name = one.version = text;
        one.sha256 = std::string(64, static_cast<char>('a' + packages.size() % 6)) +
                     std::to_string(packages.size());
        packages.push_back(one);
        PackageReport broken = unreadable(text + "/broken", text);
        broken.lastErrorLine = text;
        packages.push_back(broken);
    }
    RunReport run = runOf(std::move(packages));
    run.notices = hostileTexts();
    return run;
}

std::string hexadecimal(std::size_t number) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text(64, '0');
    for (char& digit : text) {
        number = number * 6364136223846793005U + 1442695040888963407U;
        digit = kDigits[number >> 60U];
    }
    return text;
}

Finding findingOf(const std::string& name, std::size_t number) {
    const std::vector<const Entry*>& all = entries();
    const Entry& entry = *all[(number * number + number / 3) % kUsedRules];
    return findingAbout("/usr/share/" + name + "/lib/component" + std::to_string(number) + ".so",
                        std::string(entry.id), entry.severity, std::string(entry.title));
}

PackageReport ordinaryPackage(std::size_t number) {
    const std::string name = "org.example.application" + std::to_string(number);
    std::vector<Finding> findings;
    for (std::size_t i = 0; i < kFindingsOfRejected && number % 3 == 0; ++i) {
        findings.push_back(findingOf(name, number + i));
    }
    PackageReport one = package({judgement(std::move(findings))});
    one.name = name;
    one.path = "incoming/" + name + "-1.0-1.aarch64.rpm";
    one.arch = "aarch64";
    one.sha256 = hexadecimal(number);
    if (number % kOddPackages == 1) {
        one.judgements.clear();
        one.setCause({CauseCode::OutOfTime, "it took longer than 120 seconds"});
    }
    return one;
}

// A night's run with a hundred thousand findings, on a third of its packages.
RunReport largeRun() {
    std::vector<PackageReport> packages;
    for (std::size_t i = 0; i < kManyPackages; ++i) {
        packages.push_back(ordinaryPackage(i));
    }
    return runOf(std::move(packages));
}

void write(Format format, const RunReport& run, const char* path) {
    std::ofstream file(path);
    writeReport(format, run, {}, file);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: page-sample-run hostile|large PAGE JSON\n";
        return 2;
    }
    const RunReport run = std::string(argv[1]) == "large" ? largeRun() : hostileRun();
    write(Format::Html, run, argv[2]);
    write(Format::Json, run, argv[3]);
    return 0;
}
