// The catalogue against the library itself: every line that packages draw has an id, and every id
// is drawn.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <set>

#include "cli/catalogue/catalogue.h"
#include "cli/judge/finding_capture.h"
#include "cli/judge/identify.h"
#include "pkgvet/content/content_validator.h"
#include "pkgvet/meta/meta_validator.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"
#include "tests/support/program/sample_packages.h"

namespace pkgvet::cli {

namespace {

std::vector<Finding> findingsOf(const std::string& path, const Configuration& configuration) {
    const CapturedDescriptor noiseOfTools;
    std::vector<Finding> findings;
    const FindingCapture capture(
        std::cerr, [&findings](const LogLine& line) { findings.push_back(identify(line)); });
    const RpmMeta meta(path.c_str());
    const ContentValidator content(path);
    MetaValidator().validateMeta(configuration, meta);
    content.validateContent(configuration, meta);
    return findings;
}

class EveryFinding : public testing::Test {
protected:
    static void SetUpTestSuite() {
        const TemporaryDirectory directory;
        findings_ = new std::vector<Finding>;
        for (const SamplePackage& sample : buildSamples(directory)) {
            const auto more = findingsOf(sample.path, load(sampleRules(), sample.profile));
            findings_->insert(findings_->end(), more.begin(), more.end());
        }
    }

    static void TearDownTestSuite() { delete findings_; }

    static inline std::vector<Finding>* findings_ = nullptr;
};

// The library draws none of the program's own.
bool isOfTheLibrary(const Chapter& chapter) {
    return chapter.title != "Package integrity";
}

// The first two are lines that no package draws, for the reasons told where they are tested; the
// others stand for lines of others, and for what has no line.
const std::set<std::string> kNeverDrawn = {"intent-name-missing", "libexec-wrong-format",
                                           "other-remark", "not-judged"};

}  // namespace

TEST_F(EveryFinding, NoLineOfTheLibraryIsWithoutAnId) {
    for (const Finding& finding : *findings_) {
        EXPECT_NE(finding.rule, "other-remark") << finding.message;
    }
}

TEST_F(EveryFinding, EachIdIsDrawnBySomePackage) {
    std::set<std::string> drawn;
    for (const Finding& finding : *findings_) {
        drawn.insert(finding.rule);
    }
    for (const Chapter& chapter : chapters()) {
        for (const Entry& entry : chapter.entries) {
            const std::string id(entry.id);
            EXPECT_EQ(drawn.contains(id), isOfTheLibrary(chapter) && !kNeverDrawn.contains(id))
                << id;
        }
    }
}

TEST_F(EveryFinding, TheCatalogueKnowsItsSeverity) {
    for (const Finding& finding : *findings_) {
        if (finding.subject != "/usr/share/org.example.token/open") {
            EXPECT_EQ(finding.severity, findEntry(finding.rule)->severity) << finding.message;
        }
    }
}

TEST_F(EveryFinding, OneIsMilderUnderTheProfileAuth) {
    const auto found =
        std::find_if(findings_->begin(), findings_->end(), [](const Finding& finding) {
            return finding.subject == "/usr/share/org.example.token/open";
        });
    ASSERT_NE(found, findings_->end());
    EXPECT_EQ(found->rule, "writable-by-others");
    EXPECT_EQ(found->severity, Severity::Warning);
}

TEST_F(EveryFinding, ItsSubjectIsPartOfItsMessage) {
    for (const Finding& finding : *findings_) {
        if (finding.subject) {
            EXPECT_NE(finding.message.find(*finding.subject), std::string::npos) << finding.message;
        }
    }
}

}  // namespace pkgvet::cli
