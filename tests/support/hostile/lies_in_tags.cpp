#include <rpm/rpmds.h>
#include <rpm/rpmtag.h>

#include "tests/support/base/joined_tables.h"
#include "tests/support/hostile/lies.h"
#include "tests/support/package/accepted_package.h"

namespace {

constexpr const char* kScript = "touch /evil";
constexpr const char* kShell = "/bin/sh";
constexpr const char* kAnyVersion = "";
constexpr std::uint32_t kUnknownTag = 7777;
// This version of librpm does not know it yet.
constexpr std::uint32_t kPreUntrans = 5103;

// The tags of one kind of trigger.
struct TriggerTags {
    std::uint32_t scripts;
    std::uint32_t programs;
    std::uint32_t names;
    std::uint32_t indexes;
    std::uint32_t versions;
    std::uint32_t flags;
};

void addTrigger(CraftedPackage* package, const TriggerTags& tags, const std::string& name,
                std::uint32_t when) {
    package->set(tags.scripts, rpmTexts({kScript})).set(tags.programs, rpmTexts({kShell}));
    package->set(tags.names, rpmTexts({name})).set(tags.indexes, rpmInt32({0}));
    package->set(tags.versions, rpmTexts({kAnyVersion})).set(tags.flags, rpmInt32({when}));
}

const std::vector<Lie> kTriggers = {
    {"a trigger runs when another package is installed",
     [](CraftedPackage* package) {
         addTrigger(package,
                    {RPMTAG_TRIGGERSCRIPTS, RPMTAG_TRIGGERSCRIPTPROG, RPMTAG_TRIGGERNAME,
                     RPMTAG_TRIGGERINDEX, RPMTAG_TRIGGERVERSION, RPMTAG_TRIGGERFLAGS},
                    "rpm", RPMSENSE_TRIGGERIN);
     },
     {"trigger-not-allowed"}},
    {"a trigger runs when files are installed",
     [](CraftedPackage* package) {
         addTrigger(
             package,
             {RPMTAG_FILETRIGGERSCRIPTS, RPMTAG_FILETRIGGERSCRIPTPROG, RPMTAG_FILETRIGGERNAME,
              RPMTAG_FILETRIGGERINDEX, RPMTAG_FILETRIGGERVERSION, RPMTAG_FILETRIGGERFLAGS},
             "/usr", RPMSENSE_TRIGGERIN);
         package->set(RPMTAG_FILETRIGGERPRIORITIES, rpmInt32({1}));
     },
     {"file-trigger-not-allowed"}},
    {"a trigger runs after transactions that install files",
     [](CraftedPackage* package) {
         addTrigger(package,
                    {RPMTAG_TRANSFILETRIGGERSCRIPTS, RPMTAG_TRANSFILETRIGGERSCRIPTPROG,
                     RPMTAG_TRANSFILETRIGGERNAME, RPMTAG_TRANSFILETRIGGERINDEX,
                     RPMTAG_TRANSFILETRIGGERVERSION, RPMTAG_TRANSFILETRIGGERFLAGS},
                    "/usr", RPMSENSE_TRIGGERIN);
         package->set(RPMTAG_TRANSFILETRIGGERPRIORITIES, rpmInt32({1}));
     },
     {"transaction-file-trigger-not-allowed"}},
};

const std::vector<Lie> kScripts = {
    {"a script runs when the package is verified",
     [](CraftedPackage* package) {
         package->set(RPMTAG_VERIFYSCRIPT, rpmText(kScript));
         package->set(RPMTAG_VERIFYSCRIPTPROG, rpmTexts({kShell}));
     },
     {"verify-script-not-allowed"}},
    {"a program runs when the package is verified",
     [](CraftedPackage* package) { package->set(RPMTAG_VERIFYSCRIPTPROG, rpmTexts({kShell})); },
     {"verify-script-not-allowed"}},
    {"a script has flags and no text",
     [](CraftedPackage* package) { package->set(RPMTAG_POSTINFLAGS, rpmInt32({1})); },
     {"script-flags-not-allowed"}},
    {"a script of the verification has flags and no text",
     [](CraftedPackage* package) { package->set(RPMTAG_VERIFYSCRIPTFLAGS, rpmInt32({1})); },
     {"verify-script-not-allowed"}},
    {"there is a tag that rpm does not know",
     [](CraftedPackage* package) { package->set(kUnknownTag, rpmText(kScript)); },
     {"header-tag-unknown"}},
    {"a script runs before transactions that remove it",
     [](CraftedPackage* package) { package->set(kPreUntrans, rpmText(kScript)); },
     {"transaction-script-not-allowed"}},
    {"there is a tag twice",
     [](CraftedPackage* package) { package->add(RPMTAG_NAME, rpmText("evil")); },
     {"header-tag-twice"}},
    {"a text depends on the language",
     [](CraftedPackage* package) { package->set(RPMTAG_OS, rpmI18nText("linux")); },
     {"header-tag-translated"}},
    {"it provides a user",
     [](CraftedPackage* package) {
         package->set(RPMTAG_PROVIDENAME, rpmTexts({kAcceptedName, "user(evil)"}));
         package->set(RPMTAG_PROVIDEFLAGS, rpmInt32({RPMSENSE_EQUAL, RPMSENSE_EQUAL}));
         package->set(RPMTAG_PROVIDEVERSION, rpmTexts({"1-1", "dSBldmlsIDAK"}));
     },
     {"account-created"}},
    {"there is a policy of the security module",
     [](CraftedPackage* package) { package->set(RPMTAG_POLICIES, rpmTexts({"cG9saWN5"})); },
     {"header-tag-unknown"}},
};

const std::vector<Lie> kKinds = {
    {"it can be installed elsewhere",
     [](CraftedPackage* package) { package->set(RPMTAG_PREFIXES, rpmTexts({"/usr"})); },
     {"relocatable-package"}},
    {"it is a source package",
     [](CraftedPackage* package) {
         package->lead(rpmLead(kAcceptedName, 1)).remove(RPMTAG_SOURCERPM);
         package->set(RPMTAG_SOURCEPACKAGE, rpmInt32({1}));
     },
     {"source-package"}},
    {"it is a source package by one tag",
     [](CraftedPackage* package) { package->set(RPMTAG_SOURCEPACKAGE, rpmInt32({1})); },
     {"source-package"}},
    {"it is a source package by a missing tag",
     [](CraftedPackage* package) { package->remove(RPMTAG_SOURCERPM); },
     {"source-package"}},
    {"it is for another operating system",
     [](CraftedPackage* package) { package->set(RPMTAG_OS, rpmText("solaris")); },
     {"other-operating-system"}},
    {"it names no operating system",
     [](CraftedPackage* package) { package->remove(RPMTAG_OS); },
     {"other-operating-system"}},
    {"its payload is said to be of another format",
     [](CraftedPackage* package) { package->set(RPMTAG_PAYLOADFORMAT, rpmText("drpm")); },
     {"payload-format-unknown"}},
};

}  // namespace

std::vector<Lie> liesInTags() {
    return joined<Lie>({kTriggers, kScripts, kKinds});
}
