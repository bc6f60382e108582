// Patterns that are known to be sound without the engine.
#include "pkgvet/pattern/sound_pattern.h"

#include <gtest/gtest.h>

#include <functional>
#include <regex>
#include <string>

namespace {

using pkgvet::isSurelySound;

TEST(SoundPattern, WhatRuleFilesAreMadeOfIsKnown) {
    for (const char* pattern :
         {"", "libz\\.so\\.1", "Qt.*", "libicu(uc|i18n|data)\\.so\\.[0-9]+",
          "libstdc\\+\\+\\.so\\.6\\((GLIBCXX|CXXABI)_[0-9.]+\\)", "/usr/[^/]+(/.*)?",
          "/usr/lib(64)?/qt5/qml/(?!Qt|Lumbra)[^/]+(/.*)?", "(?:a|b)+(?=c)", "[a-zA-Z_/:]?",
          "a|"}) {
        EXPECT_TRUE(isSurelySound(pattern)) << pattern;
    }
}

TEST(SoundPattern, WhatTheEngineHasToTellIsNotKnown) {
    for (const char* pattern :
         {"a**",     "a+?",  "*",           "a|*",   "(*",    "(?=a)+", "(",    ")",       "(a))",
          "((a))",   "(?a)", "(?<a)",       "[b-a]", "[]",    "[^]",    "[]a]", "[a-]",    "[-a]",
          "[a-c-e]", "[a",   "[[:alpha:]]", "[:-a]", "[\\d]", "a{2}",   "{",    "}",       "]",
          "^a",      "a$",   "\\",          "\\d",   "\\1",   "\\b",    "\n",   "\xc3\xa4"}) {
        EXPECT_FALSE(isSurelySound(pattern)) << pattern;
    }
}

TEST(SoundPattern, LongPatternIsLeftToTheEngine) {
    EXPECT_TRUE(isSurelySound(std::string(1024, 'a')));
    EXPECT_FALSE(isSurelySound(std::string(1025, 'a')));
}

// Calls visit with each text of up to length of the characters.
void forEachText(const std::string& characters, std::size_t length,
                 const std::function<void(const std::string&)>& visit) {
    std::string text;
    const std::function<void()> extend = [&] {
        visit(text);
        for (const char c : text.size() < length ? characters : std::string()) {
            text.push_back(c);
            extend();
            text.pop_back();
        }
    };
    extend();
}

bool isTakenByTheEngine(const std::string& pattern) {
    try {
        std::regex_match(std::string(), std::regex(pattern));
        return true;
    } catch (const std::regex_error&) {
        return false;
    }
}

TEST(SoundPattern, EngineTakesEachShortPatternThatIsTakenForSound) {
    struct Case {
        const char* characters;
        std::size_t length;
    };
    for (const Case& test : {
             Case{"a()?:=!<|*", 5},
             Case{"ab-[]^", 6},
             Case{"a[]:.=^-", 5},
             Case{"1a,{}[]()|+?*^$\\.-/ :", 3},
         }) {
        std::size_t sound = 0;
        forEachText(test.characters, test.length, [&sound](const std::string& pattern) {
            if (isSurelySound(pattern)) {
                ++sound;
                EXPECT_TRUE(isTakenByTheEngine(pattern)) << pattern;
            }
        });
        EXPECT_GT(sound, 100u) << test.characters;
    }
}

}  // namespace
