// Validators that remember the files of a package, so that their copies do not look at them again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "pkgvet/content/content_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/extracted_trees.h"
#include "tests/support/package/package_builder.h"
#include "tests/support/rules/rule_tree.h"

namespace {

namespace fs = std::filesystem;

using Strings = std::vector<std::string>;
using testing::Contains;
using testing::Not;

const std::string kHomeDirectory = "/home/defaultuser";
const std::string kChangedPath = "/usr/share/org.example.app/changed";
const std::string kLine = errorLine("[" + kChangedPath + "] Hardcoded path found");

const std::string kQmlPath = "/usr/share/org.example.app/qml/main.qml";
const std::string kProgramPath = "/usr/share/org.example.app/program";
const std::string kProgramLine =
    errorLine("[" + kProgramPath + "] Executable has a wrong format or encoding");
// Of two imports of the toolkit, each draws a line.
const std::string kQml = "import Lumbra.Ostrand 1.0\nimport \"/a\"\nimport Lumbra.Ostrand 1.0\n";
const std::string kImportLine = errorLine("[\"/a\"] Import is not allowed");

// Of a package with a file that holds a home directory, until somebody changes it.
class RememberedFiles : public testing::Test {
protected:
    void remember(const ContentValidator::KnownText& known = nullptr) {
        source_.rememberFiles(meta_, known);
    }

    // The first copy to be destroyed would remove the tree.
    Strings linesOfACopy() { return linesOfACopy(meta_); }

    Strings linesOfACopy(const RpmMeta& meta) {
        copies_.push_back(std::make_unique<ContentValidator>(source_));
        const CapturedLog log;
        copies_.back()->validateContent(load(RuleTree()), meta);
        return log.lines();
    }

    void change() const {
        const std::string root = extractedTreesWith(marker_).at(0);
        for (const std::string& path : {kChangedPath, kQmlPath, kProgramPath}) {
            fs::permissions(root + path, fs::perms::owner_all);
            std::ofstream(root + path) << "nothing of the kind";
        }
        fs::copy_file("/bin/true", root + kProgramPath, fs::copy_options::overwrite_existing);
    }

private:
    TemporaryDirectory directory_;
    // A file that no other package has, by which the tree is found.
    std::string marker_ = "/usr/share/org.example.app/" + directory_.path().filename().string();
    std::string path_ = PackageBuilder("org.example.app")
                            .file(marker_, "")
                            .file(kChangedPath, kHomeDirectory)
                            .file(kQmlPath, kQml)
                            .file(kProgramPath, "not a program", "0755")
                            .build(directory_);
    RpmMeta meta_ = RpmMeta(path_.c_str());
    ContentValidator source_ = ContentValidator(path_);
    std::vector<std::unique_ptr<ContentValidator>> copies_;
};

TEST_F(RememberedFiles, AreLookedAtOnce) {
    remember();
    const Strings first = linesOfACopy();
    for (const std::string& line : {kLine, kProgramLine, kImportLine}) {
        EXPECT_THAT(first, Contains(line));
    }
    change();
    EXPECT_EQ(linesOfACopy(), first);
}

TEST_F(RememberedFiles, AreNotSearchedWhereTheCallerKnowsWhatTheyHold) {
    Strings expected = linesOfACopy();
    EXPECT_THAT(expected, Contains(kLine));
    remember([](const struct stat& status) {
        const bool isChanged = static_cast<std::size_t>(status.st_size) == kHomeDirectory.size();
        return isChanged ? std::optional(false) : std::nullopt;
    });
    std::erase(expected, kLine);
    EXPECT_EQ(linesOfACopy(), expected);
}

TEST_F(RememberedFiles, AreLookedAtAnewByCopiesThatDoNotRemember) {
    EXPECT_THAT(linesOfACopy(), Contains(kLine));
    change();
    for (const std::string& line : {kLine, kProgramLine, kImportLine}) {
        EXPECT_THAT(linesOfACopy(), Not(Contains(line)));
    }
    remember();
    EXPECT_THAT(linesOfACopy(), Not(Contains(kLine)));
}

TEST_F(RememberedFiles, MeanNothingForAnotherHeader) {
    remember();
    EXPECT_THAT(linesOfACopy(), Contains(kLine));
    change();
    const TemporaryDirectory directory;
    PackageBuilder other("org.example.app");
    other.file("/usr/share/org.example.app/another", "").file(kChangedPath, "");
    EXPECT_THAT(linesOfACopy(RpmMeta(other.build(directory).c_str())), Not(Contains(kLine)));
}

}  // namespace
