// Writes JUnit XML.
#include <algorithm>
#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/base/escape.h"
#include "cli/report/formats.h"
#include "cli/report/tally.h"

namespace pkgvet::cli {

namespace {

enum class Outcome { Passed, Failed, Error, Skipped };

struct Case {
    std::string name;
    Outcome outcome = Outcome::Passed;
    std::string type;
    std::string text;  // what is wrong, or what a passed case has to say
};

struct Suite {
    std::string name;
    double seconds = 0;
    std::vector<Case> cases;

    std::size_t count(Outcome outcome) const {
        return static_cast<std::size_t>(std::count_if(
            cases.begin(), cases.end(), [&](const Case& one) { return one.outcome == outcome; }));
    }
};

constexpr std::string_view kTool = "pkgvet";
constexpr std::string_view kVerdict = "verdict";

// XML forbids most control characters even as references; printable() leaves none of them.
std::string xmlText(std::string_view text) {
    std::string result;
    for (const char c : printable(text)) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

std::string attribute(std::string_view name, std::string_view value) {
    std::string text(" ");
    return text.append(name).append("=\"").append(xmlText(value)).append("\"");
}

std::string attribute(std::string_view name, std::size_t value) {
    return attribute(name, std::to_string(value));
}

// A finding fails its case where it makes the package fail: what a profile lets pass is told
// without failing anybody's build.
Outcome outcomeOf(const Finding& finding, const Judgement& judgement, Severity failOn) {
    if (finding.standing != Standing::Counts) {
        return Outcome::Skipped;
    }
    return judgement.passes || finding.severity < failOn ? Outcome::Passed : Outcome::Failed;
}

// Rule and subject name the case, and not the message: that changes from version to version, while
// servers follow a case by its name.
Case caseOf(const Finding& finding, Outcome outcome) {
    const std::string name =
        finding.subject ? finding.rule + ": " + *finding.subject : finding.rule;
    const std::string text = std::string(severityName(finding.severity)) + ": " + finding.message +
                             standingNote(finding);
    return {name, outcome, finding.rule, text};
}

// Servers tell cases apart by their names, and would take a finding that comes twice for one.
void numberRepeats(std::vector<Case>* cases) {
    std::map<std::string, std::size_t> seen;
    for (Case& one : *cases) {
        const std::size_t count = ++seen[one.name];
        if (count > 1) {
            one.name += " (" + std::to_string(count) + ")";
        }
    }
}

Suite suiteOf(const PackageReport& package, const Judgement& judgement, Severity failOn) {
    const bool alone = package.judgements.size() == 1;
    Suite suite = {
        package.path + (alone ? "" : " (" + judgement.profile + ")"), package.seconds, {}};
    for (const Finding& finding : judgement.findings) {
        suite.cases.push_back(caseOf(finding, outcomeOf(finding, judgement, failOn)));
    }
    numberRepeats(&suite.cases);
    if (!package.complete()) {
        const std::string id(kIncompleteId);
        suite.cases.push_back({id, Outcome::Error, id, package.incomplete});
    }
    // A rejection shows even where no line stands behind it.
    if (!judgement.passes && suite.count(Outcome::Failed) == 0) {
        suite.cases.push_back({std::string(kVerdict), Outcome::Failed, "rejected", "rejected"});
    }
    // A suite without cases looks like one that did not run.
    if (suite.cases.empty()) {
        suite.cases.push_back({std::string(kVerdict), Outcome::Passed, "", ""});
    }
    return suite;
}

// What is about the run as a whole and not about one package.
Suite suiteOfRun(const RunReport& run) {
    Suite suite = {std::string(kTool), 0, {}};
    for (const std::string& notice : run.notices) {
        suite.cases.push_back({std::string(kNoticeId), Outcome::Passed, "", notice});
    }
    if (run.partial) {
        suite.cases.push_back(
            {"run", Outcome::Error, std::string(kPartialId), std::string(kInterruptedText)});
    }
    return suite;
}

std::vector<Suite> suitesOf(const RunReport& run, const ReportStyle& style) {
    std::vector<Suite> suites;
    for (const PackageReport& package : run.packages) {
        if (!package.judged()) {
            suites.push_back({package.path,
                              package.seconds,
                              {{std::string(kVerdict), Outcome::Error, std::string(kNotJudgedId),
                                package.cause}}});
            continue;
        }
        for (const Judgement& judgement : package.judgements) {
            suites.push_back(suiteOf(package, judgement, style.failOn));
        }
    }
    if (run.partial || !run.notices.empty()) {
        suites.push_back(suiteOfRun(run));
    }
    return suites;
}

// The text stands twice, as an attribute and as content: servers show the one or the other.
void writeBody(const Case& one, std::ostream& stream) {
    const std::string described =
        attribute("type", one.type) + attribute("message", one.text) + ">" + xmlText(one.text);
    switch (one.outcome) {
        case Outcome::Failed:
            stream << "<failure" << described << "</failure>";
            break;
        case Outcome::Error:
            stream << "<error" << described << "</error>";
            break;
        case Outcome::Skipped:
            stream << "<skipped" << attribute("message", one.text) << "/>";
            break;
        case Outcome::Passed:
            if (!one.text.empty()) {
                stream << "<system-out>" << xmlText(one.text) << "</system-out>";
            }
            break;
    }
}

void writeCase(const Suite& suite, const Case& one, std::ostream& stream) {
    stream << "    <testcase" << attribute("classname", suite.name) << attribute("name", one.name)
           << '>';
    writeBody(one, stream);
    stream << "</testcase>\n";
}

std::string counts(std::size_t tests, std::size_t failures, std::size_t errors,
                   std::size_t skipped) {
    return attribute("tests", tests) + attribute("failures", failures) +
           attribute("errors", errors) + attribute("skipped", skipped);
}

void writeSuite(const Suite& suite, bool timings, std::ostream& stream) {
    stream << "  <testsuite" << attribute("name", suite.name)
           << counts(suite.cases.size(), suite.count(Outcome::Failed), suite.count(Outcome::Error),
                     suite.count(Outcome::Skipped));
    if (timings) {
        std::ostringstream time;
        time << std::fixed << std::setprecision(3) << suite.seconds;
        stream << attribute("time", time.str());
    }
    stream << ">\n";
    for (const Case& one : suite.cases) {
        writeCase(suite, one, stream);
    }
    stream << "  </testsuite>\n";
}

}  // namespace

void finishJunit(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    const std::vector<Suite> suites = suitesOf(run, style);
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;
    std::size_t skipped = 0;
    for (const Suite& suite : suites) {
        tests += suite.cases.size();
        failures += suite.count(Outcome::Failed);
        errors += suite.count(Outcome::Error);
        skipped += suite.count(Outcome::Skipped);
    }
    stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" << attribute("name", kTool)
           << counts(tests, failures, errors, skipped) << ">\n";
    for (const Suite& suite : suites) {
        writeSuite(suite, style.timings, stream);
    }
    stream << "</testsuites>\n";
}

}  // namespace pkgvet::cli
