// What a search by GLib's regular expressions leaves behind: groups, by number and by name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "pkgvet/base/glib_handles.h"
#include "pkgvet/pattern/regex.h"
#include "pkgvet/pattern/rule_pattern.h"
#include "tests/support/base/captured_log.h"

namespace {

using pkgvet::kPlainPattern;
using testing::HasSubstr;

constexpr GRegexMatchFlags kNoFlags = kPlainPattern.match;

std::optional<std::string> group(const std::string& pattern, const std::string& subject,
                                 int number) {
    const auto info = Regex(pattern, kPlainPattern.compile, kPlainPattern.match).match(subject);
    return info ? info->fetch(number) : std::optional<std::string>("no match");
}

pkgvet::RegexHandle compiled(const char* pattern) {
    return pkgvet::RegexHandle(
        g_regex_new(pattern, kPlainPattern.compile, kPlainPattern.match, nullptr));
}

TEST(MatchInfo, GroupsAreFetchedByNumber) {
    const std::string pattern = "(b)(c*)(x)?(d)";
    EXPECT_EQ(group(pattern, "abde", 0), "bd");
    EXPECT_EQ(group(pattern, "abde", 1), "b");
    EXPECT_EQ(group(pattern, "abde", 2), "") << "matched the empty text";
    EXPECT_EQ(group(pattern, "abde", 3), std::nullopt) << "took no part";
    EXPECT_EQ(group(pattern, "abde", 4), "d");
    EXPECT_EQ(group(pattern, "abde", 5), std::nullopt) << "does not exist";
}

TEST(MatchInfo, NegativeGroupIsACriticalMessage) {
    const CapturedDescriptor standardError;
    EXPECT_EQ(group("(b)", "abc", -1), std::nullopt);
    EXPECT_THAT(standardError.text(),
                HasSubstr("g_match_info_fetch: assertion 'match_num >= 0' failed"));
}

TEST(MatchInfo, GroupsHoldTheBytesOfTheSubject) {
    const pkgvet::RegexHandle regex = compiled("a(?<rest>.*)");
    MatchInfo info("a\xE9\xFF");
    EXPECT_TRUE(info.match(regex.get(), kNoFlags));
    EXPECT_EQ(info.fetch(0), "a\xE9\xFF");
    EXPECT_EQ(info.fetchNamed("rest"), "\xE9\xFF");
}

TEST(MatchInfo, LastGroupsThatTookNoPartAreEmpty) {
    EXPECT_EQ(group("(a)|(b)|(c)", "a", 1), "a");
    EXPECT_EQ(group("(a)|(b)|(c)", "a", 2), std::nullopt);
    EXPECT_EQ(group("(a)|(b)|(c)", "a", 3), std::nullopt);
}

TEST(MatchInfo, GroupsAreFetchedByName) {
    const Regex regex("(?<first>a)(?<second>b)?(?<third>c*)", kPlainPattern.compile,
                      kPlainPattern.match);
    const auto info = regex.match("a");
    ASSERT_TRUE(info);
    EXPECT_EQ(info->fetchNamed("first"), "a");
    EXPECT_EQ(info->fetchNamed("second"), std::nullopt);
    EXPECT_EQ(info->fetchNamed("third"), "");
    EXPECT_EQ(info->fetchNamed("fourth"), std::nullopt);
    EXPECT_EQ(info->fetchNamed(""), std::nullopt);
}

TEST(MatchInfo, FetchingBeforeAMatchIsACriticalMessage) {
    const CapturedDescriptor standardError;
    const MatchInfo info("a");
    EXPECT_EQ(info.fetch(0), std::nullopt);
    EXPECT_THAT(standardError.text(),
                HasSubstr("g_match_info_fetch: assertion 'match_info != NULL' failed"));
    EXPECT_EQ(info.fetchNamed("name"), std::nullopt);
    EXPECT_THAT(standardError.text(),
                HasSubstr("g_match_info_fetch_named: assertion 'match_info != NULL' failed"));
}

TEST(MatchInfo, NothingIsFetchedAfterAFailedMatch) {
    const pkgvet::RegexHandle regex = compiled("(?<name>b)");
    const CapturedDescriptor standardError;
    MatchInfo info("a");
    EXPECT_FALSE(info.match(regex.get(), kNoFlags));
    EXPECT_EQ(info.fetch(0), std::nullopt);
    EXPECT_EQ(info.fetchNamed("name"), std::nullopt);
    EXPECT_EQ(standardError.text(), "");
}

TEST(MatchInfo, OutlivesTheTextThatItWasMadeFrom) {
    std::optional<MatchInfo> info;
    {
        std::string subject = "a long subject that stands on the heap";
        const Regex regex("(sub)ject", kPlainPattern.compile, kPlainPattern.match);
        info = regex.match(subject);
        subject.assign(subject.size(), 'x');
    }
    ASSERT_TRUE(info);
    EXPECT_EQ(info->fetch(1), "sub");
}

TEST(MatchInfo, CanBeTriedOnce) {
    const pkgvet::RegexHandle regex = compiled("a");
    for (const char* subject : {"a", "b"}) {
        SCOPED_TRACE(subject);
        MatchInfo info(subject);
        EXPECT_EQ(info.match(regex.get(), kNoFlags), std::string(subject) == "a");
        const CapturedDescriptor standardError;
        EXPECT_FALSE(info.match(regex.get(), kNoFlags));
        EXPECT_THAT(standardError.text(),
                    HasSubstr("bool MatchInfo::match(GRegex*, GRegexMatchFlags): assertion "
                              "'d_ptr->info == nullptr' failed"));
        EXPECT_THAT(standardError.text(), HasSubstr("CRITICAL **"));
    }
}

TEST(MatchInfo, CopiesShareTheResult) {
    const pkgvet::RegexHandle regex = compiled("(b)");
    auto original = std::make_unique<MatchInfo>("abc");
    ASSERT_TRUE(original->match(regex.get(), kNoFlags));
    MatchInfo copy(*original);
    original.reset();
    EXPECT_EQ(copy.fetch(1), "b");
    const CapturedDescriptor standardError;
    EXPECT_FALSE(copy.match(regex.get(), kNoFlags)) << "a copy of a used object is used";
    EXPECT_NE(standardError.text(), "");
}

TEST(MatchInfo, CopyOfAnUnusedObjectIsUnused) {
    const pkgvet::RegexHandle regex = compiled("b");
    MatchInfo original("abc");
    MatchInfo copy(original);
    EXPECT_TRUE(copy.match(regex.get(), kNoFlags));
    EXPECT_TRUE(original.match(regex.get(), kNoFlags));
}

TEST(MatchInfo, AssignmentReplacesSubjectAndResult) {
    const pkgvet::RegexHandle regex = compiled("[bx]");
    MatchInfo source("abc");
    MatchInfo target("xyz");
    ASSERT_TRUE(source.match(regex.get(), kNoFlags));
    ASSERT_TRUE(target.match(regex.get(), kNoFlags));
    target = source;
    EXPECT_EQ(target.fetch(0), "b");
    EXPECT_EQ(source.fetch(0), "b");
    const MatchInfo& self = target;
    target = self;
    EXPECT_EQ(target.fetch(0), "b");
    target = MatchInfo("x");
    EXPECT_TRUE(target.match(regex.get(), kNoFlags)) << "assigned from an unused one";
}

TEST(MatchInfo, MovesTakeTheResultOver) {
    const pkgvet::RegexHandle regex = compiled("b");
    MatchInfo source("abc");
    ASSERT_TRUE(source.match(regex.get(), kNoFlags));
    MatchInfo moved(std::move(source));
    EXPECT_EQ(moved.fetch(0), "b");
    MatchInfo target("xyz");
    target = std::move(moved);
    EXPECT_EQ(target.fetch(0), "b");
    moved = target;  // NOLINT(bugprone-use-after-move): assignment is what a moved-from one takes
    EXPECT_EQ(moved.fetch(0), "b");
}

}  // namespace
