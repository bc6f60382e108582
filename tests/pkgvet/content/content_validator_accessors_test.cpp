// What a ContentValidator tells of what its rules found, and its helpers.
#include <ftw.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/elf/elf_image.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/desktop_file.h"
#include "tests/support/rules/rule_tree.h"

namespace {

namespace fs = std::filesystem;

using Validator = ContentValidator;

struct Fact {
    const char* name;
    bool (Validator::*accessor)() const;
    bool initial;
};

const Fact kFacts[] = {
    {"desktop", &Validator::desktop, false},
    {"desktopName", &Validator::desktopName, false},
    {"desktopIcon", &Validator::desktopIcon, false},
    {"desktopExec", &Validator::desktopExec, false},
    {"qmlOnly", &Validator::qmlOnly, false},
    {"desktopType", &Validator::desktopType, false},
    {"ostrandQt5Application", &Validator::ostrandQt5Application, false},
    {"knownApplicationType", &Validator::knownApplicationType, false},
    {"ostrandImport", &Validator::ostrandImport, false},
    {"rpathExists", &Validator::rpathExists, false},
    {"rpathStatus", &Validator::rpathStatus, false},
    {"mainSymbol", &Validator::mainSymbol, false},
    {"mainExport", &Validator::mainExport, false},
    {"booster", &Validator::booster, false},
    {"arch", &Validator::arch, false},
    {"launcherDesktop", &Validator::launcherDesktop, false},
    {"launcherSpec", &Validator::launcherSpec, false},
    {"debugDir", &Validator::debugDir, false},
    {"unwantedBinExists", &Validator::unwantedBinExists, false},
    {"mainBinExec", &Validator::mainBinExec, false},
    {"pinfoldSection", &Validator::pinfoldSection, false},
    {"multiplePinfoldSection", &Validator::multiplePinfoldSection, false},
    {"illegalCharacters", &Validator::illegalCharacters, false},
    {"correctOrgNameAppNamePair", &Validator::correctOrgNameAppNamePair, true},
    {"correctOrgName", &Validator::correctOrgName, true},
    {"wrongLeadingOrgName", &Validator::wrongLeadingOrgName, false},
    {"orgDomainName", &Validator::orgDomainName, false},
    {"disallowedOrgName", &Validator::disallowedOrgName, false},
    {"correctDbus", &Validator::correctDbus, true},
    {"correctSystemService", &Validator::correctSystemService, true},
    {"dbusError", &Validator::dbusError, false},
    {"dbusWarning", &Validator::dbusWarning, false},
    {"isSandboxed", &Validator::isSandboxed, false},
    {"correctSealwatchd", &Validator::correctSealwatchd, true},
};

using Rule = std::function<void(Validator&)>;
using Names = std::vector<std::string>;

// The facts that differ from what they are initially once rule has run. Neither "arch" nor
// "disallowedOrgName" is ever one of them.
Names changedBy(const Rule& rule) {
    Validator validator{std::string()};
    const CapturedLog log;
    rule(validator);
    Names changed;
    for (const Fact& fact : kFacts) {
        if ((validator.*fact.accessor)() != fact.initial) {
            changed.emplace_back(fact.name);
        }
    }
    return changed;
}

// A package that lists a file for each rule, without having any of them.
const RpmMeta& header() {
    static const RpmMeta meta = [] {
        const TemporaryDirectory directory;
        PackageBuilder package(kPackage);
        package.tag("Requires: libtessaraapp-launcher").ghost("/usr/bin/org.example.app");
        package.ghost("/usr/share/org.example.app/main.qml").ghost("/usr/lib/debug/x");
        package.ghost("/etc/sealwatchd/config.d/org.example.app.json");
        return RpmMeta(package.build(directory).c_str());
    }();
    return meta;
}

Rule desktopFile(const std::string& keys) {
    return [keys](Validator& validator) {
        validator.processDesktopFile(header(), desktopEntry("[Desktop Entry]\n" + keys));
    };
}

Rule sandboxSection(const std::string& content, const std::string& rules = "regular") {
    return [=](Validator& validator) {
        validator.processPinfold(rulesNamed(rules), header(), desktopEntry(content), "");
    };
}

std::string section(const std::string& organization, const std::string& application) {
    return "[X-Application]\nOrganizationName=" + organization +
           "\nApplicationName=" + application + "\n";
}

TEST(Accessors, HaveTheirInitialValues) {
    EXPECT_EQ(changedBy([](Validator&) {}), Names());
}

TEST(Accessors, OfTheDesktopFile) {
    EXPECT_EQ(changedBy([](Validator& validator) {
                  validator.checkDesktop(load(RuleTree()), header(), "/usr/bin/org.example.app");
              }),
              Names{"desktop"});
    EXPECT_EQ(changedBy(desktopFile("Name=App\n")), Names{"desktopName"});
    EXPECT_EQ(changedBy(desktopFile("Icon=org.example.app\n")), Names{"desktopIcon"});
    EXPECT_EQ(changedBy(desktopFile("Exec=org.example.app\n")), Names{"desktopExec"});
    EXPECT_EQ(changedBy(desktopFile("Exec=lumbra-qml org.example.app\n")),
              (Names{"desktopExec", "qmlOnly"}));
    EXPECT_EQ(changedBy(desktopFile("Type=Application\n")), Names{"desktopType"});
    EXPECT_EQ(changedBy(desktopFile("X-Dorrit-Application-Type=generic\n")),
              Names{"knownApplicationType"});
    EXPECT_EQ(changedBy(desktopFile("X-Dorrit-Application-Type=ostrand-qt5\n")),
              Names{"ostrandQt5Application"});
}

TEST(Accessors, OfTheNamesInTheSandboxSection) {
    EXPECT_EQ(changedBy(sandboxSection("")), Names());
    EXPECT_EQ(changedBy(sandboxSection(section("org.example", "app"))),
              (Names{"orgDomainName", "isSandboxed"}));
    EXPECT_EQ(changedBy(sandboxSection(section("org", "example.app"))), Names{"isSandboxed"});
    EXPECT_EQ(changedBy(sandboxSection(section("org.example", "other"))),
              (Names{"correctOrgNameAppNamePair", "orgDomainName", "isSandboxed"}));
    EXPECT_EQ(
        changedBy(sandboxSection(section("org.example", "a b"))),
        (Names{"illegalCharacters", "correctOrgNameAppNamePair", "orgDomainName", "isSandboxed"}));
    EXPECT_EQ(
        changedBy(sandboxSection(section("Org.example", "app"))),
        (Names{"correctOrgNameAppNamePair", "correctOrgName", "orgDomainName", "isSandboxed"}));
    EXPECT_EQ(changedBy(sandboxSection(section("org.1example", "app"))),
              (Names{"correctOrgNameAppNamePair", "wrongLeadingOrgName", "orgDomainName",
                     "isSandboxed"}));
}

TEST(Accessors, OfTheSandboxSectionItself) {
    const std::string good = section("org.example", "app");
    EXPECT_EQ(changedBy(sandboxSection("[Pinfold]\n" + good.substr(good.find('\n') + 1))),
              (Names{"pinfoldSection", "orgDomainName", "isSandboxed"}));
    EXPECT_EQ(changedBy(sandboxSection("[X-Pinfold]\n" + good.substr(good.find('\n') + 1) + good)),
              (Names{"multiplePinfoldSection", "orgDomainName", "isSandboxed"}));
}

TEST(Accessors, OfTheServicesInTheSandboxSection) {
    const std::string good = section("org.example", "app");
    const std::string dashed = section("org.example", "app-");
    const std::string service =
        "ExecSystemService=/opt/x\nExecSystemServiceUser=lumbra-mdm\n"
        "ExecSystemServiceGroup=privileged\n";
    EXPECT_EQ(changedBy(sandboxSection(good + "ExecDBus=/opt/x\n")),
              (Names{"orgDomainName", "correctDbus", "isSandboxed"}));
    EXPECT_EQ(changedBy(sandboxSection(good + service, "mdm")),
              (Names{"orgDomainName", "correctSystemService", "isSandboxed"}));
    EXPECT_EQ(changedBy(sandboxSection(dashed)),
              (Names{"correctOrgNameAppNamePair", "orgDomainName", "dbusWarning", "isSandboxed"}));
    EXPECT_EQ(changedBy(sandboxSection(dashed + "ExecDBus=/usr/bin/org.example.app\n")),
              (Names{"correctOrgNameAppNamePair", "orgDomainName", "dbusError", "dbusWarning",
                     "isSandboxed"}));
}

TEST(Accessors, OfTheImports) {
    const TemporaryDirectory root;
    root.write("usr/share/org.example.app/main.qml", "import Lumbra.Ostrand 1.0\n");
    EXPECT_EQ(changedBy([&root](Validator& validator) {
                  validator.checkQmlImports(load(RuleTree()), header(), root.path());
              }),
              Names{"ostrandImport"});
}

TEST(Accessors, OfTheExecutables) {
    const TemporaryDirectory root;
    const std::string program = root.write("usr/bin/org.example.app", elfImage("elf 64 little"));
    ASSERT_EQ(chmod(program.c_str(), 0755), 0);
    EXPECT_EQ(changedBy([&root](Validator& validator) {
                  validator.checkExecutables(load(RuleTree()), header(), root.path());
              }),
              Names{"mainBinExec"});
}

TEST(Accessors, OfTheRunPath) {
    const TemporaryDirectory directory;
    const auto changed = [&directory](const std::string& entry) {
        const std::string table = "elf 64 little\nsection strtab\nsection dynamic link=1\n";
        const std::string program = directory.write("program", elfImage(table + entry));
        return changedBy(
            [&program](Validator& validator) { validator.checkRpath(header(), program); });
    };
    EXPECT_EQ(changed("rpath /usr/lib/x\n"), (Names{"rpathExists", "rpathStatus"}));
    EXPECT_EQ(changed("rpath /opt\n"), Names{"rpathExists"});
    EXPECT_EQ(changed(""), Names{"rpathStatus"});
}

TEST(Accessors, OfTheSymbols) {
    const TemporaryDirectory directory;
    const auto changed = [&directory](const std::string& symbol) {
        // Without the null symbol, which each table has otherwise.
        const std::string table = "elf 64 little\nsection strtab\nsection dynsym link=1\ndrop 24\n";
        const std::string program = directory.write("program", elfImage(table + symbol));
        return changedBy([&program](Validator& validator) { validator.processElfTabs(program); });
    };
    EXPECT_EQ(changed("symbol __libc_start_main\n"), Names{"mainSymbol"});
    EXPECT_EQ(changed("symbol main\n"), Names{"mainExport"});
    EXPECT_EQ(changed("symbol other\n"), Names{"booster"});
}

TEST(Accessors, OfTheLauncherRequirement) {
    EXPECT_EQ(changedBy([](Validator& validator) { validator.processLiblumbraapp(header()); }),
              Names{"launcherDesktop"});
    const RpmMeta unread("/nonexistent.rpm");
    EXPECT_EQ(changedBy([&unread](Validator& validator) {
                  desktopFile("Exec=lumbra-qml org.example.app\n")(validator);
                  validator.processLiblumbraapp(unread);
              }),
              (Names{"desktopExec", "qmlOnly", "launcherSpec"}));
}

TEST(Accessors, OfTheFiles) {
    const TemporaryDirectory root;
    const auto changed = [&root](const std::string& json) {
        root.write("etc/sealwatchd/config.d/org.example.app.json", json);
        return changedBy([&root](Validator& validator) {
            validator.checkExcludedPaths(load(RuleTree()), header(), root.path());
        });
    };
    EXPECT_EQ(changed(R"({"watch": []})"), (Names{"debugDir", "unwantedBinExists"}));
    EXPECT_EQ(changed("{"), (Names{"debugDir", "unwantedBinExists", "correctSealwatchd"}));
}

TEST(BinRequired, UnlessQmlOnlyOrSeen) {
    const CapturedLog log;
    Validator seen{std::string()};
    EXPECT_TRUE(seen.binRequired());
    seen.checkExcludedPaths(load(RuleTree()), header(), "/nonexistent");
    EXPECT_FALSE(seen.binRequired());
    Validator qmlOnly{std::string()};
    desktopFile("Exec=lumbra-qml org.example.app\n")(qmlOnly);
    EXPECT_FALSE(qmlOnly.binRequired());
}

TEST(BlacklistedExtension, IsThatOfTheRuleOnPlaces) {
    const Validator validator{std::string()};
    EXPECT_TRUE(validator.isBlacklistedExtension("x.git"));
    EXPECT_FALSE(validator.isBlacklistedExtension("x.git/config"));
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
    const ContentValidator validator{std::string()};
    for (const Case& test : cases) {
        EXPECT_EQ(validator.endsWith(test.text, test.suffix), test.expected)
            << test.text << " " << test.suffix;
    }
}

TEST(IsExecutable, OwnersBitOfARegularFileDecides) {
    const TemporaryDirectory directory;
    const ContentValidator validator{std::string()};
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
    const ContentValidator validator{std::string()};
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
    const ContentValidator validator{std::string()};
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
