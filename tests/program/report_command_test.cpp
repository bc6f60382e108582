// `pkgvet check` in each format, on each way out.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "tests/support/package/package_builder.h"
#include "tests/support/program/program.h"
#include "tests/support/program/schemas.h"
#include "tests/support/rules/rule_tree.h"

namespace {

// With validation off, scripts alone reject a package.
class ReportCommand : public testing::Test {
protected:
    static void SetUpTestSuite() {
        directory_ = new TemporaryDirectory;
        rules_ = new std::string(RuleTree().write(*directory_));
        PackageBuilder plain("org.example.plain");
        plain.file("/usr/share/org.example.plain/x", "x");
        plain_ = new std::string(plain.build(*directory_));
        scripted_ = new std::string(plain.script("%post\ntrue").build(*directory_));
    }

    static void TearDownTestSuite() {
        delete scripted_;
        delete plain_;
        delete rules_;
        delete directory_;
    }

    static const TemporaryDirectory& directory() { return *directory_; }
    static const std::string& plain() { return *plain_; }
    static const std::string& scripted() { return *scripted_; }
    static std::string missing() { return directory() / "missing.rpm"; }

    static ProgramResult check(const std::vector<std::string>& arguments) {
        std::vector<std::string> command = {"check", "--validation", "off", "--rules", *rules_};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runPkgvet(command);
    }

private:
    static TemporaryDirectory* directory_;
    static std::string* rules_;
    static std::string* plain_;
    static std::string* scripted_;
};

TemporaryDirectory* ReportCommand::directory_ = nullptr;
std::string* ReportCommand::rules_ = nullptr;
std::string* ReportCommand::plain_ = nullptr;
std::string* ReportCommand::scripted_ = nullptr;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string faultsOf(const std::string& format, const std::string& report) {
    if (format == "junit") {
        return xmlFaults("tests/schemas/junit-10.xsd", report);
    }
    if (format == "sarif") {
        return jsonFaults("tests/schemas/sarif-used.schema.json", {report});
    }
    return jsonFaults("docs/report.schema.json",
                      format == "jsonl" ? linesOf(report) : std::vector<std::string>{report});
}

TEST_F(ReportCommand, EveryFormatIsValidOnEveryWayOut) {
    struct Case {
        const char* name;
        std::vector<std::string> packages;
        int status;
    };
    const Case cases[] = {
        {"accepted", {plain()}, 0},
        {"rejected", {plain(), scripted()}, 1},
        {"not judged", {missing()}, 3},
        {"all of them", {missing(), plain(), scripted(), plain()}, 3},
    };
    for (const Case& test : cases) {
        for (const std::string format : {"json", "jsonl", "sarif", "junit"}) {
            SCOPED_TRACE(test.name + (" in " + format));
            std::vector<std::string> arguments = {"--format", format, "--profile", "all"};
            arguments.insert(arguments.end(), test.packages.begin(), test.packages.end());
            const ProgramResult result = check(arguments);
            EXPECT_EQ(result.status, test.status);
            EXPECT_EQ(faultsOf(format, result.output), "");
            EXPECT_EQ(check(arguments).output, result.output);
        }
    }
}

TEST_F(ReportCommand, FilesComeBesideStandardOutput) {
    const std::string json = directory() / "report.json";
    const std::string text = directory() / "report.txt";
    const ProgramResult result = check(
        {"-o", "json:" + json, "-o", "text:" + text, "--format", "concise", missing(), scripted()});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(readFile(json), check({"--format", "json", missing(), scripted()}).output);
    EXPECT_EQ(readFile(text).find(missing() + ": not judged: No such file or directory\n"), 0U);
    EXPECT_EQ(result.output.find(missing() + ": error: not-judged: "), 0U) << result.output;
}

TEST_F(ReportCommand, FileThatCannotBeWrittenIsToldBeforeAnythingIsJudged) {
    const std::string path = directory() / "no/report.json";
    const ProgramResult result = check({"-o", "json:" + path, plain()});
    EXPECT_NE(result.status, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "pkgvet: cannot write " + path + ": No such file or directory\n");
}

TEST_F(ReportCommand, FullDeviceIsAnErrorInTheEnd) {
    const ProgramResult result = check({"-o", "json:/dev/full", plain()});
    EXPECT_NE(result.status, 0);
    EXPECT_EQ(result.errors, "pkgvet: cannot write /dev/full: No space left on device\n");
}

TEST_F(ReportCommand, ProfilesThatAgreeAreToldInALine) {
    const ProgramResult result = check({"--profile", "all", scripted()});
    EXPECT_NE(result.output.find("\n  5 rules are broken alike under all profiles\n"),
              std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find(scripted() + ": rejected under regular, extended, mdm, antivirus, "
                                              "auth, market: 3 errors, 2 warnings; 1 never "
                                              "excused; validation off\n"),
              std::string::npos);
}

}  // namespace
