// Text from packages made fit for a terminal.
#include "cli/base/escape.h"

#include <gtest/gtest.h>

namespace {

using pkgvet::cli::printable;

TEST(Printable, EscapesWhatATerminalWouldActUpon) {
    struct Case {
        const char* name;
        std::string text;
        std::string expected;
    };
    const Case cases[] = {
        {"plain", "[/usr/bin/x] y", "[/usr/bin/x] y"},
        {"letters", "\u00e4\u4e2d\U0001f600", "\u00e4\u4e2d\U0001f600"},
        {"escape", "\033[31mx", "\\x1b[31mx"},
        {"line feed and tab", "a\nb\tc", "a\\x0ab\\x09c"},
        {"NUL", std::string("a\0b", 3), "a\\x00b"},
        {"delete", "\x7f", "\\x7f"},
        {"C1 control", "\u009b", "\\u{009b}"},
        {"right-to-left override", "a\u202eb", "a\\u{202e}b"},
        {"isolate", "\u2066", "\\u{2066}"},
        {"zero width", "\u200b\ufeff", "\\u{200b}\\u{feff}"},
        {"soft hyphen", "a\u00adb", "a\\u{00ad}b"},
        {"other text that is not seen", "\u180e\u3164", "\\u{180e}\\u{3164}"},
        {"marks of annotations", "\ufff8\ufff9\ufffb\ufffc", "\ufff8\\u{fff9}\\u{fffb}\ufffc"},
        {"neighbours", "\u00ac\u00ae\u180d\u180f\u3163\u3165",
         "\u00ac\u00ae\u180d\u180f\u3163\u3165"},
        {"non-characters", "\uffff", "\\u{ffff}"},
        {"broken UTF-8", "a\xff\xc3", "a\\xff\\xc3"},
        {"surrogate", "\xed\xa0\x80", "\\xed\\xa0\\x80"},
        {"empty", "", ""},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(printable(test.text), test.expected);
    }
}

TEST(BytesUnescaped, GivesBackTheBytes) {
    std::string bytes = "\\x41 \\\\ \u00e4";
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    EXPECT_EQ(pkgvet::cli::bytesUnescaped(pkgvet::cli::bytesEscaped(bytes).value()), bytes);
}

TEST(BytesUnescaped, RefusesWhatNobodyEscaped) {
    for (const char* text :
         {"", "plain", "\\x41", "\\xFF", "\\xf", "\\xfg", "\\", "\\n\\xff", "\xff"}) {
        EXPECT_EQ(pkgvet::cli::bytesUnescaped(text), std::nullopt) << text;
    }
}

}  // namespace
