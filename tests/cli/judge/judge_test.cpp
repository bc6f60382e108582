// One package on its way through the library.
#include "cli/judge/judge.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include <filesystem>

#include "cli/worker/prepared_mkdtemp.h"
#include "cli/worker/wire.h"
#include "pkgvet/base/descriptor.h"
#include "pkgvet/base/remove_tree.h"
#include "pkgvet/rules/configuration.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/child_process.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/rule_tree.h"

namespace {

using namespace pkgvet::cli;
using testing::StartsWith;

constexpr std::size_t kMostBytes = 1 << 20;

class Judge : public testing::Test {
protected:
    // What comes of the file, which a judge finds open. As in a run, the judge is a process that
    // ends without destroying what it used.
    PackageReport judged(const std::string& file, const std::vector<Configuration>& rules) {
        EXPECT_TRUE(holdsInChild([&] {
            writeFile(directory_ / "report", reportMessage(judgedHere(file, rules), kMostBytes));
            writeFile(directory_ / "closed", std::to_string(closed_));
            return true;
        }));
        closed_ = std::stoi(readFile(directory_ / "closed"));
        std::vector<std::string> names;
        for (const Configuration& configuration : rules) {
            names.push_back(configuration.name());
        }
        return decodeReport(readFile(directory_ / "report"), names).value();
    }

    PackageReport judgedHere(const std::string& file, const std::vector<Configuration>& rules) {
        pkgvet::Descriptor package(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        Surroundings surroundings;
        surroundings.package = package.get();
        surroundings.copyPath = directory_ / "copy.rpm";
        surroundings.tree = tree_;
        surroundings.closePackage = [&package] { package.reset(); };
        surroundings.closeAround = [this] { ++closed_; };
        surroundings.limitMet = [this] { return limit_; };
        surroundings.placeGuard = [this](const SetIdModes& modes) {
            setIdModes_ = modes;
            return noGuard_;
        };
        surroundings.guardNote = [this] { return note_; };
        RpmSession rpm;
        const CapturedDescriptor noiseOfTools;
        return judge(surroundings, rules, IntegrityOptions(), &rpm);
    }

    PackageReport judged(const std::string& file) { return judged(file, {load(RuleTree())}); }

    // A tree that a judge left is of no more use to it.
    void SetUp() override {
        tree_ = makeDirectory("/tmp/dir.XXXXXX");
        prepareDirectory(tree_);
    }
    void TearDown() override {
        prepareDirectory("");
        pkgvet::removeTree(tree_);
    }

    TemporaryDirectory directory_;
    std::string tree_;
    Cause limit_;
    Cause noGuard_;
    SetIdModes setIdModes_;
    std::optional<GuardNote> note_ = GuardNote{.end = GuardEnd::Whole};
    int closed_ = 0;
};

TEST_F(Judge, ReportTellsOfThePackageAndItsVerdict) {
    const std::string file = PackageBuilder("org.example.app").build(directory_);
    const PackageReport report = judged(file);
    EXPECT_TRUE(report.judged()) << report.cause;
    EXPECT_EQ(report.name, "org.example.app");
    EXPECT_EQ(report.version, "1.0");
    EXPECT_EQ(report.release, "1");
    EXPECT_EQ(report.arch, "noarch");
    EXPECT_EQ(report.sha256.size(), 64U);
    EXPECT_EQ(readFile(directory_ / "copy.rpm"), readFile(file));
    EXPECT_EQ(closed_, 1);
    ASSERT_EQ(report.judgements.size(), 1U);
    EXPECT_TRUE(report.judgements[0].metaAccepted);
    EXPECT_FALSE(report.judgements[0].contentAccepted);
    EXPECT_FALSE(report.judgements[0].findings.empty());
}

TEST_F(Judge, EachConfigurationHasAJudgementOfItsOwn) {
    RuleTree lenient;
    lenient.profiles[5].name = "lenient";
    const PackageReport report =
        judged(PackageBuilder("org.example.app").script("%post\ntrue").build(directory_),
               {load(RuleTree()), load(lenient, Profiles::Market)});
    ASSERT_EQ(report.judgements.size(), 2U);
    EXPECT_EQ(report.judgements[0].profile, "regular");
    EXPECT_EQ(report.judgements[1].profile, "lenient");
    EXPECT_EQ(report.judgements[0].findings.size(), report.judgements[1].findings.size());
}

TEST_F(Judge, WhatIsNotAPackageIsNotUnpacked) {
    const PackageReport report = judged(directory_.write("text", "not a package"));
    EXPECT_EQ(report.causeCode, CauseCode::NotAPackage);
    EXPECT_THAT(report.cause, StartsWith("not an RPM package"));
    EXPECT_EQ(report.sha256.size(), 64U);
    EXPECT_EQ(closed_, 0);
}

TEST_F(Judge, PayloadThatDoesNotUnpackIsNotJudged) {
    const std::string whole = readFile(PackageBuilder("org.example.app")
                                           .file("/usr/share/x", std::string(100000, 'x'))
                                           .build(directory_));
    const std::string cut = directory_.write("cut.rpm", whole.substr(0, whole.size() - 100));
    const PackageReport report = judged(cut);
    EXPECT_EQ(report.causeCode, CauseCode::UnpackFailed);
    EXPECT_EQ(report.cause, "the payload did not unpack");
    EXPECT_EQ(report.name, "org.example.app");
    EXPECT_EQ(closed_, 0);
}

TEST_F(Judge, LimitThatUnpackingMetIsTheCause) {
    limit_ = {CauseCode::TooLarge, "too much"};
    const std::string whole = readFile(PackageBuilder("org.example.app").build(directory_));
    const PackageReport report =
        judged(directory_.write("cut.rpm", whole.substr(0, whole.size() - 10)));
    EXPECT_EQ(report.causeCode, CauseCode::TooLarge);
    EXPECT_EQ(report.cause, "too much");
}

TEST_F(Judge, NothingIsUnpackedWhereTheGuardCannotBeRun) {
    noGuard_ = {CauseCode::Crashed, "no guard"};
    const PackageReport report =
        judged(PackageBuilder("org.example.app").file("/usr/share/x", "content").build(directory_));
    EXPECT_EQ(report.causeCode, CauseCode::Crashed);
    EXPECT_EQ(report.cause, "no guard");
    EXPECT_TRUE(std::filesystem::is_empty(tree_));
}

TEST_F(Judge, PackageWithoutANoteOfTheGuardIsNotJudged) {
    note_.reset();
    const PackageReport report = judged(PackageBuilder("org.example.app").build(directory_));
    EXPECT_EQ(report.causeCode, CauseCode::Crashed);
    EXPECT_EQ(report.cause, "the guard in the place of cpio did not run");
    EXPECT_EQ(closed_, 0);
}

TEST_F(Judge, PayloadThatTheGuardDidNotSeeToItsEndIsNotJudged) {
    const std::string file = PackageBuilder("org.example.app").build(directory_);
    for (const auto& [end, cause] : {std::pair(GuardEnd::Unfinished, CauseCode::UnpackFailed),
                                     std::pair(GuardEnd::CutShort, CauseCode::UnpackFailed),
                                     std::pair(GuardEnd::OutOfMemory, CauseCode::OutOfMemory)}) {
        note_->end = end;
        EXPECT_EQ(judged(file).causeCode, cause);
        std::filesystem::remove(directory_ / "copy.rpm");
    }
}

TEST_F(Judge, PackageThatTheGuardStoppedIsRejectedByItsHeaderAlone) {
    note_ = {GuardEnd::Irregular, Irregularity::NameAbsolute, 110, "/etc/evil"};
    const PackageReport report =
        judged(PackageBuilder("org.example.app").script("%post\ntrue").build(directory_));
    EXPECT_TRUE(report.judged()) << report.cause;
    EXPECT_FALSE(report.complete());
    ASSERT_EQ(report.judgements.size(), 1U);
    EXPECT_FALSE(report.judgements[0].passes);
    EXPECT_FALSE(report.judgements[0].intact);
    const Finding& last = report.judgements[0].findings.back();
    EXPECT_EQ(last.rule, "payload-name-absolute");
    EXPECT_EQ(last.severity, Severity::Critical);
    EXPECT_EQ(last.subject, "/etc/evil");
    EXPECT_EQ(report.judgements[0].findings.front().rule, "scripts-not-allowed");
    EXPECT_EQ(closed_, 0);
}

TEST_F(Judge, ExceptionOutOfARuleIsTheCause) {
    RuleTree broken;
    broken.regular().requires_.allowed = {"("};
    const PackageReport report = judged(
        PackageBuilder("org.example.app").tag("Requires: foo").build(directory_), {load(broken)});
    EXPECT_EQ(report.causeCode, CauseCode::RuleFailed);
    EXPECT_THAT(report.cause, StartsWith("a rule failed: "));
    EXPECT_TRUE(report.judgements.empty());
}

TEST_F(Judge, PackageThatCannotBeReadIsNotJudged) {
    const PackageReport report = judged(directory_.path());
    EXPECT_EQ(report.causeCode, CauseCode::Unreadable);
    EXPECT_EQ(report.cause, "Is a directory");
}

}  // namespace
