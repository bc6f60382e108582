// Writes JUnit XML.
#include <algorithm>
#include <iomanip>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
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
    std::optional<double> seconds;
    std::vector<std::pair<std::string, std::string>> properties;
    std::vector<Case> cases;

    std::size_t count(Outcome outcome) const {
        return static_cast<std::size_t>(std::count_if(
            cases.begin(), cases.end(), [&](const Case& one) { return one.outcome == outcome; }));
    }
};

constexpr std::string_view kTool = "pkgvet";
constexpr std::string_view kVerdict = "verdict";
constexpr std::string_view kRunSuite = "pkgvet.run";
constexpr std::string_view kPackageSuffix = ".rpm";

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

// Servers tell suites and cases apart by their names, and would take what comes twice for one.
template <typename Named>
void numberRepeats(std::vector<Named>* all) {
    std::map<std::string, std::size_t> seen;
    for (Named& one : *all) {
        const std::size_t count = ++seen[one.name];
        if (count > 1) {
            one.name += " (" + std::to_string(count) + ")";
        }
    }
}

// What could not be judged may have no name but that of its file.
std::string nameOf(const PackageReport& package) {
    if (!package.name.empty()) {
        return package.name;
    }
    std::string file = package.path.substr(package.path.rfind('/') + 1);
    if (file.ends_with(kPackageSuffix)) {
        file.resize(file.size() - kPackageSuffix.size());
    }
    return file;
}

// Servers take what stands before the last dot for a package of classes and the rest for a class.
// So the package is the RPM package, whatever dots are in its name, and the class is the profile.
// Builds of one package for several architectures are told apart by these.
std::string suiteName(const PackageReport& package, const std::string& profile, bool isAlone) {
    std::string last = profile;
    if (!isAlone && !package.arch.empty()) {
        last += " " + package.arch;
    }
    std::replace(last.begin(), last.end(), '.', '_');
    return nameOf(package) + "." + last;
}

// The file, and the package in it as far as it is known.
std::vector<std::pair<std::string, std::string>> propertiesOf(const PackageReport& package) {
    std::vector<std::pair<std::string, std::string>> properties = {{"path", package.path}};
    if (!package.name.empty()) {
        properties.insert(properties.end(), {{"version", package.version},
                                             {"release", package.release},
                                             {"arch", package.arch},
                                             {"sha256", package.sha256}});
    }
    return properties;
}

// It is there under every profile whatever becomes of the package, so that a server which saw it
// fail sees it pass once everything is mended.
Case verdictOf(const PackageReport& package, const Judgement& judgement) {
    const std::string name(kVerdict);
    const std::string counts = countsOf(tallyOf(judgement));
    if (!package.judged()) {
        return {name, Outcome::Error, std::string(kNotJudgedId), package.cause};
    }
    if (judgement.passes) {
        return {name, Outcome::Passed, "", counts.empty() ? "" : "accepted: " + counts};
    }
    return {name, Outcome::Failed, "rejected", counts.empty() ? "rejected" : "rejected: " + counts};
}

Suite suiteOf(const PackageReport& package, const Judgement& judgement, Severity failOn,
              bool isAlone) {
    Suite suite = {suiteName(package, judgement.profile, isAlone),
                   package.seconds,
                   propertiesOf(package),
                   {verdictOf(package, judgement)}};
    for (const Finding& finding : judgement.findings) {
        suite.cases.push_back(caseOf(finding, outcomeOf(finding, judgement, failOn)));
    }
    numberRepeats(&suite.cases);
    if (!package.incomplete.empty()) {
        const std::string id(kIncompleteId);
        suite.cases.push_back({id, Outcome::Error, id, package.incomplete});
    }
    return suite;
}

// A package that was not judged has its verdict under the profiles that it should have been judged
// under, where a server looks for it.
std::vector<Judgement> judgementsOf(const PackageReport& package, const RunReport& run) {
    std::vector<Judgement> judgements = package.judgements;
    if (!package.judged()) {
        for (const ProfileRules& profile : run.provenance.profiles) {
            judgements.emplace_back().profile = profile.name;
        }
    }
    return judgements;
}

// What is about the run as a whole and not about one package.
Suite suiteOfRun(const RunReport& run) {
    Suite suite;
    suite.name = kRunSuite;
    for (const std::string& notice : run.notices) {
        suite.cases.push_back({std::string(kNoticeId), Outcome::Passed, "", notice});
    }
    if (run.partial) {
        suite.cases.push_back(
            {"run", Outcome::Error, std::string(kPartialId), std::string(kInterruptedText)});
    }
    numberRepeats(&suite.cases);
    return suite;
}

std::vector<Suite> suitesOf(const RunReport& run, const ReportStyle& style) {
    std::map<std::string, std::size_t> packages;
    for (const PackageReport& package : run.packages) {
        ++packages[nameOf(package)];
    }
    std::vector<Suite> suites;
    for (const PackageReport& package : run.packages) {
        const bool isAlone = packages[nameOf(package)] == 1;
        for (const Judgement& judgement : judgementsOf(package, run)) {
            suites.push_back(suiteOf(package, judgement, style.failOn, isAlone));
        }
    }
    if (run.partial || !run.notices.empty()) {
        suites.push_back(suiteOfRun(run));
    }
    numberRepeats(&suites);
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

struct Counts {
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;

    void add(const Suite& suite) {
        tests += suite.cases.size();
        failures += suite.count(Outcome::Failed);
        errors += suite.count(Outcome::Error);
    }
};

std::string attributes(const Counts& counts) {
    return attribute("tests", counts.tests) + attribute("failures", counts.failures) +
           attribute("errors", counts.errors);
}

void writeProperties(const Suite& suite, std::ostream& stream) {
    if (suite.properties.empty()) {
        return;
    }
    stream << "    <properties>\n";
    for (const auto& [name, value] : suite.properties) {
        stream << "      <property" << attribute("name", name) << attribute("value", value)
               << "/>\n";
    }
    stream << "    </properties>\n";
}

void writeSuite(const Suite& suite, bool timings, std::ostream& stream) {
    Counts counts;
    counts.add(suite);
    stream << "  <testsuite" << attribute("name", suite.name) << attributes(counts)
           << attribute("skipped", suite.count(Outcome::Skipped));
    if (timings && suite.seconds) {
        std::ostringstream time;
        time << std::fixed << std::setprecision(3) << *suite.seconds;
        stream << attribute("time", time.str());
    }
    stream << ">\n";
    writeProperties(suite, stream);
    for (const Case& one : suite.cases) {
        writeCase(suite, one, stream);
    }
    stream << "  </testsuite>\n";
}

}  // namespace

// What stands here and what does not is what the schema of Jenkins' xUnit plugin allows: it knows
// "skipped" for suites only.
void finishJunit(const RunReport& run, const ReportStyle& style, std::ostream& stream) {
    const std::vector<Suite> suites = suitesOf(run, style);
    Counts counts;
    for (const Suite& suite : suites) {
        counts.add(suite);
    }
    stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" << attribute("name", kTool)
           << attributes(counts) << ">\n";
    for (const Suite& suite : suites) {
        writeSuite(suite, style.timings, stream);
    }
    stream << "</testsuites>\n";
}

}  // namespace pkgvet::cli
