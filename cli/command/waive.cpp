// Turns findings of a report into waivers.
#include "cli/command/waive.h"

#include <algorithm>
#include <iostream>
#include <set>

#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/command/explain.h"
#include "cli/policy/report_file.h"
#include "cli/policy/waiver_file.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kBlank = " \t\n";
// What stands in a report for bytes that are not UTF-8.
constexpr std::string_view kReplacement = "\xef\xbf\xbd";

bool isNamed(const std::string& text, const std::vector<std::string>& names) {
    return names.empty() || std::find(names.begin(), names.end(), text) != names.end();
}

// Remarks reject no package, so that they are waived by name alone.
bool isChosen(const ReportedFinding& finding, const WaiveOptions& options) {
    const bool isRemark = finding.severity == severityName(Severity::Info);
    return finding.counts && (!isRemark || !options.rules.empty()) &&
           isNamed(finding.rule, options.rules) && isNamed(finding.subject, options.subjects);
}

// Why no waiver can be written for the finding; empty when one can.
std::string obstacleOf(const ReportedFinding& finding) {
    if (isGrave(finding.rule)) {
        return finding.rule + " cannot be waived";
    }
    if (finding.subject.find(kReplacement) != std::string::npos ||
        finding.package.find(kReplacement) != std::string::npos) {
        return finding.rule + ": the report does not hold all bytes of " +
               printable(finding.subject) + ", so that this waiver has to be written by hand";
    }
    return std::string();
}

std::vector<NewWaiver> waiversFor(const std::vector<ReportedFinding>& findings,
                                  const WaiveOptions& options) {
    std::vector<NewWaiver> waivers;
    std::set<std::string> obstacles;  // each is told once
    for (const ReportedFinding& finding : findings) {
        if (!isChosen(finding, options)) {
            continue;
        }
        const std::string obstacle = obstacleOf(finding);
        if (obstacle.empty()) {
            waivers.push_back(
                {finding.rule, finding.subject, finding.package, options.reason, options.lastDay});
        } else if (obstacles.insert(obstacle).second) {
            complain(obstacle);
        }
    }
    return waivers;
}

std::string missingIn(const WaiveOptions& options) {
    return options.reason.empty() ? "--reason" : "";
}

Option reasonOption(std::string* reason) {
    Option option;
    option.names = {"--reason"};
    option.description = "Why the findings are put up with";
    option.argument = "TEXT";
    option.set = [reason](const std::string& text) {
        *reason = text;
        const bool isBlank = text.find_first_not_of(kBlank) == std::string::npos;
        return std::string(isBlank ? "it says nothing" : "");
    };
    return option;
}

Option lastDayOption(std::optional<Date>* lastDay) {
    Option option;
    option.names = {"--expires"};
    option.description = "Last day on which the waivers hold, as yyyy-mm-dd [none]";
    option.argument = "DAY";
    option.set = [lastDay](const std::string& text) {
        *lastDay = parseDate(text);
        if (!*lastDay) {
            return text + " is not a day of the form yyyy-mm-dd";
        }
        return daysBetween(localDate(), **lastDay) < 0 ? text + " is over" : std::string();
    };
    return option;
}

Option textsOption(const char* name, const char* argument, std::vector<std::string>* texts,
                   const char* description) {
    return {.names = {name},
            .description = description,
            .argument = argument,
            .mayRepeat = true,
            .set = appendTo(texts)};
}

}  // namespace

CommandRow waiveCommand(WaiveOptions* options) {
    CommandRow row;
    row.name = "waive";
    row.description = "Write waivers for findings of a report";
    row.options = {
        textsOption("--rule", "ID", &options->rules,
                    "Findings of this rule; may be repeated [all that count]"),
        textsOption("--subject", "TEXT", &options->subjects,
                    "Findings about this subject, word for word; may be repeated [all]"),
        reasonOption(&options->reason),
        lastDayOption(&options->lastDay),
    };
    row.operand = {.name = "REPORT",
                   .description = "A report in the format json",
                   .least = 1,
                   .most = 1,
                   .takesFiles = true,
                   .set = [options](const std::string& path) {
                       options->report = path;
                       return std::string();
                   }};
    row.missing = [options] { return missingIn(*options); };
    return row;
}

int waive(const WaiveOptions& options) {
    if (!areKnownIds(options.rules)) {
        return kUsageError;
    }
    std::vector<Fault> faults;
    const std::vector<ReportedFinding> findings = readReport(options.report, &faults);
    for (const Fault& fault : faults) {
        complain(describe(fault));
    }
    if (!faults.empty()) {
        return kUsageError;
    }
    const std::vector<NewWaiver> waivers = waiversFor(findings, options);
    if (waivers.empty()) {
        complain(printable(options.report) + ": there is nothing to waive");
        return kUsageError;
    }
    std::cout << formatWaivers(waivers);
    return statusAfterOutput(kAccepted);
}

}  // namespace pkgvet::cli
