// The catalogue: the program's own findings, on whether what is judged is what would be installed.
#include <algorithm>
#include <array>
#include <iterator>

#include "cli/catalogue/catalogue_tables.h"
#include "cli/catalogue/integrity_messages.h"
#include "cli/catalogue/payload_findings.h"

namespace pkgvet::cli {

namespace {

constexpr Entry kEntries[] = {
    {.id = "header-path-not-normal",
     .severity = Severity::Critical,
     .grave = true,
     .title = "Path in the header is not normal",
     .demand = "Each path in the header begins with a slash and has no empty part, no `.` and no "
               "`..` between its slashes.",
     .why = "rpm installs to the place where such a path leads, while the rules judge it by its "
            "text: it would begin in a directory of the package and end in another one.",
     .fix = "Build the package with rpmbuild, which writes normal paths. No tool of the "
            "distribution makes a header like this one.",
     .example = "%files\n"
                "%{_datadir}/%{name}/data\n",
     .message = &kPathNotNormal},
    {.id = "integrity-findings-left-out",
     .severity = Severity::Critical,
     .grave = true,
     .title = "There are more findings of a kind than are listed",
     .demand = "Nothing of its own: it stands for the findings of another rule.",
     .why = "A package can break a rule in each of its files, and a report of a million lines "
            "tells no more than its beginning.",
     .fix = "Correct what the listed findings name, and judge the package again.",
     .example = "pkgvet explain header-path-not-normal\n",
     .message = &kFindingsLeftOut},
};

// A chapter is one table.
constexpr auto kAllEntries = [] {
    std::array<Entry, std::size(kEntries) + std::size(kPayloadEntries)> all{};
    const auto behind = std::copy(std::begin(kEntries), std::end(kEntries), all.begin());
    std::copy(std::begin(kPayloadEntries), std::end(kPayloadEntries), behind);
    return all;
}();

}  // namespace

Chapter integrityChapter() {
    return {"Package integrity", kAllEntries};
}

}  // namespace pkgvet::cli
