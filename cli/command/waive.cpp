// Turns findings of a report into waivers.
#include "cli/command/waive.h"

#include <algorithm>
#include <iostream>
#include <set>
#include <stdexcept>

#include "cli/base/escape.h"
#include "cli/base/exit_status.h"
#include "cli/base/terminal.h"
#include "cli/base/text.h"
#include "cli/catalogue/catalogue.h"
#include "cli/command/explain.h"
#include "cli/policy/waiver_file.h"
#include "cli/records/stored_report.h"

namespace pkgvet::cli {

namespace {

constexpr const char* kBlank = " \t\n";

bool isNamed(const std::string& text, const std::vector<std::string>& names) {
    return names.empty() || std::find(names.begin(), names.end(), text) != names.end();
}

// Remarks reject no package, so that they are waived by name alone.
bool isChosen(const Finding& finding, const WaiveOptions& options) {
    const bool isRemark = finding.severity == Severity::Info;
    return finding.standing == Standing::Counts && (!isRemark || !options.rules.empty()) &&
           isNamed(finding.rule, options.rules) &&
           isNamed(finding.subject.value_or(std::string()), options.subjects);
}

// Why no waiver can be written for the finding; empty when one can.
std::string obstacleOf(const Finding& finding) {
    if (isGrave(finding)) {
        return printable(finding.rule) + " cannot be waived";
    }
    if (finding.count > 1) {
        return printable(finding.rule) +
               ": the report leaves findings out, so that their waiver has to be written by hand";
    }
    return std::string();
}

// Gathers the waivers for the packages of a report.
class WaiverList {
public:
    explicit WaiverList(const WaiveOptions& options) : options_(options) {}

    void add(const PackageReport& package) {
        for (const Judgement& judgement : package.judgements) {
            for (const Finding& finding : judgement.findings) {
                if (isChosen(finding, options_)) {
                    add(finding, package.name);
                }
            }
        }
    }

    const std::vector<NewWaiver>& waivers() const { return waivers_; }

private:
    void add(const Finding& finding, const std::string& package) {
        const std::string obstacle = obstacleOf(finding);
        if (obstacle.empty()) {
            waivers_.push_back({finding.rule, finding.subject.value_or(std::string()), package,
                                options_.reason, options_.lastDay});
        } else if (told_.insert(obstacle).second) {
            complain(obstacle);
        }
    }

    const WaiveOptions& options_;
    std::vector<NewWaiver> waivers_;
    std::set<std::string> told_;  // what stands in the way, each once
};

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
                   .description = "A report in the format json or jsonl",
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
    WaiverList list(options);
    try {
        const StoredReport report(options.report,
                                  [&list](const PackageReport& package) { list.add(package); });
    } catch (const std::runtime_error& error) {
        complain(printable(error.what()));
        return kUsageError;
    }
    const std::vector<NewWaiver>& waivers = list.waivers();
    if (waivers.empty()) {
        complain(printable(options.report) + ": there is nothing to waive");
        return kUsageError;
    }
    std::cout << formatWaivers(waivers);
    return statusAfterOutput(kAccepted);
}

}  // namespace pkgvet::cli
