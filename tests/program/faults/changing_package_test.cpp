// A package file that somebody else writes to while it is judged.
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/support/package/accepted_package.h"
#include "tests/support/package/rpm_file.h"
#include "tests/support/program/fault_run.h"

namespace {

namespace fs = std::filesystem;

using Json = nlohmann::json;

struct Change {
    const char* name;
    void (*apply)(const std::string& path);
    bool isInPlace;  // or the name leads elsewhere afterwards
};

const Change kChanges[] = {
    {"removed", [](const std::string& path) { fs::remove(path); }, false},
    {"replaced",
     [](const std::string& path) {
         writeFile(path + ".new", "something else");
         fs::rename(path + ".new", path);
     },
     false},
    {"truncated", [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); },
     true},
    {"emptied", [](const std::string& path) { fs::resize_file(path, 0); }, true},
    {"grown",
     [](const std::string& path) {
         std::ofstream(path, std::ios::app | std::ios::binary) << std::string(100'000, 'x');
     },
     true},
    {"overwritten",
     [](const std::string& path) { writeFile(path, std::string(fs::file_size(path), 'x')); }, true},
};

class ChangingPackage : public testing::TestWithParam<SandboxCase> {
protected:
    void SetUp() override {
        if (!canTrace() || !isThere(GetParam())) {
            GTEST_SKIP() << "this machine does not let a test trace the program there";
        }
    }

    // The report of a run in which the change happens just before the judge makes the system call.
    static Json reportOf(FaultRun* faults, const Change& change, std::uint64_t number) {
        const std::string content = readFile(faults->package());
        bool isChanged = false;
        const TracedRun run = faults->watch([&](const SystemCall& call) {
            if (!isChanged && call.process == faults->cast().judge && call.number == number) {
                change.apply(faults->package());
                isChanged = true;
            }
            return Answer();
        });
        EXPECT_TRUE(isChanged);
        EXPECT_EQ(run.left, 0U);
        EXPECT_EQ(faults->directoriesLeft(), std::vector<std::string>());
        fs::remove(faults->package());
        writeFile(faults->package(), content);
        return Json::parse(run.result.output, nullptr, false);
    }
};

// All that is said of it is said of the copy.
TEST_P(ChangingPackage, IsJudgedAsItWasWhenItWasCopied) {
    FaultRun faults(GetParam());
    const Json expected = Json::parse(faults.undisturbed().output);
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.name);
        EXPECT_EQ(reportOf(&faults, change, SYS_wait4), expected);
    }
}

// The file that was opened is judged, whatever it holds by then, and told by its checksum.
TEST_P(ChangingPackage, IsNeverTakenForWhatItWasBefore) {
    FaultRun faults(GetParam());
    const Json expected = Json::parse(faults.undisturbed().output);
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.name);
        const Json report = reportOf(&faults, change, SYS_sendfile);
        if (!change.isInPlace) {
            EXPECT_EQ(report, expected);
            continue;
        }
        ASSERT_TRUE(report.is_object());
        EXPECT_EQ(report["packages"][0]["passes"], false);
        EXPECT_NE(report["packages"][0]["sha256"], expected["packages"][0]["sha256"]);
    }
}

INSTANTIATE_TEST_SUITE_P(Sandbox, ChangingPackage,
                         testing::Values(requiredSandbox(), landlockAlone(), noSandbox()),
                         [](const auto& sandbox) { return sandbox.param.name; });

}  // namespace
