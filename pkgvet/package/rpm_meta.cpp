// Reads a package header through librpm.
#include "pkgvet/package/rpm_meta.h"

#include <rpm/header.h>
#include <rpm/rpmds.h>
#include <rpm/rpmfi.h>
#include <rpm/rpmio.h>
#include <rpm/rpmlib.h>
#include <rpm/rpmtd.h>
#include <rpm/rpmts.h>
#include <rpm/rpmurl.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>
#include <type_traits>

#include "pkgvet/base/c_handle.h"
#include "pkgvet/base/regular_file.h"

struct RpmMetaPrivate {
    std::string name;
    std::string version;
    std::string release;
    std::string vendor;
    std::string arch;
    bool scriptsFlag = false;
    std::vector<std::string> requireNames;
    std::vector<std::string> provides;
    std::vector<std::string> obsoletes;
    std::vector<std::string> conflicts;
    std::vector<std::string> paths;
    std::vector<std::string> users;
    std::vector<std::string> groups;
};

namespace {

// rpmtdFree frees the container, but not the data in it.
void releaseTagData(rpmtd container) {
    rpmtdFreeData(container);
    rpmtdFree(container);
}

using RpmFileHandle = pkgvet::CHandle<std::remove_pointer_t<FD_t>, Fclose>;
using HeaderHandle = pkgvet::CHandle<std::remove_pointer_t<Header>, headerFree>;
using TagDataHandle = pkgvet::CHandle<std::remove_pointer_t<rpmtd>, releaseTagData>;
using FileIteratorHandle = pkgvet::CHandle<std::remove_pointer_t<rpmfi>, rpmfiFree>;
using DependencySetHandle = pkgvet::CHandle<std::remove_pointer_t<rpmds>, rpmdsFree>;

constexpr const char* kOpenMode = "r.ufdio";

// The header's own digests and signatures are not verified: a package is judged whoever signed it.
// These flags replace those of the transaction set and are not merged with them.
constexpr rpmVSFlags kVerificationFlags =
    RPMVSF_NOSHA1HEADER | RPMVSF_NOSHA256HEADER | RPMVSF_NODSAHEADER | RPMVSF_NORSAHEADER;

struct TextField {
    rpmTagVal tag;
    std::string RpmMetaPrivate::*field;
};

constexpr std::array<TextField, 5> kTextFields = {{
    {RPMTAG_NAME, &RpmMetaPrivate::name},
    {RPMTAG_VERSION, &RpmMetaPrivate::version},
    {RPMTAG_RELEASE, &RpmMetaPrivate::release},
    {RPMTAG_VENDOR, &RpmMetaPrivate::vendor},
    {RPMTAG_ARCH, &RpmMetaPrivate::arch},
}};

// An interpreter without a body runs at installation all the same.
constexpr std::array<rpmTagVal, 12> kScriptTags = {
    RPMTAG_PREIN,      RPMTAG_PREUN,      RPMTAG_POSTIN,       RPMTAG_POSTUN,
    RPMTAG_PRETRANS,   RPMTAG_POSTTRANS,  RPMTAG_PREINPROG,    RPMTAG_PREUNPROG,
    RPMTAG_POSTINPROG, RPMTAG_POSTUNPROG, RPMTAG_PRETRANSPROG, RPMTAG_POSTTRANSPROG,
};

// Substrings that keep a requirement from the rules: librpm's own capabilities, files, and the
// loader's. A library whose name happens to hold "rtld" goes unseen too.
constexpr std::array<std::string_view, 3> kUnjudgedRequirements = {"rpmlib", "/", "rtld"};

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

// What librpm takes for a path may be a URL as well, or "-" for standard input, which the caller
// asks for and which may be a pipe.
bool mayBlock(const char* path) {
    const char* file = nullptr;
    return path != nullptr && urlPath(path, &file) != URL_IS_DASH && pkgvet::mayNeverEnd(file);
}

// The null handle stands for a package that could not be read. A header comes out with some codes
// other than success as well, and is released then.
HeaderHandle readHeader(const char* path, rpmts ts) {
    if (mayBlock(path)) {
        return nullptr;
    }
    RpmFileHandle file(Fopen(path, kOpenMode));
    const rpmVSFlags callersFlags = rpmtsVSFlags(ts);
    rpmtsSetVSFlags(ts, kVerificationFlags);
    Header header = nullptr;
    const rpmRC result = rpmReadPackageFile(ts, file.get(), path, &header);
    file.reset();
    rpmtsSetVSFlags(ts, callersFlags);
    HeaderHandle owner(header);
    if (result != RPMRC_OK) {
        owner.reset();
    }
    return owner;
}

TagDataHandle fetchTag(Header header, rpmTagVal tag) {
    TagDataHandle container(rpmtdNew());
    headerGet(header, tag, container.get(), HEADERGET_EXT);
    return container;
}

void readTextFields(Header header, RpmMetaPrivate* record) {
    for (const TextField& text : kTextFields) {
        const TagDataHandle container = fetchTag(header, text.tag);
        if (rpmtdSize(container.get()) != 0) {
            record->*text.field = std::string(rpmtdGetString(container.get()));
        }
    }
}

bool hasScripts(Header header) {
    return std::any_of(kScriptTags.begin(), kScriptTags.end(), [header](rpmTagVal tag) {
        return rpmtdSize(fetchTag(header, tag).get()) != 0;
    });
}

// A header names each directory once and each file by its last part alone, so that the paths of a
// header of a megabyte can take gigabytes.
constexpr std::size_t kMaxPathsSize = std::size_t{256} << 20;

// All three lists grow in one step, so that they stay parallel.
void readFiles(Header header, RpmMetaPrivate* record) {
    const FileIteratorHandle files(rpmfiNew(nullptr, header, RPMTAG_BASENAMES, RPMFI_KEEPHEADER));
    if (!files) {
        return;
    }
    std::size_t size = 0;
    while (rpmfiNext(files.get()) != -1) {
        record->users.emplace_back(rpmfiFUser(files.get()));
        record->groups.emplace_back(rpmfiFGroup(files.get()));
        size += record->paths.emplace_back(rpmfiFN(files.get())).size();
        if (size > kMaxPathsSize) {
            throw std::length_error("the paths of the package take more than 256 MiB");
        }
    }
}

// The second word of "R name >= version", where the first tells the kind of dependency. The name of
// a rich dependency holds blanks and is cut at the first of them.
std::string bareName(const std::string& dependency) {
    std::size_t begin = dependency.find_first_not_of(kWhiteSpace);
    begin = dependency.find_first_of(kWhiteSpace, begin);
    begin = dependency.find_first_not_of(kWhiteSpace, begin);
    if (begin == std::string::npos) {
        return std::string();
    }
    return dependency.substr(begin, dependency.find_first_of(kWhiteSpace, begin) - begin);
}

std::vector<std::string> readDependencies(Header header, rpmTagVal tag) {
    std::vector<std::string> names;
    const DependencySetHandle dependencies(rpmdsNew(header, tag, 0));
    if (dependencies) {
        while (rpmdsNext(dependencies.get()) >= 0) {
            names.push_back(bareName(rpmdsDNEVR(dependencies.get())));
        }
    }
    return names;
}

bool isUnjudged(const std::string& requirement) {
    return std::any_of(
        kUnjudgedRequirements.begin(), kUnjudgedRequirements.end(),
        [&](std::string_view part) { return requirement.find(part) != std::string::npos; });
}

void readDependencyLists(Header header, RpmMetaPrivate* record) {
    record->requireNames = readDependencies(header, RPMTAG_REQUIRENAME);
    std::erase_if(record->requireNames, isUnjudged);
    record->provides = readDependencies(header, RPMTAG_PROVIDENAME);
    record->obsoletes = readDependencies(header, RPMTAG_OBSOLETENAME);
    record->conflicts = readDependencies(header, RPMTAG_CONFLICTNAME);
}

}  // namespace

RpmMeta::RpmMeta(const char* path, rpmts ts) : d_ptr(std::make_unique<RpmMetaPrivate>()) {
    const HeaderHandle header = readHeader(path, ts);
    if (!header) {
        return;
    }
    readTextFields(header.get(), d_ptr.get());
    d_ptr->scriptsFlag = hasScripts(header.get());
    readFiles(header.get(), d_ptr.get());
    readDependencyLists(header.get(), d_ptr.get());
}

RpmMeta::RpmMeta(const char* path) : RpmMeta(path, nullptr) {}

RpmMeta::RpmMeta(const RpmMeta& other) : d_ptr(std::make_unique<RpmMetaPrivate>(*other.d_ptr)) {}

RpmMeta& RpmMeta::operator=(RpmMeta&& other) noexcept {
    d_ptr.swap(other.d_ptr);
    return *this;
}

RpmMeta::~RpmMeta() = default;

const std::string& RpmMeta::name() const {
    return d_ptr->name;
}

const std::string& RpmMeta::version() const {
    return d_ptr->version;
}

const std::string& RpmMeta::release() const {
    return d_ptr->release;
}

const std::string& RpmMeta::vendor() const {
    return d_ptr->vendor;
}

const std::string& RpmMeta::arch() const {
    return d_ptr->arch;
}

bool RpmMeta::scriptsFlag() const {
    return d_ptr->scriptsFlag;
}

const std::vector<std::string>& RpmMeta::requireNames() const {
    return d_ptr->requireNames;
}

const std::vector<std::string>& RpmMeta::provides() const {
    return d_ptr->provides;
}

const std::vector<std::string>& RpmMeta::obsoletes() const {
    return d_ptr->obsoletes;
}

const std::vector<std::string>& RpmMeta::conflicts() const {
    return d_ptr->conflicts;
}

const std::vector<std::string>& RpmMeta::paths() const {
    return d_ptr->paths;
}

const std::vector<std::string>& RpmMeta::users() const {
    return d_ptr->users;
}

const std::vector<std::string>& RpmMeta::groups() const {
    return d_ptr->groups;
}
