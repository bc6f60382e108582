// The search for the home directory of the platform's default user.
#include "pkgvet/files/hardcoded_path_search.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using pkgvet::HardcodedPathSearch;

// The search as it is defined: formatted input of single characters, and a difference ends the
// attempt.
bool holdsPathPlainly(const std::string& text) {
    const std::string path = "/home/defaultuser";
    std::istringstream stream(text);
    std::istream_iterator<char> next(stream);
    const std::istream_iterator<char> end;
    while (next != end) {
        if (*next++ != path[0]) {
            continue;
        }
        std::size_t matched = 1;
        while (matched < path.size()) {
            if (next == end) {
                return false;
            }
            if (*next++ != path[matched]) {
                break;
            }
            ++matched;
        }
        if (matched == path.size()) {
            return true;
        }
    }
    return false;
}

bool holdsPath(const std::string& text, const std::vector<std::size_t>& cuts = {}) {
    HardcodedPathSearch search;
    const std::string_view view = text;
    std::size_t begin = 0;
    for (const std::size_t cut : cuts) {
        if (search.feed(view.substr(begin, cut - begin))) {
            return true;
        }
        begin = cut;
    }
    return search.feed(view.substr(begin));
}

struct Case {
    const char* name;
    std::string text;
    bool found;
};

std::vector<Case> cases() {
    const std::string path = "/home/defaultuser";
    return {
        {"nothing", "", false},
        {"the path alone", path, true},
        {"a line of a desktop file", "Exec=/home/defaultuser/bin/run\n", true},
        {"cut at the end", "/home/defaultus", false},
        {"one character short", "/home/defaultuse", false},
        {"another user", "/home/defaultuse/home", false},
        {"the start comes twice", "/" + path, false},
        {"a partial match in front", "/home" + path, false},
        {"three slashes", "//" + path, true},
        {"text in front", "x" + path, true},
        {"another directory in front", "/usr" + path, true},
        {"behind a whole partial match", "/home/defaultuse" + path, false},
        {"a second occurrence behind a lost one", "/" + path + " " + path, true},
        {"twice", path + path, true},
        {"capitals", "/HOME/defaultuser", false},
        {"blanks between", "/ h o m e / d e f a u l t u s e r", true},
        {"line ends between", "/home/\r\n\tdefault\v\fuser", true},
        {"blanks behind a slash", "/" + std::string(100000, ' ') + "home/defaultuser", true},
        {"blanks do not end an attempt", "/ " + path, false},
        {"a NUL byte between", std::string("/home/\0defaultuser", 18), false},
        {"NUL bytes around", std::string("\0\0", 2) + path + std::string("\0", 1), true},
        {"a byte next to white space",
         "/home/\x08"
         "defaultuser",
         false},
        {"another byte next to white space",
         "/home/\x0E"
         "defaultuser",
         false},
        {"a non-breaking blank",
         "/home/\xA0"
         "defaultuser",
         false},
        {"far behind", std::string(1000000, 'x') + path, true},
        {"far behind slashes", std::string(1000000, '/') + path, true},
        {"far behind an odd number of slashes", std::string(1000001, '/') + path, false},
    };
}

TEST(HardcodedPathSearch, FindsWhatItsDefinitionFinds) {
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(holdsPathPlainly(test.text), test.found);
        EXPECT_EQ(holdsPath(test.text), test.found);
    }
}

TEST(HardcodedPathSearch, WhereATextIsCutMakesNoDifference) {
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        const std::size_t limit = std::min<std::size_t>(test.text.size(), 200);
        for (std::size_t first = 0; first <= limit; ++first) {
            EXPECT_EQ(holdsPath(test.text, {first}), test.found) << first;
            EXPECT_EQ(holdsPath(test.text, {first, (first + limit) / 2, limit}), test.found)
                << first;
        }
    }
}

TEST(HardcodedPathSearch, EachPlaceInALongTextIsSearched) {
    for (std::size_t position = 0; position < 300; ++position) {
        const std::string text =
            std::string(position, 'x') + "/home/defaultuser" + std::string(300 - position, 'x');
        EXPECT_TRUE(holdsPath(text)) << position;
    }
}

// Texts of the characters that matter, in the proportions that make long partial matches.
class RandomText {
public:
    explicit RandomText(unsigned seed) : engine_(seed) {}

    std::size_t number(std::size_t limit) { return engine_() % limit; }

    std::string next() {
        std::string text;
        const std::size_t size = number(400);
        while (text.size() < size) {
            text += piece();
        }
        return text;
    }

private:
    std::string piece() {
        const std::string path = "/home/defaultuser";
        switch (number(6)) {
            case 0:
                return path.substr(0, 1 + number(path.size()));
            case 1:
                return path.substr(number(path.size()));
            case 2:
                return std::string(number(40), " \t\n\v\f\r"[number(6)]);
            case 3:
                return std::string(1 + number(3), '/');
            case 4:
                return std::string(1, static_cast<char>(number(256)));
            default:
                return std::string(1, path[number(path.size())]);
        }
    }

    std::mt19937 engine_;
};

TEST(HardcodedPathSearch, NeverDiffersFromThePlainFormulation) {
    RandomText random(20240229);
    std::size_t hits = 0;
    for (int i = 0; i < 40000; ++i) {
        const std::string text = random.next();
        const std::size_t first = random.number(text.size() + 1);
        const std::size_t second = first + random.number(text.size() - first + 1);
        const bool expected = holdsPathPlainly(text);
        ASSERT_EQ(holdsPath(text), expected) << text;
        ASSERT_EQ(holdsPath(text, {first, second}), expected) << text << first << ' ' << second;
        hits += expected ? 1 : 0;
    }
    EXPECT_GT(hits, 1000U);
    EXPECT_LT(hits, 39000U);
}

// Whether a path is found depends on each "/" in front of it, however far back.
TEST(HardcodedPathSearch, NeverDiffersOnTextOfVeryFewCharacters) {
    const std::string alphabet = "/hom ";
    std::mt19937 engine(7);
    for (int i = 0; i < 20000; ++i) {
        std::string text(engine() % 200, '/');
        for (char& c : text) {
            c = alphabet[engine() % alphabet.size()];
        }
        text += "/home/defaultuser";
        ASSERT_EQ(holdsPath(text, {engine() % text.size()}), holdsPathPlainly(text)) << text;
    }
}

}  // namespace
