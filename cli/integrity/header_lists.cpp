// The rules on whether the lists of a header fit one another.
#include <rpm/rpmtag.h>

#include <string>

#include "cli/catalogue/integrity_messages.h"
#include "cli/integrity/header_rules.h"

namespace pkgvet::cli {

namespace {

// Lists with an element for each file. Those that must be there say where a file goes and what
// becomes of it.
struct FileList {
    rpmTagVal tag;
    bool isRequired;
};

constexpr FileList kFileLists[] = {
    {RPMTAG_DIRINDEXES, true},        {RPMTAG_FILEMODES, true},   {RPMTAG_FILEUSERNAME, true},
    {RPMTAG_FILEGROUPNAME, true},     {RPMTAG_FILEFLAGS, true},   {RPMTAG_FILELINKTOS, true},
    {RPMTAG_FILERDEVS, true},         {RPMTAG_FILESIZES, false},  {RPMTAG_LONGFILESIZES, false},
    {RPMTAG_FILEDIGESTS, false},      {RPMTAG_FILEMTIMES, false}, {RPMTAG_FILEVERIFYFLAGS, false},
    {RPMTAG_FILEDEVICES, false},      {RPMTAG_FILEINODES, false}, {RPMTAG_FILELANGS, false},
    {RPMTAG_FILECOLORS, false},       {RPMTAG_FILECLASS, false},  {RPMTAG_FILEDEPENDSX, false},
    {RPMTAG_FILEDEPENDSN, false},     {RPMTAG_FILECAPS, false},   {RPMTAG_FILESIGNATURES, false},
    {RPMTAG_VERITYSIGNATURES, false}, {RPMTAG_FILEUIDS, false},   {RPMTAG_FILEGIDS, false},
};

void checkCount(rpmTagVal tag, std::size_t count, std::size_t files, IntegrityFindings* findings) {
    if (count != files) {
        findings->add(kListsDisagree,
                      {rpmTagGetName(tag), std::to_string(count), std::to_string(files)});
    }
}

}  // namespace

void checkLists(const PackageHeader& header, IntegrityFindings* findings) {
    const std::size_t files = header.count(RPMTAG_BASENAMES);
    for (const FileList& list : kFileLists) {
        if (list.isRequired || header.has(list.tag)) {
            checkCount(list.tag, header.count(list.tag), files, findings);
        }
    }
    if (!header.has(RPMTAG_FILESIZES) && !header.has(RPMTAG_LONGFILESIZES)) {
        checkCount(RPMTAG_FILESIZES, 0, files, findings);
    }
    const std::size_t directories = header.count(RPMTAG_DIRNAMES);
    const std::vector<std::string> names = header.texts(RPMTAG_BASENAMES);
    const std::vector<std::uint64_t> indexes = header.numbers(RPMTAG_DIRINDEXES);
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        if (indexes[i] >= directories) {
            findings->add(kIndexOutOfRange,
                          {i < names.size() ? names[i] : "", std::to_string(indexes[i])});
        }
    }
}

}  // namespace pkgvet::cli
