// The state of the platform's developer mode.
#include "pkgvet/rules/developer_mode.h"

#include <gtest/gtest.h>

#include "tests/support/base/captured_log.h"
#include "tests/support/base/temporary_directory.h"

namespace {

TEST(DeveloperMode, IsReadFromThePlatformsFile) {
    EXPECT_STREQ(pkgvet::kDeveloperModeFile, "/var/lib/tinkerd/tinkerd.conf");
}

TEST(DeveloperMode, TheKeyDecides) {
    struct Case {
        const char* name;
        const char* content;
        bool expected;
    };
    const Case cases[] = {
        {"off", "[developermode]\nvalidationEnabled=false\n", false},
        {"on", "[developermode]\nvalidationEnabled=true\n", true},
        {"off as a number", "[developermode]\nvalidationEnabled=0\n", false},
        {"on as a number", "[developermode]\nvalidationEnabled=1\n", true},
        {"no boolean", "[developermode]\nvalidationEnabled=maybe\n", false},
        {"empty value", "[developermode]\nvalidationEnabled=\n", false},
        {"upper case", "[developermode]\nvalidationEnabled=TRUE\n", false},
        {"blanks around", "[developermode]\nvalidationEnabled = false \n", false},
        {"among others", "[a]\nb=c\n[developermode]\nx=1\nvalidationEnabled=false\n", false},
        {"last one counts", "[developermode]\nvalidationEnabled=false\nvalidationEnabled=true\n",
         true},
        {"another group", "[other]\nvalidationEnabled=false\n", true},
        {"group in another case", "[DeveloperMode]\nvalidationEnabled=false\n", true},
        {"another key", "[developermode]\nvalidationenabled=false\n", true},
        {"no group", "validationEnabled=false\n", true},
        {"empty file", "", true},
        {"no key file", "\xFF\xFE{}", true},
    };
    const TemporaryDirectory directory;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        EXPECT_EQ(pkgvet::readValidationEnabled(directory.write("state", test.content)),
                  test.expected);
    }
}

TEST(DeveloperMode, MissingFileIsSilentAndTrue) {
    const TemporaryDirectory directory;
    const CapturedDescriptor standardError;
    EXPECT_TRUE(pkgvet::readValidationEnabled(directory / "missing"));
    EXPECT_TRUE(pkgvet::readValidationEnabled(directory.path()));
    EXPECT_TRUE(pkgvet::readValidationEnabled(""));
    EXPECT_EQ(standardError.text(), "");
}

}  // namespace
