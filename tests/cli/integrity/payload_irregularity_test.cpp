// What the guard noted, in words.
#include "cli/integrity/payload_irregularity.h"

#include <gmock/gmock.h>

#include <set>

#include "cli/catalogue/catalogue.h"

namespace {

using namespace pkgvet::cli;

Finding findingOn(Irregularity irregularity) {
    GuardNote note;
    note.end = GuardEnd::Irregular;
    note.irregularity = irregularity;
    note.offset = 1234;
    note.name = "./usr/bin/x";
    return irregularityFinding(note);
}

TEST(PayloadIrregularity, EachHasARuleOfItsOwnThatTheCatalogueKnows) {
    std::set<std::string> rules;
    for (unsigned i = 0; i <= static_cast<unsigned>(Irregularity::Last); ++i) {
        const Finding finding = findingOn(static_cast<Irregularity>(i));
        EXPECT_NE(findEntry(finding.rule), nullptr) << i;
        EXPECT_TRUE(rules.insert(finding.rule).second) << finding.rule;
    }
}

TEST(PayloadIrregularity, AnEntryIsNamedAndAPlaceIsCounted) {
    EXPECT_EQ(findingOn(Irregularity::NameTwice).subject, "./usr/bin/x");
    const Finding finding = findingOn(Irregularity::ForeignBytes);
    EXPECT_THAT(finding.message, testing::HasSubstr("1234"));
    EXPECT_EQ(finding.message.find("./usr/bin/x"), std::string::npos);
}

}  // namespace
