// The word of flags behind a verdict.
#include "pkgvet/report/failures.h"

#include <gtest/gtest.h>

namespace {

using pkgvet::isAccepted;

TEST(Failures, BitsHaveTheirValues) {
    EXPECT_EQ(pkgvet::kViolation, 1U);
    EXPECT_EQ(pkgvet::kGraveFinding, 2U);
}

TEST(Failures, OnlyGraveFindingsRejectWithValidationOff) {
    struct Case {
        std::uint32_t failures;
        bool enabled;
        bool expected;
    };
    const Case cases[] = {{0, true, true},  {1, true, false}, {2, true, false},  {3, true, false},
                          {0, false, true}, {1, false, true}, {2, false, false}, {3, false, false},
                          {4, true, false}, {4, false, true}};
    for (const Case& test : cases) {
        EXPECT_EQ(isAccepted(test.failures, test.enabled), test.expected)
            << test.failures << (test.enabled ? " on" : " off");
    }
}

}  // namespace
