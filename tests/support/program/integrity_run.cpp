#include "tests/support/program/integrity_run.h"

#include <sys/stat.h>

#include "cli/integrity/rpm_session.h"

using namespace pkgvet::cli;

std::vector<std::string> linesOf(const std::vector<Finding>& findings) {
    std::vector<std::string> lines;
    lines.reserve(findings.size());
    for (const Finding& finding : findings) {
        lines.push_back(finding.rule + ": " + finding.message);
    }
    return lines;
}

std::vector<std::string> linesOf(const CraftedPackage& package, HeaderRule rule) {
    const TemporaryDirectory directory;
    const RpmSession rpm;
    const PackageHeader header(package.write(directory), rpm.transactions());
    if (!header.isRead()) {
        return {"not a package"};
    }
    IntegrityFindings findings;
    rule(header, &findings);
    return linesOf(findings.take());
}

std::vector<std::string> linesOf(const HeaderFiles& list, FilesRule rule) {
    IntegrityFindings findings;
    rule(list, &findings);
    return linesOf(findings.take());
}

HeaderFile headerFile(const std::string& path, mode_t mode) {
    HeaderFile file;
    file.path = path;
    file.mode = (mode & S_IFMT) == 0 ? mode | S_IFREG : mode;
    return file;
}

CraftedPackage honestPackage() {
    CraftedPackage package("org.example.app");
    package.file(packedFile("/usr/bin/org.example.app", "program", 0755))
        .file(packedDirectory("/usr/share/org.example.app"))
        .file(packedFile("/usr/share/org.example.app/main.qml", "import QtQuick 2.0\n"))
        .file(packedLink("/usr/share/org.example.app/page.qml", "main.qml"));
    return package;
}
