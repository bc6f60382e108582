// Packages that make a mark outside as soon as anything runs what they hold, or believes it.
#include <rpm/rpmtag.h>

#include "tests/support/hostile/hostile_packages.h"
#include "tests/support/package/accepted_package.h"

namespace {

std::string touching(const Target& target) {
    return "touch " + target.outside + "/" + target.token + " /tmp/" + target.token;
}

std::string scriptOf(const Target& target) {
    return "#!/bin/sh\n" + touching(target) + "\n";
}

void addProgram(CraftedPackage* package, const std::string& path, const Target& target) {
    package->file(packedFile(path, scriptOf(target), 0755));
}

void addMacros(CraftedPackage* package, const std::string& path, const Target& target) {
    const std::string run = "%(" + touching(target) + ")\n";
    package->file(packedFile(path, "%_dbpath " + run + "%_tmppath " + run + "%_topdir " + run +
                                       "%__cpio " + run + "%_install_langs " + run));
}

void setScript(CraftedPackage* package, std::uint32_t script, std::uint32_t interpreter,
               const Target& target) {
    package->set(script, rpmText(touching(target)));
    package->set(interpreter, rpmTexts({"/bin/sh"}));
}

const std::vector<HostilePackage> kPrograms = {
    {"has the tools that unpack it",
     [](CraftedPackage* package, const Target& target) {
         for (const char* const path :
              {"/cpio", "/rpm2cpio", "/sh", "/usr/bin/cpio", "/usr/bin/rpm2cpio", "/bin/sh"}) {
             addProgram(package, path, target);
         }
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has libraries for the loader",
     [](CraftedPackage* package, const Target& target) {
         package->file(packedFile("/etc/ld.so.preload", "/tmp/" + target.token + ".so\n"));
         package->file(packedFile("/libc.so.6", "no library", 0755));
         package->file(packedFile("/usr/lib/libc.so.6", "no library", 0755));
     },
     Outcome::Rejected, "path-not-allowed"},
    // Programs such as ldd run what they ask.
    {"has a program with an interpreter of its own",
     [](CraftedPackage* package, const Target& target) {
         addProgram(package, kAcceptedData + "/interpreter", target);
         package->file(packedFile("/usr/bin/" + kAcceptedName,
                                  "#!" + kAcceptedData + "/interpreter\n", 0755));
     },
     Outcome::Rejected},
    {"has macros for rpm",
     [](CraftedPackage* package, const Target& target) {
         for (const char* const path :
              {"/.rpmmacros", "/.rpmrc", "/etc/rpm/macros.evil", "/root/.rpmmacros",
               "/usr/lib/rpm/macros", "/usr/lib/rpm/macros.d/macros.evil"}) {
             addMacros(package, path, target);
         }
     },
     Outcome::Rejected, "path-not-allowed"},
    {"has macros in its header",
     [](CraftedPackage* package, const Target& target) {
         const std::string run =
             "%(" + touching(target) + ")%{lua:os.execute('" + touching(target) + "')}";
         package->set(RPMTAG_SUMMARY, rpmI18nText(run)).set(RPMTAG_DESCRIPTION, rpmI18nText(run));
         package->set(RPMTAG_URL, rpmText(run)).set(RPMTAG_VENDOR, rpmText(run));
         package->requirement(run);
     },
     Outcome::Rejected},
    {"has a script before and after installation",
     [](CraftedPackage* package, const Target& target) {
         setScript(package, RPMTAG_PREIN, RPMTAG_PREINPROG, target);
         setScript(package, RPMTAG_POSTIN, RPMTAG_POSTINPROG, target);
         setScript(package, RPMTAG_PRETRANS, RPMTAG_PRETRANSPROG, target);
     },
     Outcome::Rejected, "scripts-not-allowed"},
    {"has a script for verification in Lua",
     [](CraftedPackage* package, const Target& target) {
         package->set(RPMTAG_VERIFYSCRIPT, rpmText("os.execute('" + touching(target) + "')"));
         package->set(RPMTAG_VERIFYSCRIPTPROG, rpmTexts({"<lua>"}));
     },
     Outcome::Rejected},
    {"has a trigger",
     [](CraftedPackage* package, const Target& target) {
         package->set(RPMTAG_TRIGGERSCRIPTS, rpmTexts({touching(target)}));
         package->set(RPMTAG_TRIGGERSCRIPTPROG, rpmTexts({"/bin/sh"}));
         package->set(RPMTAG_TRIGGERNAME, rpmTexts({"rpm"}));
         package->set(RPMTAG_TRIGGERVERSION, rpmTexts({""}));
         package->set(RPMTAG_TRIGGERFLAGS, rpmInt32({1U << 16U}));
         package->set(RPMTAG_TRIGGERINDEX, rpmInt32({0}));
     },
     Outcome::Rejected},
};

}  // namespace

std::vector<HostilePackage> packagesThatWantToBeRun() {
    return kPrograms;
}
