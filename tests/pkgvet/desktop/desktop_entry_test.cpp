// Reading desktop files.
#include "pkgvet/desktop/desktop_entry.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/support/base/temporary_directory.h"
#include "tests/support/rules/desktop_file.h"

namespace {

using Strings = std::vector<std::string>;

void expectNoAnswers(const DesktopEntry& entry) {
    EXPECT_EQ(entry.groups(), Strings());
    EXPECT_EQ(entry.keys("Desktop Entry"), Strings());
    EXPECT_EQ(entry.stringList("Desktop Entry", "Name"), Strings());
    EXPECT_FALSE(entry.hasGroup("Desktop Entry"));
    EXPECT_FALSE(entry.hasKey("Desktop Entry", "Name"));
    EXPECT_EQ(entry.name() + entry.exec() + entry.icon() + entry.type(), "");
}

TEST(DesktopEntry, ReadsTheKeysOfTheFirstGroup) {
    const DesktopEntry entry =
        desktopEntry("[Desktop Entry]\nName=A\nExec=B\nIcon=C\nType=D\nOther=E\n[X]\nName=F\n");
    EXPECT_EQ(entry.name(), "A");
    EXPECT_EQ(entry.exec(), "B");
    EXPECT_EQ(entry.icon(), "C");
    EXPECT_EQ(entry.type(), "D");
    EXPECT_EQ(entry.desktopEntryString("Other"), "E");
    EXPECT_EQ(entry.string("X", "Name"), "F");
}

TEST(DesktopEntry, KeepsTheOrderOfTheFile) {
    const DesktopEntry entry = desktopEntry("[B]\nz=1\na=2\n[A]\n[C]\nk=3\n[B]\nm=4\n");
    EXPECT_EQ(entry.groups(), (Strings{"B", "A", "C"}));
    EXPECT_EQ(entry.keys("B"), (Strings{"z", "a", "m"}));
    EXPECT_EQ(entry.keys("A"), Strings());
}

TEST(DesktopEntry, TellsWhatIsThere) {
    const DesktopEntry entry = desktopEntry("[A]\nk=\n[B]\n");
    EXPECT_TRUE(entry.hasGroup("A"));
    EXPECT_TRUE(entry.hasGroup("B"));
    EXPECT_FALSE(entry.hasGroup("a"));
    EXPECT_FALSE(entry.hasGroup(""));
    EXPECT_TRUE(entry.hasKey("A", "k"));
    EXPECT_FALSE(entry.hasKey("B", "k"));
    EXPECT_FALSE(entry.hasKey("C", "k"));
}

TEST(DesktopEntry, ListsAreDividedBySemicolons) {
    struct Case {
        const char* value;
        Strings elements;
    };
    const Case cases[] = {
        {"", {}},
        {";", {""}},
        {"a", {"a"}},
        {"a;", {"a"}},
        {"a;b", {"a", "b"}},
        {"a;b;", {"a", "b"}},
        {"a;;b", {"a", "", "b"}},
        {"a\\;b", {"a;b"}},
        {"a ; b", {"a ", " b"}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.value);
        const DesktopEntry entry = desktopEntry(std::string("[A]\nk=") + test.value + "\n");
        EXPECT_EQ(entry.stringList("A", "k"), test.elements);
    }
}

TEST(DesktopEntry, ValuesKeepTrailingBlanksAndLoseLeadingOnes) {
    const DesktopEntry entry = desktopEntry("[A]\nk =  x \nescaped=a\\sb\\n\n");
    EXPECT_EQ(entry.string("A", "k"), "x ");
    EXPECT_EQ(entry.string("A", "escaped"), "a b\n");
}

TEST(DesktopEntry, MissingGroupsAndKeysGiveEmptyAnswers) {
    const DesktopEntry entry = desktopEntry("[A]\nk=v\n");
    EXPECT_EQ(entry.string("A", "other"), "");
    EXPECT_EQ(entry.string("B", "k"), "");
    EXPECT_EQ(entry.string("", "k"), "");
    EXPECT_EQ(entry.stringList("A", "other"), Strings());
    EXPECT_EQ(entry.stringList("", "k"), Strings());
    EXPECT_EQ(entry.keys("B"), Strings());
    EXPECT_EQ(entry.keys(""), Strings());
}

TEST(DesktopEntry, AValueThatIsNotUtf8IsEmpty) {
    const DesktopEntry entry = desktopEntry("[Desktop Entry]\nName=a\xFF\nIcon=good\n");
    EXPECT_EQ(entry.name(), "");
    EXPECT_EQ(entry.stringList("Desktop Entry", "Name"), Strings());
    EXPECT_TRUE(entry.hasKey("Desktop Entry", "Name"));
    EXPECT_EQ(entry.icon(), "good");
}

TEST(DesktopEntry, AKeyThatIsSetTwiceIsListedTwiceWithItsLastValue) {
    const DesktopEntry entry = desktopEntry("[A]\nk=1\nk=2\n");
    EXPECT_EQ(entry.keys("A"), (Strings{"k", "k"}));
    EXPECT_EQ(entry.string("A", "k"), "2");
}

// GKeyFile would keep the one that this user's language asks for and drop the other.
TEST(DesktopEntry, KeysWithALanguageAreKeysWhateverTheLanguageIs) {
    setenv("LANGUAGE", "de", 1);
    const DesktopEntry entry = desktopEntry("[A]\nk[de]=1\nk[fr]=2\n");
    unsetenv("LANGUAGE");
    EXPECT_EQ(entry.keys("A"), (Strings{"k[de]", "k[fr]"}));
    EXPECT_EQ(entry.string("A", "k[fr]"), "2");
    EXPECT_EQ(entry.string("A", "k"), "");
}

TEST(DesktopEntry, AMalformedFileHasNothingEvenAheadOfTheBadLine) {
    for (const char* end : {"no equals sign\n", "[unclosed\n", "=value\n", "[]\n"}) {
        SCOPED_TRACE(end);
        expectNoAnswers(desktopEntry(std::string("[Desktop Entry]\nName=A\n") + end));
    }
    expectNoAnswers(desktopEntry("Name=A\n[Desktop Entry]\nName=A\n"));
}

TEST(DesktopEntry, FilesWithoutGroupsHaveNothing) {
    for (const std::string& content : {std::string(), std::string("# comment\n\n"),
                                       std::string("\0\0\n", 3), std::string("\xFF\xFE")}) {
        expectNoAnswers(desktopEntry(content));
    }
}

TEST(DesktopEntry, FollowsLinks) {
    const TemporaryDirectory directory;
    directory.write("file", "[Desktop Entry]\nName=A\n");
    std::filesystem::create_symlink("file", directory / "link");
    EXPECT_EQ(DesktopEntry(directory / "link").name(), "A");
}

TEST(DesktopEntry, WhatIsNotARegularFileHasNothing) {
    const TemporaryDirectory directory;
    std::filesystem::create_directory(directory / "directory");
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0600), 0);
    std::filesystem::create_symlink("fifo", directory / "link");
    for (const std::string& path :
         {directory / "missing", directory / "directory", directory / "fifo", directory / "link",
          std::string("/dev/zero"), std::string()}) {
        SCOPED_TRACE(path);
        expectNoAnswers(DesktopEntry(path));
    }
}

TEST(DesktopEntry, AFileBeyondAllReasonHasNothing) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "[Desktop Entry]\nName=A\n");
    std::filesystem::resize_file(path, (std::uintmax_t{16} << 20) + 1);
    expectNoAnswers(DesktopEntry(path));
}

TEST(DesktopEntry, ReadsAMillionElementsAndThousandsOfGroups) {
    std::string content = "[A]\nk=";
    for (int i = 0; i < 1000000; ++i) {
        content += "x;";
    }
    for (int i = 0; i < 20000; ++i) {
        content.append("\n[G").append(std::to_string(i)).append("]\nk=v");
    }
    const DesktopEntry entry = desktopEntry(content);
    EXPECT_EQ(entry.stringList("A", "k").size(), 1000000U);
    EXPECT_EQ(entry.groups().size(), 20001U);
    EXPECT_EQ(entry.string("G19999", "k"), "v");
}

}  // namespace
