// Waivers: their file, and what they cover.
#include "cli/policy/waivers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/base/temporary_directory.h"

namespace {

using pkgvet::cli::covers;
using pkgvet::cli::Date;
using pkgvet::cli::Fault;
using pkgvet::cli::Finding;
using pkgvet::cli::formatDate;
using pkgvet::cli::parseDate;
using pkgvet::cli::readWaivers;
using pkgvet::cli::Severity;
using pkgvet::cli::Waiver;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<std::string> faultsOf(const std::string& content) {
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    readWaivers(directory.write("waivers.json", content), &faults);
    std::vector<std::string> lines;
    for (const Fault& fault : faults) {
        EXPECT_EQ(fault.file, directory / "waivers.json");
        lines.push_back(fault.key + "|" + fault.cause);
    }
    return lines;
}

std::vector<Waiver> waiversOf(const std::string& content) {
    const TemporaryDirectory directory;
    std::vector<Fault> faults;
    std::vector<Waiver> waivers = readWaivers(directory.write("waivers.json", content), &faults);
    EXPECT_THAT(faults, IsEmpty());
    return waivers;
}

std::string waiver(const std::string& members) {
    return R"({"waivers": [{"rule": "library-not-allowed", "subject": "libfoo\\.so\\.[0-9]+",
               "package": "org\\.example\\..*", "reason": "agreed")" +
           members + "}]}";
}

Finding finding(const std::optional<std::string>& subject) {
    Finding result;
    result.rule = "library-not-allowed";
    result.severity = Severity::Error;
    result.subject = subject;
    return result;
}

TEST(Waivers, FileIsRead) {
    const std::vector<Waiver> waivers = waiversOf(waiver(R"(, "expires": "2026-12-31")"));
    ASSERT_THAT(waivers, SizeIs(1));
    EXPECT_EQ(waivers[0].position.line, 1U);
    EXPECT_EQ(waivers[0].position.column, 14U);
    EXPECT_EQ(waivers[0].lastDayPosition.line, 2U);
    EXPECT_EQ(waivers[0].rule, "library-not-allowed");
    EXPECT_EQ(waivers[0].reason, "agreed");
    ASSERT_TRUE(waivers[0].lastDay.has_value());
    EXPECT_EQ(formatDate(*waivers[0].lastDay), "2026-12-31");
    EXPECT_FALSE(waiversOf(waiver(""))[0].lastDay.has_value());
    EXPECT_THAT(waiversOf(R"({"waivers": []})"), IsEmpty());
}

TEST(Waivers, PatternsMatchTheWholeOfSubjectAndPackageName) {
    Waiver known = waiversOf(waiver(""))[0];
    struct Case {
        const char* name;
        std::optional<std::string> subject;
        const char* package;
        bool covered;
    };
    const Case cases[] = {
        {"both match", "libfoo.so.1", "org.example.app", true},
        {"subject goes on", "libfoo.so.1.2", "org.example.app", false},
        {"subject begins earlier", "xlibfoo.so.1", "org.example.app", false},
        {"another package", "libfoo.so.1", "com.example.app", false},
        {"no subject", std::nullopt, "org.example.app", false},
        {"case counts", "LibFoo.so.1", "org.example.app", false},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(covers(&known, finding(test.subject), test.package), test.covered);
    }
    Finding other = finding("libfoo.so.1");
    other.rule = "rpath-not-allowed";
    EXPECT_FALSE(covers(&known, other, "org.example.app"));
}

TEST(Waivers, FindingWithoutSubjectIsAboutTheEmptyText) {
    for (const char* subject : {"", ".*"}) {
        Waiver known =
            waiversOf(R"({"waivers": [{"rule": "library-not-allowed", "subject": ")" +
                      std::string(subject) + R"(", "package": ".*", "reason": "x"}]})")[0];
        EXPECT_TRUE(covers(&known, finding(std::nullopt), "a"));
    }
}

TEST(Waivers, TextTooLongForTheEngineIsNotExcused) {
    Waiver known = waiversOf(R"({"waivers": [{"rule": "library-not-allowed",
                                 "subject": "(a)\\1*", "package": "a", "reason": "x"}]})")[0];
    EXPECT_TRUE(covers(&known, finding(std::string(1000, 'a')), "a"));
    EXPECT_FALSE(covers(&known, finding(std::string(1'000'000, 'a')), "a"));
}

TEST(Waivers, EachFaultOfAFileIsReported) {
    EXPECT_THAT(
        faultsOf(R"({"waivers": [{"rule": 1, "subject": "(", "package": "[a",
                             "reason": " ", "until": "x", "expires": "2026-02-30"}, 7],
                             "more": 1})"),
        ElementsAre("more|is not a known key", "waivers[1]|is not an object",
                    "waivers[0].until|is not a known key", "waivers[0].rule|is not a string",
                    testing::StartsWith("waivers[0].subject|is not a regular expression: "),
                    testing::StartsWith("waivers[0].package|is not a regular expression: "),
                    "waivers[0].reason|says nothing",
                    "waivers[0].expires|is not a day of the form yyyy-mm-dd"));
}

TEST(Waivers, EverythingButTheDayIsMandatory) {
    EXPECT_THAT(faultsOf(R"({"waivers": [{}]})"),
                ElementsAre("waivers[0].rule|is missing", "waivers[0].subject|is missing",
                            "waivers[0].package|is missing", "waivers[0].reason|is missing"));
    EXPECT_THAT(faultsOf(waiver(R"(, "expires": null)")),
                ElementsAre("waivers[0].expires|is not a string"));
}

TEST(Waivers, FileThatIsNoObjectWithAListIsRefused) {
    struct Case {
        const char* content;
        const char* fault;
    };
    const Case cases[] = {{"[]", "|holds no JSON object"},
                          {"null", "|holds no JSON object"},
                          {"{}", "waivers|is missing"},
                          {R"({"waivers": {}})", "waivers|is not an array"}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.content);
        EXPECT_THAT(faultsOf(test.content), ElementsAre(test.fault));
    }
    EXPECT_THAT(faultsOf(""), ElementsAre(testing::StartsWith("|parse error")));
    EXPECT_THAT(faultsOf("{\"waivers\": [\"\xff\"]}"), SizeIs(1));
}

TEST(Waivers, FileThatCannotBeReadIsAFault) {
    const TemporaryDirectory directory;
    for (const std::string& path : {directory / "none.json", directory.path().string()}) {
        std::vector<Fault> faults;
        EXPECT_THAT(readWaivers(path, &faults), IsEmpty());
        EXPECT_THAT(faults, SizeIs(1));
    }
}

TEST(Waivers, GraveRulesCannotBeNamed) {
    EXPECT_THAT(faultsOf(R"({"waivers": [{"rule": "setuid-file", "subject": ".*",
                             "package": ".*", "reason": "x"}]})"),
                ElementsAre("waivers[0].rule|cannot be waived"));
}

TEST(Calendar, DaysHaveOneForm) {
    for (const char* day : {"2026-01-01", "2024-02-29", "2026-12-31", "0001-01-01"}) {
        const std::optional<Date> date = parseDate(day);
        ASSERT_TRUE(date.has_value()) << day;
        EXPECT_EQ(formatDate(*date), day);
    }
    for (const char* text : {"", "2026-1-1", "2026-02-29", "2026-13-01", "2026-00-10", "2026-04-31",
                             "26-01-01", "2026/01/01", "2026-01-01 ", "+026-01-01", "2026-01-0x"}) {
        EXPECT_FALSE(parseDate(text).has_value()) << text;
    }
}

TEST(Calendar, TodayIsADay) {
    EXPECT_TRUE(pkgvet::cli::localDate().ok());
    EXPECT_GE(pkgvet::cli::localDate(), *parseDate("2024-01-01"));
}

TEST(Waivers, RuleThatDoesNotExistIsRefusedWithTheNearest) {
    EXPECT_THAT(faultsOf(R"({"waivers": [{"rule": "libary-not-allowed", "subject": "a",
                             "package": "a", "reason": "x"}]})"),
                ElementsAre("waivers[0].rule|is not the id of a rule; the nearest is "
                            "library-not-allowed"));
}

// Everything that is said of a file leads an editor to it.
TEST(Waivers, FaultsHaveTheirPlaceAndTheValueInQuestion) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("w.json",
                                             "{\n"
                                             "  \"waivers\": [\n"
                                             "    {\"rule\": \"icon\",\n"
                                             "     \"subjct\": \"é\", \"package\": \"lib[\",\n"
                                             "     \"reason\": 7, \"expires\": \"soon\"}\n"
                                             "  ]\n"
                                             "}\n");
    std::vector<Fault> faults;
    readWaivers(path, &faults);
    std::vector<std::string> lines;
    for (const Fault& fault : faults) {
        lines.push_back(describe(fault));
    }
    EXPECT_THAT(
        lines,
        ElementsAre(path + ":4:6: \"waivers[0].subjct\" is not a known key: did you mean subject?",
                    testing::StartsWith(path + ":3:14: \"icon\" is not the id of a rule; the "
                                               "nearest is icon-"),
                    path + ":3:5: \"waivers[0].subject\" is missing",
                    testing::StartsWith(path + ":4:32: \"lib[\" is not a regular expression: "),
                    path + ":5:16: 7 is not a string",
                    path + ":5:30: \"soon\" is not a day of the form yyyy-mm-dd"));
}

TEST(Waivers, KeyThatStandsTwiceIsRefused) {
    EXPECT_THAT(faultsOf(waiver(R"(, "reason": "another")")),
                ElementsAre("waivers[0].reason|stands there twice"));
    EXPECT_THAT(faultsOf(R"({"waivers": [], "waivers": []})"),
                ElementsAre("waivers|stands there twice"));
}

}  // namespace
