// Intent specifications.
#include "pkgvet/desktop/intents.h"

#include <gtest/gtest.h>

#include "tests/support/base/captured_log.h"

namespace {

using Strings = std::vector<std::string>;

Strings reported(const Strings& specifications, bool* valid) {
    const CapturedLog log;
    *valid = validateIntents(specifications);
    return log.lines();
}

TEST(Intents, AnEmptyListIsAccepted) {
    bool valid = false;
    EXPECT_EQ(reported({}, &valid), Strings());
    EXPECT_TRUE(valid);
}

TEST(Intents, AcceptedWithoutALine) {
    for (const char* text :
         {"Start", "OpenURI", "X-Custom", "X-Ab", "X-A1-b", "OpenURI/text", "OpenURI/x-b2",
          "OpenURI/text:gui", "Start:gui", "X-Custom:gui", "Start:gui|gui",
          // Of a list only the last flag is looked at.
          "Start:foo|gui",
          // The bar is optional at the front as well.
          "Start:|gui",
          // The engine lets one line feed stand at the end.
          "Start\n"}) {
        SCOPED_TRACE(text);
        bool valid = false;
        EXPECT_EQ(reported({text}, &valid), Strings());
        EXPECT_TRUE(valid);
    }
}

TEST(Intents, WhatHasNotTheShapeIsInvalid) {
    for (const char* text : {"",
                             "open",
                             "start",
                             "A",
                             "X-custom",
                             "X-foo",
                             "X-",
                             "X-A",
                             "X-1a",
                             "1Start",
                             "-Start",
                             "Start Open",
                             " Start",
                             "Start ",
                             "Start_",
                             "Start/",
                             "Start/t",
                             "Start/1t",
                             "Start/te/xt",
                             "Start:",
                             "Start:g",
                             "Start:1g",
                             "Start:gui|",
                             "Start:gui||gui",
                             "Start:gui|g",
                             "Start:gui:gui",
                             "Start:gui/text",
                             "St\xC3\xA4rt"}) {
        SCOPED_TRACE(text);
        bool valid = true;
        EXPECT_EQ(reported({text}, &valid),
                  Strings{errorLine(std::string("Invalid intent specification: ") + text)})
            << text;
        EXPECT_FALSE(valid);
    }
}

TEST(Intents, OtherNamesAreNotStandardAndTheirFlagsGoUnseen) {
    struct Case {
        const char* text;
        const char* name;
    };
    const Case cases[] = {{"Custom", "Custom"},      {"Ab", "Ab"},
                          {"Start1", "Start1"},      {"X1-a", "X1-a"},
                          {"OpenUri/a1", "OpenUri"}, {"Custom:bar", "Custom"},
                          {"XStart", "XStart"}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        bool valid = true;
        EXPECT_EQ(reported({test.text}, &valid),
                  Strings{errorLine(std::string("Non standard intent name: ") + test.name)});
        EXPECT_FALSE(valid);
    }
}

TEST(Intents, OnlyTheLastFlagMustBeKnown) {
    struct Case {
        const char* text;
        const char* flag;
    };
    const Case cases[] = {{"Start:bar", "bar"},
                          {"Start:gui|foo", "foo"},
                          {"Start:foo|bar", "bar"},
                          {"X-Custom/sub:guii", "guii"},
                          {"Start:Gui", "Gui"}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.text);
        bool valid = true;
        EXPECT_EQ(reported({test.text}, &valid),
                  Strings{errorLine(std::string("Unknown intent flag: ") + test.flag)});
        EXPECT_FALSE(valid);
    }
}

TEST(Intents, ABadElementInfluencesNoOther) {
    bool valid = true;
    EXPECT_EQ(reported({"open", "Start", "Fly", "OpenURI:fast", "X-Good"}, &valid),
              (Strings{errorLine("Invalid intent specification: open"),
                       errorLine("Non standard intent name: Fly"),
                       errorLine("Unknown intent flag: fast")}));
    EXPECT_FALSE(valid);
}

// Each of these drove an engine that tries every division of the flags to its limit.
TEST(Intents, AwkwardTextsAreInvalidAtOnce) {
    const Strings awkward = {
        "Start:" + std::string(1000, 'a') + "!", "Start:" + std::string(100000, 'a') + ":",
        "S" + std::string(1000000, 't') + "!", "Start/" + std::string(1000000, 't') + "!"};
    for (const std::string& text : awkward) {
        bool valid = true;
        EXPECT_EQ(reported({text}, &valid),
                  Strings{errorLine("Invalid intent specification: " + text)});
        EXPECT_FALSE(valid);
    }
}

TEST(Intents, AMillionFlagsAreRead) {
    std::string text = "Start:";
    for (int i = 0; i < 1000000; ++i) {
        text += "|ab";
    }
    bool valid = true;
    EXPECT_EQ(reported({text}, &valid), Strings{errorLine("Unknown intent flag: ab")});
}

}  // namespace
