// The rules that every key of a group has a permitted value, or a colour.
#include <gtest/gtest.h>

#include "pkgvet/desktop/desktop_rules.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_run.h"

namespace {

using Strings = std::vector<std::string>;
using pkgvet::FieldRow;
using pkgvet::Findings;
using pkgvet::WordSet;

const WordSet kValues = {"All", "None"};
const std::vector<FieldRow> kRows = {{{"One", "Two"}, {"A", "B"}}, {{"Two", "Three"}, {"C"}}};

std::string badValue(const std::string& value, const std::string& field) {
    return errorLine("[desktop] invalid value '" + value + "' in '" + field + "' field");
}

Strings badValues(const Strings& values, const std::string& field) {
    Strings lines;
    for (const std::string& value : values) {
        lines.push_back(badValue(value, field));
    }
    return lines;
}

std::string badField(const std::string& field) {
    return errorLine("[desktop] invalid field name '" + field + "' in 'G' group");
}

Strings badColor(const std::string& value, const std::string& field) {
    return {errorLine("[desktop] invalid value '" + value + "' in 'G/" + field + "' field. "),
            "The expected value is a color in hex format (#RRGGBB)."};
}

// What each rule reports on a file with this content, of which it is told the group "G".

Strings judgeValues(const std::string& content) {
    return linesOf([&](Findings* findings) {
        pkgvet::validateDesktopEntryFieldStringValues("G", "F", kValues, desktopEntry(content),
                                                      findings);
    });
}

Strings judgeRows(const std::string& content, const std::vector<FieldRow>& rows = kRows) {
    return linesOf([&](Findings* findings) {
        pkgvet::validateDesktopEntryGroupStringFields("G", rows, desktopEntry(content), findings);
    });
}

Strings judgeColor(const std::string& content) {
    return linesOf([&](Findings* findings) {
        pkgvet::validateDesktopEntryFieldColorValue("G", "F", desktopEntry(content), findings);
    });
}

Strings judgeColors(const std::string& content) {
    return linesOf([&](Findings* findings) {
        pkgvet::validateDesktopEntryGroupColorFields("G", {"One", "Two"}, desktopEntry(content),
                                                     findings);
    });
}

TEST(DesktopFields, EachElementOfAValueIsLookedUpAlone) {
    struct Case {
        const char* value;
        Strings bad;
    };
    const Case cases[] = {
        {"All", {}},
        {"", {}},
        {"All;None;", {}},
        {"All;Some;None;Few", {"Some", "Few"}},
        {"all", {"all"}},
        {"All ", {"All "}},
        {"All;;None", {""}},
        {"Al", {"Al"}},
        {"All,None", {"All,None"}},
        {"Some;Some", {"Some", "Some"}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.value);
        EXPECT_EQ(judgeValues(std::string("[G]\nF=") + test.value + "\n"),
                  badValues(test.bad, "G/F"));
    }
}

TEST(DesktopFields, AMissingListHasNoFinding) {
    EXPECT_EQ(judgeValues("[H]\n"), Strings());
    EXPECT_EQ(judgeValues("[G]\nH=Some\n"), Strings());
}

TEST(DesktopFields, KeysAreJudgedByTheFirstRowThatHasThem) {
    EXPECT_EQ(judgeRows("[G]\nThree=C;A\nTwo=C\nOne=A;B\n"),
              (Strings{badValue("A", "G/Three"), badValue("C", "G/Two")}));
}

TEST(DesktopFields, OtherKeysAreInvalidAndTheRestIsJudgedAllTheSame) {
    EXPECT_EQ(
        judgeRows("[G]\nFour=A\nOne=X\none=A\nOne[de]=A\n"),
        (Strings{badField("Four"), badValue("X", "G/One"), badField("one"), badField("One[de]")}));
}

TEST(DesktopFields, WithoutRowsEveryKeyIsInvalid) {
    EXPECT_EQ(judgeRows("[G]\nb=1\na=2\n", {}), (Strings{badField("b"), badField("a")}));
}

TEST(DesktopFields, AKeyThatIsSetTwiceIsReportedTwiceWithItsLastValue) {
    EXPECT_EQ(judgeRows("[G]\nOne=A\nOne=X\nTwo=X\nTwo=B\n"), badValues({"X", "X"}, "G/One"));
}

// With the value read anew for every copy this would run for hours.
TEST(DesktopFields, AKeyThatIsSetVeryOftenIsReadOnce) {
    std::string content = "[G]\n";
    for (int i = 0; i < 200000; ++i) {
        content += "One=\n";
    }
    content += "One=";
    for (int i = 0; i < 200000; ++i) {
        content += "A;";
    }
    EXPECT_EQ(judgeRows(content), Strings());
}

TEST(DesktopFields, ColoursHaveThreeOrSixDigits) {
    for (const char* value : {"#FFF", "#fff", "#a1B2c3", "#012345", "#ABCDEF"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(judgeColor(std::string("[G]\nF=") + value + "\n"), Strings());
    }
}

TEST(DesktopFields, AnythingElseIsNotAColour) {
    for (const std::string& value :
         {std::string("#ABCD"), std::string("ABCDEF"), std::string("#GGGGGG"), std::string("#"),
          std::string("#FFF "), std::string("#1234567"), std::string("#FFF;"), std::string(),
          std::string("red"), std::string(100000, 'F'), "#" + std::string(100000, 'F')}) {
        SCOPED_TRACE(value.substr(0, 20));
        EXPECT_EQ(judgeColor("[G]\nF=" + value + "\n"), badColor(value, "F"));
    }
}

// The engine of the other patterns would let it pass.
TEST(DesktopFields, AColourWithALineFeedBehindItIsNotAColour) {
    const CapturedLog log;
    Findings findings;
    pkgvet::validateDesktopEntryFieldColorValue("G", "F", desktopEntry("[G]\nF=#FFF\\n\n"),
                                                &findings);
    EXPECT_EQ(log.text(),
              "(ERROR)\t\t[desktop] invalid value '#FFF\n' in 'G/F' field. \nThe expected value is "
              "a color in hex format (#RRGGBB).\n");
}

TEST(DesktopFields, AMissingColourIsAnEmptyOne) {
    EXPECT_EQ(judgeColor(""), badColor("", "F"));
}

TEST(DesktopFields, AGroupOfColoursHasNoOtherKeys) {
    Strings expected = badColor("blue", "Two");
    expected.push_back(badField("Three"));
    expected.push_back(badField("Two[de]"));
    EXPECT_EQ(judgeColors("[G]\nTwo=blue\nThree=#FFF\nOne=#FFF\nTwo[de]=#FFF\n"), expected);
}

TEST(DesktopFields, AnEmptyOrMissingGroupHasNoFinding) {
    for (const char* content : {"[G]\n", "[H]\nFour=X\n", ""}) {
        EXPECT_EQ(judgeColors(content), Strings());
        EXPECT_EQ(judgeRows(content), Strings());
    }
}

// As pairs of key and value there would be two thousand million of them.
TEST(DesktopFields, AKeyIsJudgedOnceAndItsLinesAreRepeated) {
    std::string content = "[G]\n";
    for (int i = 0; i < 20000; ++i) {
        content += "One=A\n";
    }
    content += "One=X;";
    for (int i = 0; i < 100000; ++i) {
        content += "A;";
    }
    EXPECT_EQ(judgeRows(content + "\n"),
              Strings(20001, errorLine("[desktop] invalid value 'X' in 'G/One' field")));
}

}  // namespace
