// Findings out of the library's lines.
#include "cli/judge/identify.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "cli/catalogue/catalogue.h"

namespace pkgvet::cli {

namespace {

std::string idOf(Severity severity, std::vector<std::string> pieces) {
    return identify({severity, std::move(pieces)}).rule;
}

// A line of the entry, with a text of its own at each place for package data.
LogLine lineOf(const Entry& entry) {
    LogLine line{entry.severity, {}};
    for (const Piece& piece : entry.pieces()) {
        line.pieces.push_back(piece.kind == Piece::Kind::Words ? std::string(piece.words)
                                                               : "datum");
    }
    return line;
}

}  // namespace

TEST(Identify, EachEntryIsTheOneOfItsOwnLine) {
    for (const Entry* entry : entries()) {
        if (!entry->pieces().empty()) {
            EXPECT_EQ(identify(lineOf(*entry)).rule, entry->id);
        }
    }
}

TEST(Identify, TakesSeverityAndMessageFromTheLine) {
    const Finding finding = identify(
        {Severity::Warning, {"[", "/usr/share/app/x", "] Group or World writable ", "file"}});
    EXPECT_EQ(finding.rule, "writable-by-others");
    EXPECT_EQ(finding.severity, Severity::Warning);
    EXPECT_EQ(finding.subject, "/usr/share/app/x");
    EXPECT_EQ(finding.message, "[/usr/share/app/x] Group or World writable file");
}

TEST(Identify, TellsTheSubjectOfEachForm) {
    struct Case {
        std::vector<std::string> pieces;
        std::string rule;
        std::optional<std::string> subject;
    };
    const Case cases[] = {
        {{"[scripts] Script sections are not allowed in RPM"}, "scripts-not-allowed", {}},
        {{"[", "foo", "] Provides: ", "foo", " is not allowed in RPM"},
         "provide-not-allowed",
         "foo"},
        {{"[vendor] Vendor is set to ", "Acme", ". Setting a vendor in RPM is not allowed"},
         "vendor-not-allowed",
         "Acme"},
        {{"[", "libx.so", "] Library is not allowed"}, "library-not-allowed", "libx.so"},
        {{"[desktop] invalid value '", "a", "' in '", "g", "/", "f", "' field"},
         "desktop-value-not-allowed",
         "f"},
        {{"[desktop] Missing valid Icon declaration inside, must be Icon=", "n"},
         "desktop-icon-invalid",
         {}},
        {{"Unsupported background task type: ", ""}, "task-type-unsupported", ""},
        {{"ExecDBus error: ", "No such file or directory"}, "exec-dbus-unresolved", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.rule);
        const Finding finding = identify({Severity::Error, c.pieces});
        EXPECT_EQ(finding.rule, c.rule);
        EXPECT_EQ(finding.subject, c.subject);
    }
}

TEST(Identify, APieceAtTheEndThatSaysNothingDoesNotCount) {
    EXPECT_EQ(idOf(Severity::Error, {"[", "/x", "] User owner should be root", ""}),
              "owner-not-root");
    EXPECT_EQ(idOf(Severity::Error, {"[", "/x", "] User owner should be root", "more"}),
              "other-remark");
}

TEST(Identify, ANameThatReadsLikeAMessageIsStillAName) {
    const Finding finding = identify(
        {Severity::Error,
         {"[", "x] Found setuid, setgid or sticky bit set", "] Dependency is not allowed"}});
    EXPECT_EQ(finding.rule, "dependency-not-allowed");
    EXPECT_EQ(finding.subject, "x] Found setuid, setgid or sticky bit set");
}

TEST(Identify, ALineOfNoRuleIsARemark) {
    for (const std::vector<std::string>& pieces :
         std::vector<std::vector<std::string>>{{}, {""}, {"schema not found"}, {"["}}) {
        const Finding finding = identify({Severity::Info, pieces});
        EXPECT_EQ(finding.rule, "other-remark");
        EXPECT_EQ(finding.subject, std::nullopt);
    }
}

// No package can draw these two. Of the first, the pattern of an intent that matches always has a
// name. Of the second, another rule accepts all paths that it would look at.
TEST(Identify, LinesThatNoPackageDrawsHaveIdsToo) {
    EXPECT_EQ(idOf(Severity::Error, {"Missing intent name: ", ":gui"}), "intent-name-missing");
    EXPECT_EQ(idOf(Severity::Error,
                   {"[", "/usr/libexec/app/x",
                    "] Installation not allowed in this location: bad executable format"}),
              "libexec-wrong-format");
}

}  // namespace pkgvet::cli
