#include "cli/catalogue/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>

#include "tests/support/source_tree.h"
#include "tests/support/temporary_directory.h"

namespace pkgvet::cli {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

// The texts of the constants that a header of messages defines.
std::map<std::string, std::string> messagesOf(const std::filesystem::path& header) {
    static const std::regex kConstant(R"(string_view (k\w+) =((?:\s*"(?:[^"\\]|\\.)*")+);)");
    static const std::regex kLiteral(R"re("((?:[^"\\]|\\.)*)")re");
    static const std::regex kQuote(R"(\\")");
    static const std::regex kLineFeed(R"(\\n)");
    const std::string source = readFile(header);
    std::map<std::string, std::string> messages;
    for (std::sregex_iterator i(source.begin(), source.end(), kConstant), end; i != end; ++i) {
        const std::string literals = (*i)[2];
        std::string text;
        for (std::sregex_iterator j(literals.begin(), literals.end(), kLiteral); j != end; ++j) {
            text += (*j)[1];
        }
        messages[(*i)[1]] =
            std::regex_replace(std::regex_replace(text, kQuote, "\""), kLineFeed, "\n");
    }
    return messages;
}

// The names of the composed messages that a header of messages defines.
std::vector<std::string> namesOfMessages(const std::filesystem::path& header) {
    static const std::regex kConstant(R"(constexpr Message (k\w+))");
    const std::string source = readFile(header);
    std::vector<std::string> names;
    for (std::sregex_iterator i(source.begin(), source.end(), kConstant), end; i != end; ++i) {
        names.push_back((*i)[1]);
    }
    return names;
}

// All tables of the catalogue as they are written.
std::string sourcesOfTheCatalogue() {
    std::string sources;
    for (const auto& file : std::filesystem::directory_iterator(sourceFile("cli/catalogue"))) {
        sources += readFile(file.path());
    }
    return sources;
}

std::vector<std::filesystem::path> messageHeaders() {
    std::vector<std::filesystem::path> headers;
    for (const auto& file : std::filesystem::recursive_directory_iterator(sourceFile("pkgvet"))) {
        if (file.path().string().ends_with("_messages.h")) {
            headers.push_back(file.path());
        }
    }
    return headers;
}

std::set<std::string_view> wordsOfAllEntries() {
    std::set<std::string_view> words;
    for (const Entry* entry : entries()) {
        for (const Piece& piece : entry->pieces()) {
            words.insert(piece.words);
        }
    }
    return words;
}

}  // namespace

TEST(Catalogue, IdsAreUniqueAndInKebabCase) {
    std::set<std::string_view> seen;
    const std::regex kebabCase("[a-z]+(-[a-z]+)*");
    for (const Entry* entry : entries()) {
        EXPECT_TRUE(seen.insert(entry->id).second) << entry->id;
        EXPECT_TRUE(std::regex_match(std::string(entry->id), kebabCase)) << entry->id;
    }
    EXPECT_GE(seen.size(), 90U);
}

TEST(Catalogue, EntriesAreComplete) {
    for (const Entry* entry : entries()) {
        SCOPED_TRACE(entry->id);
        EXPECT_FALSE(entry->title.empty());
        EXPECT_FALSE(entry->title.ends_with('.'));
        for (const std::string_view prose : {entry->demand, entry->why, entry->fix}) {
            EXPECT_TRUE(prose.ends_with('.')) << prose;
            EXPECT_EQ(prose.find('\n'), std::string_view::npos) << prose;
            EXPECT_EQ(std::count(prose.begin(), prose.end(), '`') % 2, 0) << prose;
        }
        if (entry->id != "other-remark") {
            EXPECT_FALSE(entry->pieces().empty());
            EXPECT_TRUE(entry->example.ends_with('\n'));
        }
    }
}

TEST(Catalogue, RelatedIdsExistAndAreOthers) {
    for (const Entry* entry : entries()) {
        for (const std::string_view id : entry->related()) {
            EXPECT_NE(findEntry(id), nullptr) << entry->id << " names " << id;
            EXPECT_NE(id, entry->id);
        }
    }
}

TEST(Catalogue, FindsEntriesByIdAndNothingElse) {
    ASSERT_NE(findEntry("library-not-allowed"), nullptr);
    EXPECT_EQ(findEntry("library-not-allowed")->id, "library-not-allowed");
    EXPECT_EQ(findEntry("library"), nullptr);
    EXPECT_EQ(findEntry("Library-Not-Allowed"), nullptr);
    EXPECT_EQ(findEntry(""), nullptr);
}

TEST(Catalogue, TwoRulesAreGrave) {
    std::vector<std::string_view> grave;
    for (const Entry* entry : entries()) {
        if (isGrave(entry->id)) {
            grave.push_back(entry->id);
        }
    }
    EXPECT_THAT(grave, ElementsAre("scripts-not-allowed", "setuid-file"));
    EXPECT_FALSE(isGrave("no-such-id"));
}

TEST(Catalogue, ScriptsAloneAreCritical) {
    for (const Entry* entry : entries()) {
        EXPECT_EQ(entry->severity == Severity::Critical, entry->id == "scripts-not-allowed");
    }
}

TEST(Catalogue, EachEntryIsTheOneOfItsOwnLine) {
    for (const Entry* entry : entries()) {
        if (!entry->pieces().empty()) {
            EXPECT_EQ(identify(lineOf(*entry)).rule, entry->id);
        }
    }
}

// A message that is new to the library needs an entry. The words for kinds of file stand where a
// message has room for either.
TEST(Catalogue, EachMessageOfTheLibraryBelongsToAnEntry) {
    const std::set<std::string> kFillers = {"kKindFile", "kKindDirectory"};
    const std::set<std::string_view> known = wordsOfAllEntries();
    const std::string sources = sourcesOfTheCatalogue();
    std::size_t count = 0;
    for (const auto& header : messageHeaders()) {
        for (const std::string& name : namesOfMessages(header)) {
            ++count;
            EXPECT_NE(sources.find(".message = &" + name + "}"), std::string::npos) << name;
        }
        for (const auto& [name, text] : messagesOf(header)) {
            ++count;
            EXPECT_TRUE(known.contains(text) || kFillers.contains(name)) << header << ' ' << name;
        }
    }
    EXPECT_GE(count, 90U);
}

TEST(NearestIds, AMisspellingLeadsToTheIdThatWasMeant) {
    EXPECT_EQ(nearestIds("libary-not-alowed").front(), "library-not-allowed");
    EXPECT_EQ(nearestIds("setuid_file").front(), "setuid-file");
    EXPECT_EQ(nearestIds("LIBRARY-not-allowed").front(), "library-not-allowed");
}

TEST(NearestIds, APartOfAnIdLeadsToTheIdsThatHoldIt) {
    EXPECT_THAT(nearestIds("rpath"),
                ElementsAre("rpath-empty", "rpath-missing", "rpath-not-allowed"));
}

TEST(NearestIds, ThereAreThreeForAnyWord) {
    EXPECT_EQ(nearestIds("").size(), 3U);
    EXPECT_EQ(nearestIds(std::string(1000, 'x')).size(), 3U);
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
