// Writes faults.
#include "cli/base/fault.h"

#include <glib.h>

#include <set>
#include <tuple>

#include "cli/base/escape.h"

namespace pkgvet::cli {

namespace {

// In characters; what is longer is recognised by its beginning.
constexpr glong kLongestValue = 80;

std::string shortened(const std::string& value) {
    std::string text = printable(value);
    if (g_utf8_strlen(text.data(), -1) <= kLongestValue) {
        return text;
    }
    const char* const end = g_utf8_offset_to_pointer(text.data(), kLongestValue);
    return text.substr(0, static_cast<std::size_t>(end - text.data())) + "...";
}

std::string subjectOf(const Fault& fault) {
    if (!fault.value.empty()) {
        return shortened(fault.value) + " ";
    }
    if (fault.key.empty()) {
        return std::string();
    }
    return std::string("\"").append(printable(fault.key)).append("\" ");
}

}  // namespace

std::string describe(const Fault& fault) {
    std::string line = printable(fault.file);
    if (fault.position.line != 0) {
        line.append(":").append(std::to_string(fault.position.line));
        line.append(":").append(std::to_string(fault.position.column));
    }
    return line.append(": ").append(subjectOf(fault)).append(printable(fault.cause));
}

std::vector<Fault> eachOnce(const std::vector<Fault>& faults) {
    std::vector<Fault> unique;
    // The order in which faults were found is that of the file, so sorting will not do.
    std::set<std::tuple<std::string, std::string, std::string>> seen;
    for (const Fault& fault : faults) {
        if (seen.emplace(fault.file, fault.key, fault.cause).second) {
            unique.push_back(fault);
        }
    }
    return unique;
}

}  // namespace pkgvet::cli
