// What follows from the data of a run.
#include "cli/model/model.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <numeric>

namespace pkgvet::cli {

namespace {

// Indexed by Severity.
constexpr std::array<std::string_view, 4> kSeverityNames = {"info", "warning", "error", "critical"};

// Indexed by CauseCode.
constexpr std::array<std::string_view, 11> kCauseCodeNames = {
    "",          "unreadable",     "not-a-package", "unpack-failed",
    "too-large", "too-many-files", "out-of-time",   "out-of-memory",
    "crashed",   "rule-failed",    "interrupted"};

// Half of a SHA-256 is plenty to tell findings apart, and shorter to read.
constexpr std::size_t kFingerprintSize = 32;
// No name holds it, so that two texts never run into one another.
constexpr char kSeparator = '\0';

// A cause may quote a package, and is repeated wherever the package is mentioned.
constexpr std::size_t kMostOfACause = 4096;
constexpr const char* kCutHere = "...";

bool continuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U;
}

// The beginning of text, without part of a character at its end.
std::string beginningOf(const std::string& text, std::size_t size) {
    constexpr std::size_t kMostContinuations = 3;
    std::size_t end = size;
    while (end + kMostContinuations > size && continuesCharacter(text[end])) {
        --end;
    }
    return text.substr(0, end);
}

}  // namespace

std::string LogLine::text() const {
    return std::accumulate(pieces.begin(), pieces.end(), std::string());
}

void PackageReport::setCause(const Cause& why) {
    causeCode = why.code;
    cause = why.text.size() <= kMostOfACause ? why.text
                                             : beginningOf(why.text, kMostOfACause) + kCutHere;
}

bool PackageReport::passes() const {
    return judged() && std::all_of(judgements.begin(), judgements.end(),
                                   [](const Judgement& judgement) { return judgement.passes; });
}

void PackageTally::add(const PackageReport& package) {
    if (!package.judged()) {
        ++notJudged;
    } else {
        ++(package.passes() ? accepted : rejected);
    }
}

std::string_view causeCodeName(CauseCode code) {
    return kCauseCodeNames[static_cast<std::size_t>(code)];
}

std::string_view severityName(Severity severity) {
    return kSeverityNames[static_cast<std::size_t>(severity)];
}

std::string fingerprintOf(const std::string& packageName, const Finding& finding) {
    const std::string identity = finding.rule + kSeparator + packageName + kSeparator +
                                 finding.subject.value_or(std::string());
    const std::unique_ptr<char, decltype(&g_free)> hash(
        g_compute_checksum_for_data(
            G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(identity.data()), identity.size()),
        &g_free);
    return std::string(hash.get(), kFingerprintSize);
}

}  // namespace pkgvet::cli
