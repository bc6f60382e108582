// The rules that every key of a group has a permitted value, or a colour.
#include <algorithm>
#include <regex>
#include <string>
#include <vector>

#include "pkgvet/desktop/desktop_entry.h"
#include "pkgvet/desktop/desktop_messages.h"
#include "pkgvet/desktop/desktop_rules.h"
#include "pkgvet/report/findings.h"

namespace pkgvet {

namespace {

// Three digits are accepted too, although the message names six only.
constexpr const char* kColor = "^#([A-Fa-f0-9]{6}|[A-Fa-f0-9]{3})$";

// Whether all values of the list are permitted.
bool judgeValues(const std::string& group, const std::string& field, const WordSet& values,
                 const DesktopEntry& entry, Findings* findings) {
    bool areAllPermitted = true;
    for (const std::string& value : entry.stringList(group, field)) {
        if (values.count(value) == 0) {
            areAllPermitted = false;
            findings->violation(kValueInvalid, {value, group, field});
        }
    }
    return areAllPermitted;
}

}  // namespace

void validateDesktopEntryFieldStringValues(const std::string& group, const std::string& field,
                                           const WordSet& values, const DesktopEntry& entry,
                                           Findings* findings) {
    judgeValues(group, field, values, entry, findings);
}

// A key that is set a million times is listed a million times, each time with its last value. Where
// that value has no finding, it is not read again, which would only take time.
void validateDesktopEntryGroupStringFields(const std::string& group,
                                           const std::vector<FieldRow>& rows,
                                           const DesktopEntry& entry, Findings* findings) {
    WordSet accepted;
    for (const std::string& key : entry.keys(group)) {
        const auto row = std::find_if(rows.begin(), rows.end(), [&key](const FieldRow& candidate) {
            return candidate.first.count(key) != 0;
        });
        if (row == rows.end()) {
            findings->violation(kFieldNameInvalid, {key, group});
        } else if (accepted.count(key) == 0 &&
                   judgeValues(group, key, row->second, entry, findings)) {
            accepted.insert(key);
        }
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
