#include "cli/catalogue/catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

#include "tests/support/base/source_tree.h"
#include "tests/support/base/temporary_directory.h"

namespace pkgvet::cli {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The names of the messages that a header defines.
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
    headers.emplace_back(sourceFile("cli/catalogue/integrity_messages.h"));
    return headers;
}

// Of the program's own chapter, in which all but remarks are grave.
std::set<std::string_view> integrityIds() {
    std::set<std::string_view> ids;
    for (const Chapter& chapter : chapters()) {
        for (const Entry& entry : chapter.entries) {
            if (chapter.title == "Package integrity" && entry.severity != Severity::Info) {
                ids.insert(entry.id);
            }
        }
    }
    return ids;
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
        if (entry->id != "other-remark" && entry->id != "not-judged") {
            EXPECT_FALSE(entry->pieces().empty());
            EXPECT_TRUE(entry->example.ends_with('\n'));
        }
    }
}

TEST(Catalogue, FindsEntriesByTheirMessage) {
    for (const Entry* entry : entries()) {
        if (entry->message != nullptr) {
            EXPECT_EQ(findEntry(*entry->message), entry);
        }
    }
    const Message stranger{"x"};
    EXPECT_EQ(findEntry(stranger), nullptr);
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

TEST(Catalogue, TwoRulesAndThoseOnIntegrityAreGrave) {
    std::set<std::string_view> grave;
    for (const Entry* entry : entries()) {
        if (isGrave(entry->id)) {
            grave.insert(entry->id);
        }
    }
    std::set<std::string_view> expected = integrityIds();
    EXPECT_FALSE(expected.empty());
    expected.insert({"scripts-not-allowed", "setuid-file"});
    EXPECT_EQ(grave, expected);
    EXPECT_FALSE(isGrave("no-such-id"));
}

TEST(Catalogue, ScriptsAndIntegrityAloneAreCritical) {
    const std::set<std::string_view> integrity = integrityIds();
    for (const Entry* entry : entries()) {
        EXPECT_EQ(entry->severity == Severity::Critical,
                  entry->id == "scripts-not-allowed" || integrity.contains(entry->id))
            << entry->id;
    }
}

// A new message needs an entry. The entries hold addresses, which have no
// names any more, so their sources are searched.
TEST(Catalogue, EachMessageBelongsToAnEntry) {
    const std::string sources = sourcesOfTheCatalogue();
    std::size_t count = 0;
    for (const auto& header : messageHeaders()) {
        for (const std::string& name : namesOfMessages(header)) {
            ++count;
            EXPECT_NE(sources.find(".message = &" + name + "}"), std::string::npos) << name;
        }
    }
    EXPECT_GE(count, 90U);
}

TEST(Catalogue, NoTwoEntriesHaveAMessageInCommon) {
    std::set<const Message*> seen;
    for (const Entry* entry : entries()) {
        if (entry->message != nullptr) {
            EXPECT_TRUE(seen.insert(entry->message).second) << entry->id;
        }
    }
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

}  // namespace pkgvet::cli
