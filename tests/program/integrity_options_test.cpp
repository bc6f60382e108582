// `pkgvet check` with --integrity and --keyring.
#include <gmock/gmock.h>
#include <rpm/rpmtag.h>

#include <nlohmann/json.hpp>

#include "tests/support/package/crafted_package.h"
#include "tests/support/package/signing_key.h"
#include "tests/support/program/program.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using Words = std::vector<std::string>;

constexpr const char* kDesktopFile =
    "[Desktop Entry]\nName=App\nType=Application\nIcon=org.example.app\n"
    "Exec=lumbra-qml org.example.app\nX-Dorrit-Application-Type=ostrand-qt5\n"
    "[X-Application]\nOrganizationName=org.example\nApplicationName=app\n";

// A QML application that is accepted.
CraftedPackage application() {
    CraftedPackage package("org.example.app");
    package.file(packedFile("/usr/share/applications/org.example.app.desktop", kDesktopFile))
        .file(packedDirectory("/usr/share/org.example.app"))
        .file(packedFile("/usr/share/org.example.app/map", "text"));
    return package;
}

// The same with a script that the library's rules do not look at.
CraftedPackage liar() {
    return application().set(RPMTAG_VERIFYSCRIPT, rpmText("true"));
}

class IntegrityOptionsTest : public testing::Test {
protected:
    void SetUp() override { rules_ = RuleTree().write(directory_); }

    ProgramResult check(const CraftedPackage& package, const Words& options) {
        return check(package.write(directory_), options);
    }

    ProgramResult check(const std::string& path, const Words& options) {
        Words command = {"check", "--validation", "on", "--rules", rules_};
        command.insert(command.end(), options.begin(), options.end());
        command.push_back(path);
        return runPkgvet(command);
    }

    TemporaryDirectory directory_;
    std::string rules_;
};

TEST_F(IntegrityOptionsTest, BothVerdictsAreShown) {
    const ProgramResult result = check(liar(), {"--format", "json"});
    EXPECT_EQ(result.status, 1);
    const json report = json::parse(result.output)["packages"][0];
    EXPECT_EQ(report["complete"], true);
    EXPECT_EQ(report["passes"], false);
    EXPECT_EQ(report["judgements"][0]["intact"], false);
    EXPECT_EQ(report["judgements"][0]["passes"], false);
    EXPECT_THAT(check(liar(), {}).output, HasSubstr("verify-script-not-allowed"));
}

TEST_F(IntegrityOptionsTest, NothingExcusesAFindingOnIntegrity) {
    const std::string baseline = directory_ / "baseline.json";
    EXPECT_EQ(check(liar(), {"--write-baseline", baseline}).status, 1);
    EXPECT_THAT(readFile(baseline), Not(HasSubstr("verify-script-not-allowed")));
    EXPECT_EQ(check(liar(), {"--baseline", baseline}).status, 1);
    EXPECT_EQ(check(liar(), {"--validation", "off"}).status, 1);
    const std::string waivers = directory_.write(
        "waivers.json", R"({"waivers": [{"rule": "verify-script-not-allowed", "subject": ".*",
                             "package": ".*", "reason": "agreed"}]})");
    const ProgramResult result = check(liar(), {"--waivers", waivers});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.errors, HasSubstr("cannot be waived"));
}

TEST_F(IntegrityOptionsTest, OffLeavesTheRulesOut) {
    const ProgramResult result = check(liar(), {"--integrity", "off", "--format", "json"});
    const json judgement = json::parse(result.output)["packages"][0]["judgements"][0];
    EXPECT_EQ(judgement["intact"], true);
    EXPECT_THAT(result.output, Not(HasSubstr("verify-script-not-allowed")));
}

TEST_F(IntegrityOptionsTest, KeyringDemandsASignatureByOneOfItsKeys) {
    const SigningKey key;
    const SigningKey other;
    const TemporaryDirectory keys;
    keys.write("key.asc", key.publicKey(true));
    const Words keyring = {"--keyring", keys.path(), "--format", "concise"};
    EXPECT_THAT(check(application(), keyring).output, HasSubstr("critical: package-not-signed"));
    const std::string own = application().write(directory_);
    key.sign(own);
    EXPECT_THAT(check(own, keyring).output, Not(HasSubstr("sign")));
    EXPECT_THAT(check(own, {}).output, HasSubstr("signature-not-checked"));
    const std::string foreign = application().write(directory_);
    other.sign(foreign);
    EXPECT_THAT(check(foreign, keyring).output, HasSubstr("critical: signature-not-good"));
}

TEST_F(IntegrityOptionsTest, KeyringThatIsOfNoUseIsAUsageError) {
    const TemporaryDirectory keys;
    const ProgramResult empty = check(application(), {"--keyring", keys.path()});
    EXPECT_EQ(empty.status, 2);
    EXPECT_THAT(empty.errors, HasSubstr("holds no keys"));
    keys.write("key", "text");
    const ProgramResult text = check(application(), {"--keyring", keys.path()});
    EXPECT_EQ(text.status, 2);
    EXPECT_THAT(text.errors, HasSubstr("is not a public key"));
    EXPECT_EQ(text.output, "");
}

}  // namespace
