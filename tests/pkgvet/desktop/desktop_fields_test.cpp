// The rules that every key of a group has a permitted value, or a colour.
#include <gtest/gtest.h>

#include "pkgvet/content/content_validator.h"
#include "tests/support/captured_log.h"
#include "tests/support/desktop_file.h"

namespace {

using Strings = std::vector<std::string>;
using Words = std::unordered_set<std::string>;

const Words kValues = {"All", "None"};
const std::vector<std::pair<Words, Words>> kRows = {{{"One", "Two"}, {"A", "B"}},
                                                    {{"Two", "Three"}, {"C"}}};

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

class DesktopFields : public testing::Test {
protected:
    ContentValidator validator_{""};
    CapturedLog log_;
};

TEST_F(DesktopFields, EachElementOfAValueIsLookedUpAlone) {
    struct Case {
        const char* value;
        Strings bad;
    };
    const Case cases[] = {
        {"All", {}},         {"", {}},
        {"All;None;", {}},   {"All;Some;None;Few", {"Some", "Few"}},
        {"all", {"all"}},    {"All ", {"All "}},
        {"All;;None", {""}}, {"Al", {"Al"}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.value);
        log_.clear();
        validator_.validateDesktopEntryFieldStringValues(
            "G", "F", kValues, desktopEntry(std::string("[G]\nF=") + test.value + "\n"));
        EXPECT_EQ(log_.lines(), badValues(test.bad, "G/F"));
    }
}

TEST_F(DesktopFields, AMissingListHasNoFinding) {
    validator_.validateDesktopEntryFieldStringValues("G", "F", kValues, desktopEntry("[H]\n"));
    EXPECT_EQ(log_.lines(), Strings());
}

TEST_F(DesktopFields, KeysAreJudgedByTheFirstRowThatHasThem) {
    validator_.validateDesktopEntryGroupStringFields(
        "G", kRows, desktopEntry("[G]\nThree=C;A\nTwo=C\nOne=A;B\n"));
    EXPECT_EQ(log_.lines(), (Strings{badValue("A", "G/Three"), badValue("C", "G/Two")}));
}

TEST_F(DesktopFields, OtherKeysAreInvalidAndTheRestIsJudgedAllTheSame) {
    validator_.validateDesktopEntryGroupStringFields(
        "G", kRows, desktopEntry("[G]\nFour=A\nOne=X\none=A\nOne[de]=A\n"));
    EXPECT_EQ(log_.lines(), (Strings{badField("Four"), badValue("X", "G/One"), badField("one"),
                                     badField("One[de]")}));
}

TEST_F(DesktopFields, WithoutRowsEveryKeyIsInvalid) {
    validator_.validateDesktopEntryGroupStringFields("G", {}, desktopEntry("[G]\nb=1\na=2\n"));
    EXPECT_EQ(log_.lines(), (Strings{badField("b"), badField("a")}));
}

TEST_F(DesktopFields, AKeyThatIsSetTwiceIsReportedTwiceWithItsLastValue) {
    validator_.validateDesktopEntryGroupStringFields(
        "G", kRows, desktopEntry("[G]\nOne=A\nOne=X\nTwo=X\nTwo=B\n"));
    EXPECT_EQ(log_.lines(), badValues({"X", "X"}, "G/One"));
}

// With the value read anew for every copy this would run for hours.
TEST_F(DesktopFields, AKeyThatIsSetVeryOftenIsReadOnce) {
    std::string content = "[G]\n";
    for (int i = 0; i < 200000; ++i) {
        content += "One=\n";
    }
    content += "One=";
    for (int i = 0; i < 200000; ++i) {
        content += "A;";
    }
    validator_.validateDesktopEntryGroupStringFields("G", kRows, desktopEntry(content));
    EXPECT_EQ(log_.lines(), Strings());
}

TEST_F(DesktopFields, ColoursHaveThreeOrSixDigits) {
    for (const char* value : {"#FFF", "#fff", "#a1B2c3", "#012345", "#ABCDEF"}) {
        SCOPED_TRACE(value);
        validator_.validateDesktopEntryFieldColorValue(
            "G", "F", desktopEntry(std::string("[G]\nF=") + value + "\n"));
        EXPECT_EQ(log_.lines(), Strings());
    }
}

TEST_F(DesktopFields, AnythingElseIsNoColour) {
    for (const std::string& value :
         {std::string("#ABCD"), std::string("ABCDEF"), std::string("#GGGGGG"), std::string("#"),
          std::string("#FFF "), std::string("#1234567"), std::string("#FFF;"), std::string(),
          std::string("red"), std::string(100000, 'F'), "#" + std::string(100000, 'F')}) {
        SCOPED_TRACE(value.substr(0, 20));
        log_.clear();
        validator_.validateDesktopEntryFieldColorValue("G", "F",
                                                       desktopEntry("[G]\nF=" + value + "\n"));
        EXPECT_EQ(log_.lines(), badColor(value, "F"));
    }
}

// The engine of the other patterns would let it pass.
TEST_F(DesktopFields, ALineFeedBehindAColourIsNoColour) {
    validator_.validateDesktopEntryFieldColorValue("G", "F", desktopEntry("[G]\nF=#FFF\\n\n"));
    EXPECT_EQ(log_.text(),
              "(ERROR)\t\t[desktop] invalid value '#FFF\n' in 'G/F' field. \nThe expected value is "
              "a color in hex format (#RRGGBB).\n");
}

TEST_F(DesktopFields, AMissingColourIsAnEmptyOne) {
    validator_.validateDesktopEntryFieldColorValue("G", "F", desktopEntry(""));
    EXPECT_EQ(log_.lines(), badColor("", "F"));
}

TEST_F(DesktopFields, AGroupOfColoursHasNoOtherKeys) {
    validator_.validateDesktopEntryGroupColorFields(
        "G", {"One", "Two"}, desktopEntry("[G]\nTwo=blue\nThree=#FFF\nOne=#FFF\nTwo[de]=#FFF\n"));
    Strings expected = badColor("blue", "Two");
    expected.push_back(badField("Three"));
    expected.push_back(badField("Two[de]"));
    EXPECT_EQ(log_.lines(), expected);
}

TEST_F(DesktopFields, AnEmptyOrMissingGroupHasNoFinding) {
    const DesktopEntry entry = desktopEntry("[G]\n");
    for (const char* group : {"G", "H"}) {
        validator_.validateDesktopEntryGroupColorFields(group, {"One"}, entry);
        validator_.validateDesktopEntryGroupStringFields(group, kRows, entry);
    }
    EXPECT_EQ(log_.lines(), Strings());
}

}  // namespace
