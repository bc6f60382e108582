// Reading package headers.
#include "pkgvet/package/rpm_meta.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rpm/rpmts.h>

#include <memory>
#include <utility>

#include "pkgvet/base/c_handle.h"
#include "tests/support/base/captured_log.h"
#include "tests/support/package/package_builder.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using TransactionSetHandle = pkgvet::CHandle<rpmts_s, rpmtsFree>;
using Strings = std::vector<std::string>;

bool hasScripts(const std::string& lines) {
    return metaOf(PackageBuilder("org.example.app").script(lines)).scriptsFlag();
}

TEST(RpmMeta, IdentityIsReadFromTheHeader) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app").tag("Vendor: A vendor"));
    EXPECT_EQ(meta.name(), "org.example.app");
    EXPECT_EQ(meta.version(), "1.0");
    EXPECT_EQ(meta.release(), "1");
    EXPECT_EQ(meta.vendor(), "A vendor");
    EXPECT_EQ(meta.arch(), "noarch");
}

TEST(RpmMeta, MissingVendorIsEmpty) {
    EXPECT_EQ(metaOf(PackageBuilder("org.example.app")).vendor(), "");
}

TEST(RpmMeta, ArchitectureOfTheMachineIsRead) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app").native());
    EXPECT_NE(meta.arch(), "noarch");
    EXPECT_NE(meta.arch(), "");
}

TEST(RpmMeta, EachInstallScriptCounts) {
    EXPECT_FALSE(hasScripts(""));
    for (const char* section : {"%pre", "%post", "%preun", "%postun", "%pretrans", "%posttrans"}) {
        SCOPED_TRACE(section);
        EXPECT_TRUE(hasScripts(std::string(section).append("\ntrue")));
        EXPECT_TRUE(hasScripts(std::string(section).append(" -p /bin/true")))
            << "an interpreter alone";
    }
}

TEST(RpmMeta, OtherScriptsDoNotCount) {
    EXPECT_FALSE(hasScripts("%triggerin -- other\ntrue"));
    EXPECT_FALSE(hasScripts("%triggerpostun -- other\ntrue"));
    EXPECT_FALSE(hasScripts("%filetriggerin -- /usr\ntrue"));
    EXPECT_FALSE(hasScripts("%transfiletriggerin -- /usr\ntrue"));
    EXPECT_FALSE(hasScripts("%verifyscript\ntrue"));
}

TEST(RpmMeta, RequirementsAreBareNames) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app")
                                    .tag("Requires: foo >= 1.2")
                                    .tag("Requires: bar = 3:4-5")
                                    .tag("Requires: libfoo.so.1()(64bit)")
                                    .tag("Requires: libbar.so.2(VERS_1)(64bit)")
                                    .tag("Requires(post): late"));
    for (const char* name :
         {"foo", "bar", "libfoo.so.1()(64bit)", "libbar.so.2(VERS_1)(64bit)", "late"}) {
        EXPECT_THAT(meta.requireNames(), Contains(name));
    }
    EXPECT_EQ(meta.requireNames().size(), 5U);
}

TEST(RpmMeta, InternalRequirementsAreLeftOut) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app")
                                    .script("%post\ntrue")
                                    .tag("Requires: /bin/sh")
                                    .tag("Requires: rtld(GNU_HASH)")
                                    .tag("Requires: libpostrtld.so.1")
                                    .tag("Requires: my-rpmlib-tool")
                                    .tag("Requires: a/b")
                                    .tag("Requires: kept"));
    EXPECT_THAT(meta.requireNames(), ElementsAre("kept"));
}

TEST(RpmMeta, OnlyRequirementsAreFiltered) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app")
                                    .tag("Provides: /bin/sh")
                                    .tag("Provides: my-rpmlib = 1")
                                    .tag("Provides: rtld(GNU_HASH)")
                                    .tag("Obsoletes: old-rtld < 2")
                                    .tag("Conflicts: an-rpmlib"));
    for (const char* name : {"/bin/sh", "my-rpmlib", "rtld(GNU_HASH)", "org.example.app"}) {
        EXPECT_THAT(meta.provides(), Contains(name));
    }
    EXPECT_THAT(meta.obsoletes(), ElementsAre("old-rtld"));
    EXPECT_THAT(meta.conflicts(), ElementsAre("an-rpmlib"));
}

TEST(RpmMeta, RichDependencyIsCutAtItsFirstBlank) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app").tag("Requires: (foo if bar)"));
    EXPECT_THAT(meta.requireNames(), ElementsAre("(foo"));
}

TEST(RpmMeta, OneNameInSeveralVersionsStaysSeveralTimes) {
    const RpmMeta meta = metaOf(
        PackageBuilder("org.example.app").tag("Requires: foo >= 1").tag("Requires: foo < 2"));
    EXPECT_THAT(meta.requireNames(), ElementsAre("foo", "foo"));
}

TEST(RpmMeta, FilesComeWithTheirOwners) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app")
                                    .directory("/usr/share/app")
                                    .file("/usr/bin/app", "x", "0755", "alice", "staff")
                                    .file("/usr/share/app/a file", "x", "0644", "bob", "root")
                                    .link("/usr/share/app/link", "a file")
                                    .ghost("/var/app.log"));
    EXPECT_THAT(meta.paths(), ElementsAre("/usr/bin/app", "/usr/share/app", "/usr/share/app/a file",
                                          "/usr/share/app/link", "/var/app.log"));
    EXPECT_THAT(meta.users(), ElementsAre("alice", "root", "bob", "root", "root"));
    EXPECT_THAT(meta.groups(), ElementsAre("staff", "root", "root", "root", "root"));
}

TEST(RpmMeta, PackageWithoutFilesHasEmptyLists) {
    const RpmMeta meta = metaOf(PackageBuilder("org.example.app"));
    EXPECT_THAT(meta.paths(), IsEmpty());
    EXPECT_THAT(meta.users(), IsEmpty());
    EXPECT_THAT(meta.groups(), IsEmpty());
    EXPECT_THAT(meta.requireNames(), IsEmpty());
    EXPECT_THAT(meta.provides(), ElementsAre("org.example.app"));
    EXPECT_THAT(meta.obsoletes(), IsEmpty());
    EXPECT_THAT(meta.conflicts(), IsEmpty());
}

TEST(RpmMeta, TransactionSetGivesTheSameAndKeepsItsFlags) {
    const TemporaryDirectory directory;
    const std::string path =
        PackageBuilder("org.example.app").tag("Requires: foo").build(directory);
    const TransactionSetHandle transactions(rpmtsCreate());
    const CapturedDescriptor standardError;  // librpm's words about what is missing
    for (const rpmVSFlags flags : {RPMVSF_DEFAULT, RPMVSF_NOMD5, RPMVSF_NOHDRCHK}) {
        rpmtsSetVSFlags(transactions.get(), flags);
        const RpmMeta meta(path.c_str(), transactions.get());
        EXPECT_EQ(meta.name(), "org.example.app");
        EXPECT_THAT(meta.requireNames(), ElementsAre("foo"));
        EXPECT_EQ(rpmtsVSFlags(transactions.get()), flags);
        EXPECT_EQ(RpmMeta((directory / "missing").c_str(), transactions.get()).name(), "");
        EXPECT_EQ(RpmMeta(directory.write("text", "text").c_str(), transactions.get()).name(), "");
        EXPECT_EQ(rpmtsVSFlags(transactions.get()), flags) << "after a failure as well";
    }
}

TEST(RpmMeta, CopyIsIndependent) {
    auto source = std::make_unique<RpmMeta>(metaOf(PackageBuilder("org.example.app")
                                                       .tag("Vendor: v")
                                                       .tag("Obsoletes: old")
                                                       .tag("Conflicts: other")
                                                       .script("%post\ntrue")
                                                       .file("/a", "x")));
    const RpmMeta copy(*source);
    source.reset();
    EXPECT_EQ(copy.name(), "org.example.app");
    EXPECT_EQ(copy.vendor(), "v");
    EXPECT_TRUE(copy.scriptsFlag());
    EXPECT_THAT(copy.obsoletes(), ElementsAre("old"));
    EXPECT_THAT(copy.conflicts(), ElementsAre("other"));
    EXPECT_THAT(copy.paths(), ElementsAre("/a"));
    EXPECT_THAT(copy.users(), ElementsAre("root"));
    EXPECT_THAT(copy.groups(), ElementsAre("root"));
}

TEST(RpmMeta, MoveAssignmentExchanges) {
    RpmMeta one = metaOf(PackageBuilder("org.example.one"));
    RpmMeta two = metaOf(PackageBuilder("org.example.two"));
    one = std::move(two);
    EXPECT_EQ(one.name(), "org.example.two");
    EXPECT_EQ(two.name(), "org.example.one");  // NOLINT(bugprone-use-after-move)
    RpmMeta& self = one;
    one = std::move(self);
    EXPECT_EQ(one.name(), "org.example.two");
}

}  // namespace
