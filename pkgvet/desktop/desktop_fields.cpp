// The rules that every key of a group has a permitted value, or a colour.
#include <algorithm>
#include <regex>
#include <string>
#include <unordered_map>
#include <vector>

#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

// Three digits are accepted too, although the message names six only.
constexpr const char* kColor = "^#([A-Fa-f0-9]{6}|[A-Fa-f0-9]{3})$";

// The values of the list that are not permitted.
std::vector<std::string> invalidValues(const std::string& group, const std::string& field,
                                       const WordSet& values, const DesktopEntry& entry) {
    std::vector<std::string> invalid = entry.stringList(group, field);
    std::erase_if(invalid, [&](const std::string& value) { return values.count(value) != 0; });
    return invalid;
}

void reportValues(const std::string& group, const std::string& field,
                  const std::vector<std::string>& invalid, Findings* findings) {
    for (const std::string& value : invalid) {
        findings->violation(kValueInvalid, {value, group, field});
    }
}

}  // namespace

void validateDesktopEntryFieldStringValues(const std::string& group, const std::string& field,
                                           const WordSet& values, const DesktopEntry& entry,
                                           Findings* findings) {
    reportValues(group, field, invalidValues(group, field, values, entry), findings);
}

// A key that is set a million times is listed a million times, each time with its last value. That
// is judged once, and what there is to say is said as often.
void validateDesktopEntryGroupStringFields(const std::string& group,
                                           const std::vector<FieldRow>& rows,
                                           const DesktopEntry& entry, Findings* findings) {
    std::unordered_map<std::string, std::vector<std::string>> judged;
    for (const std::string& key : entry.keys(group)) {
        const auto row = std::find_if(rows.begin(), rows.end(), [&key](const FieldRow& candidate) {
            return candidate.first.count(key) != 0;
        });
        if (row == rows.end()) {
            findings->violation(kFieldNameInvalid, {key, group});
            continue;
        }
        const auto known = judged.find(key);
        const auto& invalid =
            known != judged.end()
                ? known->second
                : judged.emplace(key, invalidValues(group, key, row->second, entry)).first->second;
        reportValues(group, key, invalid, findings);
    }
}

// The other patterns of the desktop rules are GLib's, which would let a line feed stand at the end.
void validateDesktopEntryFieldColorValue(const std::string& group, const std::string& field,
                                         const DesktopEntry& entry, Findings* findings) {
    static const std::regex color(kColor);
    const std::string value = entry.string(group, field);
    if (!std::regex_match(value, color)) {
        findings->violation(kColorInvalid, {value, group, field});
    }
}

void validateDesktopEntryGroupColorFields(const std::string& group, const WordSet& fields,
                                          const DesktopEntry& entry, Findings* findings) {
    for (const std::string& key : entry.keys(group)) {
        if (fields.count(key) != 0) {
            validateDesktopEntryFieldColorValue(group, key, entry, findings);
        } else {
            findings->violation(kFieldNameInvalid, {key, group});
        }
    }
}

}  // namespace pkgvet
