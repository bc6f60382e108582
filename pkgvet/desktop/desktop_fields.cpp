// The rules that every key of a group has a permitted value, or a colour.
#include <algorithm>
#include <regex>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/content/content_validator_private.h"
#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/violation.h"

namespace {

constexpr const char* kColor = "^#([A-Fa-f0-9]{6}|[A-Fa-f0-9]{3})$";

constexpr std::string_view kFieldSeparator = "/";

// Whether there was nothing to report.
bool judgeValues(const std::string& group, const std::string& field,
                 const std::unordered_set<std::string>& values, const DesktopEntry& entry,
                 ContentValidatorPrivate* record) {
    bool flawless = true;
    for (const std::string& value : entry.stringList(group, field)) {
        if (values.count(value) == 0) {
            flawless = false;
            pkgvet::reportViolation(record, {pkgvet::kInvalidValue, value, pkgvet::kInGroup, group,
                                             kFieldSeparator, field, pkgvet::kFieldEnd});
        }
    }
    return flawless;
}

void reportFieldName(const std::string& group, const std::string& field,
                     ContentValidatorPrivate* record) {
    pkgvet::reportViolation(
        record, {pkgvet::kInvalidFieldName, field, pkgvet::kInGroup, group, pkgvet::kGroupEnd});
}

}  // namespace

void ContentValidator::validateDesktopEntryFieldStringValues(
    const std::string& group, const std::string& field,
    const std::unordered_set<std::string>& values, const DesktopEntry& entry) {
    judgeValues(group, field, values, entry, d_ptr.get());
}

// A key that is set a million times comes up a million times, with one and the same value. Where
// that has no finding, a second look would add nothing but time.
void ContentValidator::validateDesktopEntryGroupStringFields(
    const std::string& group,
    const std::vector<std::pair<std::unordered_set<std::string>, std::unordered_set<std::string>>>&
        rows,
    const DesktopEntry& entry) {
    std::unordered_set<std::string> flawless;
    for (const std::string& key : entry.keys(group)) {
        const auto row = std::find_if(rows.begin(), rows.end(), [&key](const auto& candidate) {
            return candidate.first.count(key) != 0;
        });
        if (row == rows.end()) {
            reportFieldName(group, key, d_ptr.get());
        } else if (flawless.count(key) == 0 &&
                   judgeValues(group, key, row->second, entry, d_ptr.get())) {
            flawless.insert(key);
        }
    }
}

void ContentValidator::validateDesktopEntryFieldColorValue(const std::string& group,
                                                           const std::string& field,
                                                           const DesktopEntry& entry) {
    static const std::regex color(kColor);
    const std::string value = entry.string(group, field);
    if (!std::regex_match(value, color)) {
        pkgvet::reportViolation(d_ptr.get(), {pkgvet::kInvalidValue, value, pkgvet::kInGroup, group,
                                              kFieldSeparator, field, pkgvet::kColorExpected});
    }
}

void ContentValidator::validateDesktopEntryGroupColorFields(
    const std::string& group, const std::unordered_set<std::string>& fields,
    const DesktopEntry& entry) {
    for (const std::string& key : entry.keys(group)) {
        if (fields.count(key) != 0) {
            validateDesktopEntryFieldColorValue(group, key, entry);
        } else {
            reportFieldName(group, key, d_ptr.get());
        }
    }
}
