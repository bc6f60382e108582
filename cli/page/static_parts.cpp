// Writes what stands on the page as HTML.
#include "cli/page/static_parts.h"

#include <string_view>
#include <vector>

#include "cli/base/text.h"
#include "cli/model/summary.h"
#include "cli/page/html.h"

namespace pkgvet::cli {

namespace {

constexpr std::string_view kPartial =
    "The run was interrupted. What was not reached by then is not on this page.";
constexpr std::string_view kNone = "none";
constexpr std::size_t kDigitsOfGroup = 3;
constexpr std::uint64_t kMebi = 1U << 20U;

std::string countedPackages(std::size_t count) {
    return grouped(count) + (count == 1 ? " package" : " packages");
}

void writeFact(std::string_view label, const std::string& value, std::ostream& stream) {
    stream << "<dt>" << label << "</dt><dd>" << htmlText(value) << "</dd>\n";
}

// Rules, waivers and the like are known by their digests.
void writeDigests(std::string_view label, const std::vector<std::string>& digests,
                  std::ostream& stream) {
    for (const std::string& digest : digests) {
        writeFact(label, digest.empty() ? "not a regular file" : "SHA-256 " + digest, stream);
    }
}

std::string limitsOf(const AllowedMost& limits) {
    return std::to_string(static_cast<std::uint64_t>(limits.seconds)) + " s, " +
           std::to_string(limits.processorSeconds) + " s of processor time, " +
           std::to_string(limits.unpackedBytes / kMebi) + " MiB unpacked, " +
           std::to_string(limits.files) + " files, " + std::to_string(limits.memory / kMebi) +
           " MiB of memory";
}

}  // namespace

std::string grouped(std::size_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t end = digits.size(); end > kDigitsOfGroup;) {
        end -= kDigitsOfGroup;
        digits.insert(end, 1, ',');
    }
    return digits;
}

std::string headlineOf(const RunReport& run) {
    const PackageTally tally = tallyOf(run);
    if (tally.packages() == 0) {
        return "No packages";
    }
    if (tally.packages() == 1) {
        return "1 package " + std::string(tally.accepted == 1   ? "accepted"
                                          : tally.rejected == 1 ? "rejected"
                                                                : "not judged");
    }
    if (tally.accepted == tally.packages()) {
        return "All " + countedPackages(tally.packages()) + " accepted";
    }
    std::vector<std::string> parts;
    if (tally.rejected > 0) {
        parts.push_back(grouped(tally.rejected) + " rejected");
    }
    if (tally.notJudged > 0) {
        parts.push_back(grouped(tally.notJudged) + " not judged");
    }
    return joined(parts, ", ") + " of " + countedPackages(tally.packages());
}

void writeNotices(const RunReport& run, std::ostream& stream) {
    if (run.partial) {
        stream << "<p class=\"notice grave\">" << kPartial << "</p>\n";
    }
    for (const std::string& notice : run.notices) {
        stream << "<p class=\"notice\">" << htmlText(notice) << "</p>\n";
    }
}

void writeProvenance(const RunReport& run, std::ostream& stream) {
    const Provenance& provenance = run.provenance;
    stream << "<dl class=\"facts\">\n";
    writeFact("Program", "pkgvet " + run.provenance.version, stream);
    for (const ProfileRules& profile : provenance.profiles) {
        writeFact("Profile", profile.name, stream);
        if (!profile.digest.empty()) {
            writeFact("Its rules", "SHA-256 " + profile.digest, stream);
        }
    }
    writeFact("Validation", provenance.validation, stream);
    writeFact("Integrity", provenance.integrity ? "on" : "off", stream);
    if (!provenance.failOn.empty()) {
        writeFact("Rejected from", provenance.failOn, stream);
    }
    writeDigests("Waivers", provenance.waivers, stream);
    if (!provenance.baseline.empty()) {
        writeDigests("Baseline", {provenance.baseline}, stream);
    }
    writeFact("Sandbox", run.sandbox.empty() ? std::string(kNone) : run.sandbox, stream);
    writeFact("Limits", limitsOf(provenance.limits), stream);
    stream << "</dl>\n";
}

}  // namespace pkgvet::cli
