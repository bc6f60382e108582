// Holds records against one another.
#include <algorithm>
#include <iterator>

#include "cli/base/escape.h"
#include "cli/base/text.h"
#include "cli/statement/stored_record.h"

namespace pkgvet::cli {

namespace {

constexpr std::size_t kMostNames = 3;

using Tests = std::vector<std::string>;

std::string describe(const RecordedInput& input) {
    std::vector<std::string> parts = {printable(input.name)};
    if (!input.uri.empty()) {
        parts.push_back(printable(input.uri));
    }
    for (const auto& [name, value] : input.annotations) {
        parts.push_back(printable(name) + " " + printable(value));
    }
    parts.push_back("sha256 " + input.digest.substr(0, 12));
    return joined(parts, " ");
}

// The inputs of one record that the other one does not have.
std::vector<std::string> missingIn(const Record& other, const Record& record) {
    std::vector<std::string> missing;
    for (const RecordedInput& input : record.configuration) {
        const auto& all = other.configuration;
        if (std::find(all.begin(), all.end(), input) == all.end()) {
            missing.push_back(describe(input));
        }
    }
    return missing;
}

std::string orNone(const std::vector<std::string>& texts) {
    if (texts.empty()) {
        return "none";
    }
    const std::size_t shown = std::min(kMostNames, texts.size());
    const std::string rest =
        shown < texts.size() ? " and " + std::to_string(texts.size() - shown) + " more" : "";
    return joined(std::vector<std::string>(texts.begin(),
                                           texts.begin() + static_cast<std::ptrdiff_t>(shown)),
                  ", ") +
           rest;
}

std::vector<std::string> only(const Tests& some, const Tests& others) {
    std::vector<std::string> result;
    for (const std::string& test : some) {
        if (std::find(others.begin(), others.end(), test) == others.end()) {
            result.push_back(printable(test));
        }
    }
    return result;
}

std::string difference(const char* what, const std::vector<std::string>& told,
                       const std::vector<std::string>& found) {
    return std::string(what) + ": " + orNone(told) + " in the record, " + orNone(found) + " here";
}

void compareTests(const char* what, const Tests& told, const Tests& found,
                  std::vector<std::string>* differences) {
    if (told != found) {
        differences->push_back(difference(what, only(told, found), only(found, told)));
    }
}

}  // namespace

std::vector<std::string> differencesBetween(const Record& told, const Record& found) {
    std::vector<std::string> differences;
    if (told.package != found.package || told.sha256 != found.sha256) {
        differences.push_back(difference("subject",
                                         {printable(told.package) + " sha256 " + told.sha256},
                                         {found.package + " sha256 " + found.sha256}));
    }
    if (told.configuration != found.configuration) {
        differences.push_back(
            difference("configuration", missingIn(found, told), missingIn(told, found)));
    }
    if (told.result != found.result) {
        differences.push_back(difference("result", {told.result}, {found.result}));
    }
    compareTests("failed tests", told.failedTests, found.failedTests, &differences);
    compareTests("warned tests", told.warnedTests, found.warnedTests, &differences);
    compareTests("passed tests", told.passedTests, found.passedTests, &differences);
    return differences;
}

}  // namespace pkgvet::cli
