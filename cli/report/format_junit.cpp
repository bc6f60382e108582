// Writes JUnit XML.
#include "cli/report/format_junit.h"

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

// Where the name of a suite will stand in its text, and the end of that text. XML has no such
// characters.
constexpr char kNamePlace = '\1';
constexpr char kSuiteEnd = '\2';

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
class Numbering {
public:
    std::string numbered(const std::string& name) {
        const std::size_t count = ++seen_[name];
        return count > 1 ? name + " (" + std::to_string(count) + ")" : name;
    }

private:
    std::map<std::string, std::size_t> seen_;
};

void numberRepeats(std::vector<Case>* cases) {
    Numbering numbering;
    for (Case& one : *cases) {
        one.name = numbering.numbered(one.name);
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
std::string suiteName(const std::string& package, std::string last) {
    std::replace(last.begin(), last.end(), '.', '_');
    return package + "." + last;
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

Suite suiteOf(const PackageReport& package, const Judgement& judgement, Severity failOn) {
    Suite suite = {package.seconds, propertiesOf(package), {verdictOf(package, judgement)}};
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

// What is about the run as a whole and not about one package.
Suite suiteOfRun(const RunReport& run) {
    Suite suite;
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

void writeCase(const Case& one, std::ostream& stream) {
    stream << "    <testcase classname=\"" << kNamePlace << '"' << attribute("name", one.name)
           << '>';
    writeBody(one, stream);
    stream << "</testcase>\n";
}

JunitCounts countsOf(const Suite& suite) {
    return {suite.cases.size(), suite.count(Outcome::Failed), suite.count(Outcome::Error)};
}

std::string attributes(const JunitCounts& counts) {
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

std::string textOf(const Suite& suite, bool timings) {
    std::ostringstream stream;
    stream << "  <testsuite name=\"" << kNamePlace << '"' << attributes(countsOf(suite))
           << attribute("skipped", suite.count(Outcome::Skipped));
    if (timings && suite.seconds) {
        std::ostringstream time;
        time << std::fixed << std::setprecision(3) << *suite.seconds;
        stream << attribute("time", time.str());
    }
    stream << ">\n";
    writeProperties(suite, stream);
    for (const Case& one : suite.cases) {
        writeCase(one, stream);
    }
    stream << "  </testsuite>\n";
    return stream.str();
}

std::string named(std::string_view text, const std::string& name) {
    const std::string value = xmlText(name);
    std::string result;
    for (const char c : text) {
        if (c == kNamePlace) {
            result += value;
        } else {
            result += c;
        }
    }
    return result;
}

// Puts the texts of suites together out of the pieces of a spool.
void forEachSuite(const Spool& spool, const std::function<void(const std::string& text)>& receive) {
    std::string text;
    spool.read([&](std::string_view piece) {
        for (std::size_t end = piece.find(kSuiteEnd); end != std::string_view::npos;
             end = piece.find(kSuiteEnd)) {
            receive(text.append(piece.substr(0, end)));
            text.clear();
            piece.remove_prefix(end + 1);
        }
        text.append(piece);
    });
}

}  // namespace

void JunitCounts::add(const JunitCounts& suite, std::size_t times) {
    tests += suite.tests * times;
    failures += suite.failures * times;
    errors += suite.errors * times;
}

// A package that was not judged has its verdict under the profiles that it should have been judged
// under, where a server looks for it. They are known at the end.
void JunitReport::add(const PackageReport& package) {
    ++packages_[nameOf(package)];
    for (const Judgement& judgement : package.judgements) {
        addSuite(package, judgement, judgement.profile, &counts_);
    }
    if (!package.judged()) {
        addSuite(package, {}, std::nullopt, &unjudged_);
    }
}

void JunitReport::addSuite(const PackageReport& package, const Judgement& judgement,
                           const std::optional<std::string>& profile, JunitCounts* counts) {
    const Suite suite = suiteOf(package, judgement, style_.failOn);
    counts->add(countsOf(suite));
    names_.push_back({nameOf(package), package.arch, profile});
    spool_.write(textOf(suite, style_.timings) + kSuiteEnd);
}

// Builds of one package for several architectures are told apart by these.
std::vector<std::string> JunitReport::namesOf(const Name& name, const RunReport& run) const {
    const bool isAlone = packages_.at(name.package) == 1;
    const std::string arch = isAlone || name.arch.empty() ? std::string() : " " + name.arch;
    if (name.profile) {
        return {suiteName(name.package, *name.profile + arch)};
    }
    std::vector<std::string> names;
    for (const ProfileRules& profile : run.provenance.profiles) {
        names.push_back(suiteName(name.package, profile.name + arch));
    }
    return names;
}

// What stands here and what does not is what the schema of Jenkins' xUnit plugin allows: it knows
// "skipped" for suites only.
void JunitReport::finish(const RunReport& run,
                         const std::function<void(std::string_view piece)>& receive) {
    const Suite ofRun = suiteOfRun(run);
    JunitCounts all = counts_;
    all.add(unjudged_, run.provenance.profiles.size());
    all.add(countsOf(ofRun));
    receive("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + attribute("name", kTool) +
            attributes(all) + ">\n");
    Numbering numbering;
    auto next = names_.begin();
    forEachSuite(spool_, [&](const std::string& text) {
        for (const std::string& name : namesOf(*next++, run)) {
            receive(named(text, numbering.numbered(name)));
        }
    });
    if (!ofRun.cases.empty()) {
        receive(named(textOf(ofRun, style_.timings), numbering.numbered(std::string(kRunSuite))));
    }
    receive("</testsuites>\n");
}

}  // namespace pkgvet::cli
