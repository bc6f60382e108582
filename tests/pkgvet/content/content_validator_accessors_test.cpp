// What a ContentValidator tells of its record, and its helpers.
#include <ftw.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "tests/support/temporary_directory.h"
#include "tests/support/validator_record.h"

namespace {

namespace fs = std::filesystem;

using Record = ContentValidatorPrivate;
using Validator = ContentValidator;

struct Field {
    const char* name;
    bool (Validator::*accessor)() const;
    bool Record::*field;
    bool initial;
};

const Field kFields[] = {
    {"desktop", &Validator::desktop, &Record::desktop, false},
    {"desktopName", &Validator::desktopName, &Record::desktopName, false},
    {"desktopIcon", &Validator::desktopIcon, &Record::desktopIcon, false},
    {"desktopExec", &Validator::desktopExec, &Record::desktopExec, false},
    {"qmlOnly", &Validator::qmlOnly, &Record::qmlOnly, false},
    {"desktopType", &Validator::desktopType, &Record::desktopType, false},
    {"ostrandQt5Application", &Validator::ostrandQt5Application, &Record::ostrandQt5Application,
     false},
    {"knownApplicationType", &Validator::knownApplicationType, &Record::knownApplicationType,
     false},
    {"ostrandImport", &Validator::ostrandImport, &Record::ostrandImport, false},
    {"rpathExists", &Validator::rpathExists, &Record::rpathExists, false},
    {"rpathStatus", &Validator::rpathStatus, &Record::rpathStatus, false},
    {"mainSymbol", &Validator::mainSymbol, &Record::mainSymbol, false},
    {"mainExport", &Validator::mainExport, &Record::mainExport, false},
    {"booster", &Validator::booster, &Record::booster, false},
    {"arch", &Validator::arch, &Record::arch, false},
    {"launcherDesktop", &Validator::launcherDesktop, &Record::launcherDesktop, false},
    {"launcherSpec", &Validator::launcherSpec, &Record::launcherSpec, false},
    {"debugDir", &Validator::debugDir, &Record::debugDir, false},
    {"unwantedBinExists", &Validator::unwantedBinExists, &Record::unwantedBinExists, false},
    {"mainBinExec", &Validator::mainBinExec, &Record::mainBinExec, false},
    {"pinfoldSection", &Validator::pinfoldSection, &Record::pinfoldSection, false},
    {"multiplePinfoldSection", &Validator::multiplePinfoldSection, &Record::multiplePinfoldSection,
     false},
    {"illegalCharacters", &Validator::illegalCharacters, &Record::illegalCharacters, false},
    {"correctOrgNameAppNamePair", &Validator::correctOrgNameAppNamePair,
     &Record::correctOrgNameAppNamePair, true},
    {"correctOrgName", &Validator::correctOrgName, &Record::correctOrgName, true},
    {"wrongLeadingOrgName", &Validator::wrongLeadingOrgName, &Record::wrongLeadingOrgName, false},
    {"orgDomainName", &Validator::orgDomainName, &Record::orgDomainName, false},
    {"disallowedOrgName", &Validator::disallowedOrgName, &Record::disallowedOrgName, false},
    {"correctDbus", &Validator::correctDbus, &Record::correctDbus, true},
    {"correctSystemService", &Validator::correctSystemService, &Record::correctSystemService, true},
    {"dbusError", &Validator::dbusError, &Record::dbusError, false},
    {"dbusWarning", &Validator::dbusWarning, &Record::dbusWarning, false},
    {"isSandboxed", &Validator::isSandboxed, &Record::isSandboxed, false},
    {"correctSealwatchd", &Validator::correctSealwatchd, &Record::correctSealwatchd, true},
};

TEST(Accessors, GiveTheFieldOfTheirName) {
    for (const Field& test : kFields) {
        SCOPED_TRACE(test.name);
        ContentValidator validator = validatorOfNothing();
        EXPECT_EQ((validator.*test.accessor)(), test.initial);
        recordOf(validator).*test.field = !test.initial;
        EXPECT_EQ((validator.*test.accessor)(), !test.initial);
    }
}

TEST(Accessors, EachReadsItsOwnField) {
    for (const Field& test : kFields) {
        ContentValidator validator = validatorOfNothing();
        recordOf(validator).*test.field = !test.initial;
        int changed = 0;
        for (const Field& other : kFields) {
            changed += (validator.*other.accessor)() != other.initial ? 1 : 0;
        }
        EXPECT_EQ(changed, 1) << test.name;
    }
}

TEST(Accessors, FieldsWithoutOneHaveTheirInitialValues) {
    const Record record;
    EXPECT_EQ(record.failures, 0U);
    EXPECT_FALSE(record.desktopFacts.desktopNameIllegal || record.qmlFacts.xmlListModelImport ||
                 record.binaryFacts.archSpecificContent || record.binaryFacts.privateSharedObject ||
                 record.binaryFacts.linksPrivateLibrary ||
                 record.desktopFacts.incompleteSystemService ||
                 record.desktopFacts.deprecatedPinfoldSection || record.fileFacts.binDirOwned);
    EXPECT_TRUE(record.desktopFacts.correctSystemServiceAccount);
    EXPECT_EQ(record.desktopFacts.organizationName + record.desktopFacts.applicationName +
                  record.tempDir + record.desktopFacts.pinfoldGroupName,
              "");
    EXPECT_TRUE(record.desktopFacts.backgroundTaskGroups.empty());
}

TEST(BinRequired, UnlessQmlOnlyOrSeen) {
    ContentValidator validator = validatorOfNothing();
    EXPECT_TRUE(validator.binRequired());
    recordOf(validator).fileFacts.unwantedBinExists = true;
    EXPECT_FALSE(validator.binRequired());
    recordOf(validator).desktopFacts.qmlOnly = true;
    EXPECT_FALSE(validator.binRequired());
    recordOf(validator).fileFacts.unwantedBinExists = false;
    EXPECT_FALSE(validator.binRequired());
}

TEST(EndsWith, ComparesTheTail) {
    struct Case {
        const char* text;
        const char* suffix;
        bool expected;
    };
    const Case cases[] = {
        {"a.png", ".png", true},  {".png", ".png", true},   {"png", ".png", false},
        {"a.png", "", true},      {"", "", true},           {"", "a", false},
        {"a.PNG", ".png", false}, {"axpng", ".png", false}, {"a.png.", ".png", false}};
    const ContentValidator validator = validatorOfNothing();
    for (const Case& test : cases) {
        EXPECT_EQ(validator.endsWith(test.text, test.suffix), test.expected)
            << test.text << " " << test.suffix;
    }
}

TEST(IsExecutable, OwnersBitOfARegularFileDecides) {
    const TemporaryDirectory directory;
    const ContentValidator validator = validatorOfNothing();
    const std::string file = directory.write("file", "x");
    for (const auto& [mode, expected] : {std::pair<mode_t, bool>{0700, true},
                                         {0100, true},
                                         {0755, true},
                                         {0655, false},
                                         {0611, false},
                                         {0000, false},
                                         {04655, false}}) {
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
        EXPECT_EQ(validator.isExecutable(file), expected) << std::oct << mode;
    }
}

TEST(IsExecutable, LinksAreFollowed) {
    const TemporaryDirectory directory;
    const ContentValidator validator = validatorOfNothing();
    const std::string file = directory.write("file", "x");
    ASSERT_EQ(chmod(file.c_str(), 0700), 0);
    fs::create_symlink("file", directory / "link");
    fs::create_symlink("missing", directory / "dangling");
    EXPECT_TRUE(validator.isExecutable(directory / "link"));
    EXPECT_FALSE(validator.isExecutable(directory / "dangling"));
    EXPECT_FALSE(validator.isExecutable(directory / "missing"));
    EXPECT_FALSE(validator.isExecutable(""));
}

TEST(IsExecutable, OtherTypesAreNotUnlessTheyShareTheBit) {
    const TemporaryDirectory directory;
    const ContentValidator validator = validatorOfNothing();
    ASSERT_EQ(mkfifo((directory / "fifo").c_str(), 0777), 0);
    EXPECT_FALSE(validator.isExecutable(directory.path()));
    EXPECT_FALSE(validator.isExecutable(directory / "fifo"));
    EXPECT_FALSE(validator.isExecutable("/dev/null"));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, (directory / "socket").c_str(), sizeof(address.sun_path) - 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    close(descriptor);
    ASSERT_EQ(chmod((directory / "socket").c_str(), 0700), 0);
    EXPECT_TRUE(validator.isExecutable(directory / "socket"));
}

TEST(RemoveDir, RemovesATreeAsACallback) {
    const TemporaryDirectory directory;
    directory.write("tree/a/b", "x");
    fs::create_symlink("/etc", directory / "tree/link");
    EXPECT_EQ(
        nftw((directory / "tree").c_str(), ContentValidator::removeDir, 8, FTW_DEPTH | FTW_PHYS),
        0);
    EXPECT_FALSE(fs::exists(directory / "tree"));
    EXPECT_TRUE(fs::exists("/etc"));
}

TEST(RemoveDir, TypeOfTheStatusDecides) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("file", "x");
    fs::create_directory(directory / "directory");
    struct stat fileStatus {};
    struct stat directoryStatus {};
    ASSERT_EQ(stat(file.c_str(), &fileStatus), 0);
    ASSERT_EQ(stat((directory / "directory").c_str(), &directoryStatus), 0);
    EXPECT_EQ(ContentValidator::removeDir(file.c_str(), &directoryStatus, FTW_F, nullptr), -1);
    EXPECT_EQ(
        ContentValidator::removeDir((directory / "directory").c_str(), &fileStatus, FTW_D, nullptr),
        -1);
    EXPECT_EQ(ContentValidator::removeDir(file.c_str(), &fileStatus, FTW_D, nullptr), 0);
    EXPECT_EQ(ContentValidator::removeDir((directory / "directory").c_str(), &directoryStatus,
                                          FTW_F, nullptr),
              0);
    EXPECT_EQ(ContentValidator::removeDir(file.c_str(), &fileStatus, FTW_F, nullptr), -1);
}

}  // namespace
