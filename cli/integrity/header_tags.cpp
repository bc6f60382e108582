// The rules on which tags a header has.
#include <rpm/rpmtag.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <string_view>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

// Tags of later versions of rpm than the one that is built against.
constexpr rpmTagVal kPreUntrans = 5103;
constexpr rpmTagVal kPostUntrans = 5104;
constexpr rpmTagVal kPreUntransProgram = 5105;
constexpr rpmTagVal kPostUntransProgram = 5106;
constexpr rpmTagVal kPreUntransFlags = 5107;
constexpr rpmTagVal kPostUntransFlags = 5108;

// What tells of a package, lists its files or names other packages, and does nothing at
// installation that no rule looks at. All else is a finding, so that the list is closed.
constexpr rpmTagVal kHarmlessTags[] = {
    // Of the header itself.
    RPMTAG_HEADERIMAGE,
    RPMTAG_HEADERSIGNATURES,
    RPMTAG_HEADERIMMUTABLE,
    RPMTAG_HEADERREGIONS,
    RPMTAG_HEADERI18NTABLE,
    // Sizes, digests and signatures.
    RPMTAG_SIGSIZE,
    RPMTAG_SIGPGP,
    RPMTAG_SIGMD5,
    RPMTAG_SIGGPG,
    RPMTAG_DSAHEADER,
    RPMTAG_RSAHEADER,
    RPMTAG_SHA1HEADER,
    RPMTAG_LONGSIGSIZE,
    RPMTAG_LONGARCHIVESIZE,
    RPMTAG_SHA256HEADER,
    RPMTAG_VERITYSIGNATURES,
    RPMTAG_VERITYSIGNATUREALGO,
    RPMTAG_ARCHIVESIZE,
    RPMTAG_FILESIGNATURES,
    RPMTAG_FILESIGNATURELENGTH,
    RPMTAG_PAYLOADDIGEST,
    RPMTAG_PAYLOADDIGESTALGO,
    RPMTAG_PAYLOADDIGESTALT,
    // What the package is and where it comes from.
    RPMTAG_NAME,
    RPMTAG_VERSION,
    RPMTAG_RELEASE,
    RPMTAG_EPOCH,
    RPMTAG_SUMMARY,
    RPMTAG_DESCRIPTION,
    RPMTAG_BUILDTIME,
    RPMTAG_BUILDHOST,
    RPMTAG_SIZE,
    RPMTAG_LONGSIZE,
    RPMTAG_DISTRIBUTION,
    RPMTAG_VENDOR,
    RPMTAG_GIF,
    RPMTAG_XPM,
    RPMTAG_ICON,
    RPMTAG_LICENSE,
    RPMTAG_PACKAGER,
    RPMTAG_GROUP,
    RPMTAG_URL,
    RPMTAG_OS,
    RPMTAG_ARCH,
    RPMTAG_SOURCERPM,
    RPMTAG_EXCLUDEARCH,
    RPMTAG_EXCLUDEOS,
    RPMTAG_EXCLUSIVEARCH,
    RPMTAG_EXCLUSIVEOS,
    RPMTAG_RPMVERSION,
    RPMTAG_CHANGELOGTIME,
    RPMTAG_CHANGELOGNAME,
    RPMTAG_CHANGELOGTEXT,
    RPMTAG_COOKIE,
    RPMTAG_OPTFLAGS,
    RPMTAG_DISTURL,
    RPMTAG_RHNPLATFORM,
    RPMTAG_PLATFORM,
    RPMTAG_SOURCEPKGID,
    RPMTAG_DISTTAG,
    RPMTAG_KEYWORDS,
    RPMTAG_VARIANTS,
    RPMTAG_BUGURL,
    RPMTAG_VCS,
    RPMTAG_ENCODING,
    RPMTAG_MODULARITYLABEL,
    RPMTAG_TRANSLATIONURL,
    RPMTAG_UPSTREAMRELEASES,
    // The payload.
    RPMTAG_PAYLOADFORMAT,
    RPMTAG_PAYLOADCOMPRESSOR,
    RPMTAG_PAYLOADFLAGS,
    // Its files.
    RPMTAG_FILESIZES,
    RPMTAG_LONGFILESIZES,
    RPMTAG_FILEMODES,
    RPMTAG_FILEUIDS,
    RPMTAG_FILEGIDS,
    RPMTAG_FILERDEVS,
    RPMTAG_FILEMTIMES,
    RPMTAG_FILEDIGESTS,
    RPMTAG_FILEDIGESTALGO,
    RPMTAG_FILELINKTOS,
    RPMTAG_FILEFLAGS,
    RPMTAG_FILEUSERNAME,
    RPMTAG_FILEGROUPNAME,
    RPMTAG_FILEVERIFYFLAGS,
    RPMTAG_FILEDEVICES,
    RPMTAG_FILEINODES,
    RPMTAG_FILELANGS,
    RPMTAG_DIRINDEXES,
    RPMTAG_BASENAMES,
    RPMTAG_DIRNAMES,
    RPMTAG_FILECOLORS,
    RPMTAG_FILECLASS,
    RPMTAG_CLASSDICT,
    RPMTAG_FILEDEPENDSX,
    RPMTAG_FILEDEPENDSN,
    RPMTAG_DEPENDSDICT,
    RPMTAG_FILECAPS,
    // Other packages.
    RPMTAG_PROVIDENAME,
    RPMTAG_PROVIDEFLAGS,
    RPMTAG_PROVIDEVERSION,
    RPMTAG_REQUIRENAME,
    RPMTAG_REQUIREFLAGS,
    RPMTAG_REQUIREVERSION,
    RPMTAG_CONFLICTNAME,
    RPMTAG_CONFLICTFLAGS,
    RPMTAG_CONFLICTVERSION,
    RPMTAG_OBSOLETENAME,
    RPMTAG_OBSOLETEFLAGS,
    RPMTAG_OBSOLETEVERSION,
    RPMTAG_OLDSUGGESTSNAME,
    RPMTAG_OLDSUGGESTSVERSION,
    RPMTAG_OLDSUGGESTSFLAGS,
    RPMTAG_OLDENHANCESNAME,
    RPMTAG_OLDENHANCESVERSION,
    RPMTAG_OLDENHANCESFLAGS,
    RPMTAG_ORDERNAME,
    RPMTAG_ORDERVERSION,
    RPMTAG_ORDERFLAGS,
    RPMTAG_RECOMMENDNAME,
    RPMTAG_RECOMMENDVERSION,
    RPMTAG_RECOMMENDFLAGS,
    RPMTAG_SUGGESTNAME,
    RPMTAG_SUGGESTVERSION,
    RPMTAG_SUGGESTFLAGS,
    RPMTAG_SUPPLEMENTNAME,
    RPMTAG_SUPPLEMENTVERSION,
    RPMTAG_SUPPLEMENTFLAGS,
    RPMTAG_ENHANCENAME,
    RPMTAG_ENHANCEVERSION,
    RPMTAG_ENHANCEFLAGS,
};

// A rule of the library rejects a package for each of these, and in any case.
constexpr rpmTagVal kScriptTags[] = {
    RPMTAG_PREIN,      RPMTAG_PREUN,      RPMTAG_POSTIN,       RPMTAG_POSTUN,
    RPMTAG_PRETRANS,   RPMTAG_POSTTRANS,  RPMTAG_PREINPROG,    RPMTAG_PREUNPROG,
    RPMTAG_POSTINPROG, RPMTAG_POSTUNPROG, RPMTAG_PRETRANSPROG, RPMTAG_POSTTRANSPROG,
};

// Tags that have rules of their own. Those of one kind make one finding, whose subject is the
// section of the .spec file that they come from.
struct JudgedTag {
    rpmTagVal tag;
    const Message* message;
    std::string_view subject;
};

constexpr JudgedTag kJudgedTags[] = {
    {RPMTAG_TRIGGERSCRIPTS, &kTrigger, "%trigger"},
    {RPMTAG_TRIGGERNAME, &kTrigger, "%trigger"},
    {RPMTAG_TRIGGERVERSION, &kTrigger, "%trigger"},
    {RPMTAG_TRIGGERFLAGS, &kTrigger, "%trigger"},
    {RPMTAG_TRIGGERINDEX, &kTrigger, "%trigger"},
    {RPMTAG_TRIGGERSCRIPTPROG, &kTrigger, "%trigger"},
    {RPMTAG_TRIGGERSCRIPTFLAGS, &kTrigger, "%trigger"},
    {RPMTAG_FILETRIGGERSCRIPTS, &kFileTrigger, "%filetrigger"},
    {RPMTAG_FILETRIGGERSCRIPTPROG, &kFileTrigger, "%filetrigger"},
    {RPMTAG_FILETRIGGERSCRIPTFLAGS, &kFileTrigger, "%filetrigger"},
    {RPMTAG_FILETRIGGERNAME, &kFileTrigger, "%filetrigger"},
    {RPMTAG_FILETRIGGERINDEX, &kFileTrigger, "%filetrigger"},
    {RPMTAG_FILETRIGGERVERSION, &kFileTrigger, "%filetrigger"},
    {RPMTAG_FILETRIGGERFLAGS, &kFileTrigger, "%filetrigger"},
    {RPMTAG_FILETRIGGERPRIORITIES, &kFileTrigger, "%filetrigger"},
    {RPMTAG_TRANSFILETRIGGERSCRIPTS, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_TRANSFILETRIGGERSCRIPTPROG, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_TRANSFILETRIGGERSCRIPTFLAGS, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_TRANSFILETRIGGERNAME, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_TRANSFILETRIGGERINDEX, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_TRANSFILETRIGGERVERSION, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_TRANSFILETRIGGERFLAGS, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_TRANSFILETRIGGERPRIORITIES, &kTransactionFileTrigger, "%transfiletrigger"},
    {RPMTAG_VERIFYSCRIPT, &kVerifyScript, "%verifyscript"},
    {RPMTAG_VERIFYSCRIPTPROG, &kVerifyScript, "%verifyscript"},
    {RPMTAG_VERIFYSCRIPTFLAGS, &kVerifyScript, "%verifyscript"},
    {kPreUntrans, &kTransactionScript, "%preuntrans"},
    {kPreUntransProgram, &kTransactionScript, "%preuntrans"},
    {kPreUntransFlags, &kTransactionScript, "%preuntrans"},
    {kPostUntrans, &kTransactionScript, "%postuntrans"},
    {kPostUntransProgram, &kTransactionScript, "%postuntrans"},
    {kPostUntransFlags, &kTransactionScript, "%postuntrans"},
    {RPMTAG_PREINFLAGS, &kScriptFlags, "%pre"},
    {RPMTAG_POSTINFLAGS, &kScriptFlags, "%post"},
    {RPMTAG_PREUNFLAGS, &kScriptFlags, "%preun"},
    {RPMTAG_POSTUNFLAGS, &kScriptFlags, "%postun"},
    {RPMTAG_PRETRANSFLAGS, &kScriptFlags, "%pretrans"},
    {RPMTAG_POSTTRANSFLAGS, &kScriptFlags, "%posttrans"},
    {RPMTAG_PREFIXES, &kRelocatable, "Prefix"},
    {RPMTAG_DEFAULTPREFIX, &kRelocatable, "Prefix"},
    {RPMTAG_INSTALLPREFIX, &kRelocatable, "Prefix"},
    {RPMTAG_INSTPREFIXES, &kRelocatable, "Prefix"},
    {RPMTAG_ORIGDIRINDEXES, &kRelocatable, "Prefix"},
    {RPMTAG_ORIGBASENAMES, &kRelocatable, "Prefix"},
    {RPMTAG_ORIGDIRNAMES, &kRelocatable, "Prefix"},
};

template <std::size_t kSize>
bool isAmong(const rpmTagVal (&tags)[kSize], rpmTagVal tag) {
    return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

const JudgedTag* judgedTag(rpmTagVal tag) {
    const auto* const found =
        std::find_if(std::begin(kJudgedTags), std::end(kJudgedTags),
                     [tag](const JudgedTag& judged) { return judged.tag == tag; });
    return found == std::end(kJudgedTags) ? nullptr : found;
}

// Whether the tag is of the few that rpm writes in several languages. It takes that type for any
// text, and then reads what the language of the machine says.
bool isForPeople(rpmTagVal tag) {
    return rpmTagGetTagType(tag) == RPM_I18NSTRING_TYPE;
}

// librpm's name, or the number of a tag that it does not know.
std::string nameOf(rpmTagVal tag) {
    return rpmTagGetTagType(tag) == RPM_NULL_TYPE ? std::to_string(tag) : rpmTagGetName(tag);
}

}  // namespace

void checkTags(const PackageHeader& header, IntegrityFindings* findings) {
    std::set<std::string_view> told;
    rpmTagVal former = 0;
    for (const auto [tag, type] : header.tags()) {
        if (tag == former) {
            findings->add(kTagTwice, {nameOf(tag)});
        }
        former = tag;
        if (type == RPM_I18NSTRING_TYPE && !isForPeople(tag)) {
            findings->add(kTagTranslated, {nameOf(tag)});
        }
        if (const JudgedTag* judged = judgedTag(tag)) {
            if (told.insert(judged->subject).second) {
                findings->add(*judged->message, {judged->subject});
            }
        } else if (!isAmong(kHarmlessTags, tag) && !isAmong(kScriptTags, tag)) {
            findings->add(kTagUnknown, {nameOf(tag)});
        }
    }
}

}  // namespace pkgvet::cli
