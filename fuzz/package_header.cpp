// A package's header through RpmMeta and the rules on headers.
#include <stdexcept>

#include "cli/integrity/header_rules.h"
#include "cli/integrity/rpm_session.h"
#include "fuzz/fuzz_target.h"
#include "pkgvet/package/rpm_meta.h"
#include "tests/support/base/temporary_directory.h"

namespace pkgvet::fuzz {

namespace {

void judgeHeader(const cli::PackageHeader& header) {
    const cli::HeaderFiles files = cli::readFiles(header);
    cli::IntegrityFindings findings;
    cli::checkKind(header, &findings);
    cli::checkTags(header, &findings);
    cli::checkProvides(header, &findings);
    cli::checkLists(header, &findings);
    cli::checkPaths(files, &findings);
    cli::checkPathParts(header, &findings);
    cli::checkPathsAmongThemselves(files, &findings);
    cli::checkKinds(files, &findings);
    cli::checkModes(files, {}, &findings);
    cli::checkCapabilities(header, files, &findings);
    cli::checkFileDigests(files, false, &findings);
    findings.take();
}

}  // namespace

void run(std::string_view input) {
    static const TemporaryDirectory directory;
    static cli::RpmSession session;
    const std::string path = directory.write("package.rpm", input);
    judgeHeader(cli::PackageHeader(path, session.transactions()));
    // A text of another type.
    tolerate<std::logic_error>([&] {
        const RpmMeta meta(path.c_str(), session.transactions());
        expect(meta.paths().size() == meta.users().size(), "each file has a user");
        expect(meta.paths().size() == meta.groups().size(), "each file has a group");
    });
    session.takeMessages();
}

}  // namespace pkgvet::fuzz
