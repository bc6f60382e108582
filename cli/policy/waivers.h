// Findings that someone has decided to put up with.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/base/date.h"
#include "cli/base/fault.h"
#include "cli/model/model.h"
#include "pkgvet/pattern/pattern_list.h"

namespace pkgvet::cli {

// Excuses the findings of one rule that are about certain subjects in certain packages. Both
// patterns are those of rule files: they match the whole text, and a finding without a subject is
// taken for one about the empty text.
struct Waiver {
    std::string file;
    Position position;  // its place there
    std::string rule;
    WholePattern subject;
    WholePattern package;  // on the package's name
    std::string reason;
    std::optional<Date> lastDay;  // the waiver holds up to the end of this day
    Position lastDayPosition;
};

// The waivers of the file at path, in its order. Everything that is wrong with it goes to faults;
// the result is of use only when nothing was. digest, unless it is null, receives SHA-256 of the
// file.
std::vector<Waiver> readWaivers(const std::string& path, std::vector<Fault>* faults,
                                std::string* digest = nullptr);

// Whether the waiver covers finding in the package of that name, whatever the day is. A text
// that is too long for the engine of the patterns is not excused.
bool covers(Waiver* waiver, const Finding& finding, const std::string& package);

}  // namespace pkgvet::cli
